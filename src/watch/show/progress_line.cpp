#include "watch/show/progress_line.hpp"

#include "watch/show/messages.hpp"
#include "watch/show/numbers.hpp"
#include "watch/show/shown_name.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace vadelwatch {

namespace {

constexpr int narrowestBar = 10;
constexpr int widestBar = 80;

/// Between the leading blank, the bar and the figures.
constexpr int gaps = 2;

std::string percentText(double percent) {
    // Cut, as the tool does it: 100.0 is the end and nothing else.
    return fmt::format("{:>5} %", decimalNumber(std::floor(percent * 10.0) / 10.0, 1));
}

std::string rateText(const std::optional<double>& linesPerSecond) {
    return linesPerSecond ? groupedNumber(static_cast<std::uint64_t>(std::max(0.0, *linesPerSecond))) : "-";
}

std::string remainingText(const std::optional<double>& seconds) {
    return seconds ? clockText(*seconds) : "-:--";
}

/// The figures behind the bar, from the most to the fewest words.
std::string figuresText(const ProgressFigures& figures, int detail) {
    std::string percent = percentText(figures.percent);
    const std::string elapsed = clockText(figures.elapsedSeconds);
    const std::string remaining = remainingText(figures.remainingSeconds);
    const std::string rate = fmt::format("{:>9} {}", rateText(figures.linesPerSecond), translateMessage("lines/s"));
    switch (detail) {
    case 3:
        return fmt::format("{}  {}  {:>5} {}  {:>5} {}", percent, rate, elapsed, translateMessage("elapsed"), remaining,
                           translateMessage("left"));
    case 2:
        return fmt::format("{}  {}  {:>5} {:>5} {}", percent, rate, elapsed, remaining, translateMessage("left"));
    case 1:
        return fmt::format("{} {:>5} {:>5} {}", percent, elapsed, remaining, translateMessage("left"));
    default:
        return percent;
    }
}

std::string repeated(const char* letter, int times) {
    std::string text;
    for (int i = 0; i < times; ++i) {
        text += letter;
    }
    return text;
}

std::string barText(double percent, int width, const BarStyle& style) {
    const bool drawn = style.letters == BarLetters::drawn;
    const int done = static_cast<int>(std::floor(percent / 100.0 * width));
    const std::string doneText = repeated(drawn ? "━" : "=", done);
    const std::string openText = repeated(drawn ? "─" : "-", width - done);
    if (!style.colour) {
        return doneText + openText;
    }
    return fmt::format("\033[32m{}\033[0;2m{}\033[0m", doneText, openText);
}

} // namespace

std::string clockText(double seconds) {
    const auto whole = static_cast<std::uint64_t>(std::clamp(seconds, 0.0, 1e15));
    const std::uint64_t minutes = whole / 60;
    if (minutes < 60) {
        return fmt::format("{}:{:02}", minutes, whole % 60);
    }
    return fmt::format("{}:{:02}:{:02}", minutes / 60, minutes % 60, whole % 60);
}

std::string progressBarLine(const ProgressFigures& figures, int columns, const BarStyle& style) {
    for (int detail = 3; detail >= 0; --detail) {
        const std::string text = figuresText(figures, detail);
        const int barWidth = std::min(widestBar, columns - static_cast<int>(columnsOf(text)) - gaps);
        if (barWidth >= (detail == 3 ? 2 * narrowestBar : narrowestBar)) {
            return fmt::format(" {} {}", barText(figures.percent, barWidth, style), text);
        }
    }
    std::string text = figuresText(figures, 0);
    return static_cast<int>(columnsOf(text)) <= columns ? text : "";
}

std::string plainProgressLine(const ProgressFigures& figures) {
    const auto percent = static_cast<int>(figures.percent);
    const std::string rate = rateText(figures.linesPerSecond);
    const std::string elapsed = clockText(figures.elapsedSeconds);
    const std::string remaining = remainingText(figures.remainingSeconds);
    return fmt::format("{:>3} %  {} {}  {} {}  {} {}", percent, rate, translateMessage("lines/s"), elapsed,
                       translateMessage("elapsed"), remaining, translateMessage("left"));
}

} // namespace vadelwatch
