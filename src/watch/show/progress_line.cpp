#include "watch/show/progress_line.hpp"

#include "watch/show/messages.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace vadelwatch {

namespace {

/// In less time than this, one report more or less changes the speed too much.
constexpr double minMeasuredSeconds = 0.1;

constexpr int minBarWidth = 10;
constexpr int maxBarWidth = 80;

/// The space before the bar and the one after it.
constexpr int gaps = 2;

std::string percentText(double percent) {
    // Rounded down, as in the tool: only the end is 100.0.
    return fmt::format("{:>5} %", decimalNumber(std::floor(percent * 10.0) / 10.0, 1));
}

std::string rateText(const std::optional<double>& linesPerSecond) {
    return linesPerSecond ? groupedNumber(static_cast<std::uint64_t>(std::max(0.0, *linesPerSecond))) : "-";
}

std::string remainingText(const std::optional<double>& seconds) {
    return seconds ? clockText(*seconds) : "-:--";
}

/// Returns the figures after the bar.
///
/// @param detail 3 for all words, 0 for the percentage alone.
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

std::string barText(double percent, int width, const BarStyle& style) {
    const bool drawn = style.letters == BarLetters::drawn;
    const int done = static_cast<int>(std::floor(percent / 100.0 * width));
    // An empty text, filled up to a width.
    const std::string doneText = fmt::format(fmt::runtime(drawn ? "{:━<{}}" : "{:=<{}}"), "", done);
    const std::string openText = fmt::format(fmt::runtime(drawn ? "{:─<{}}" : "{:-<{}}"), "", width - done);
    if (!style.colour) {
        return doneText + openText;
    }
    return fmt::format("\033[32m{}\033[0;2m{}\033[0m", doneText, openText);
}

} // namespace

void ProgressMeasure::endOfReports(double seconds) {
    if (!base && reported > 0.0) {
        base = Base{seconds, reported};
    }
}

ProgressFigures ProgressMeasure::figures(double seconds, std::optional<std::uint64_t> nodeLines) const {
    ProgressFigures figures;
    figures.percent = reported;
    figures.elapsedSeconds = seconds;
    if (reported >= 100.0) {
        figures.remainingSeconds = 0.0;
    }
    if (!base || seconds - base->seconds < minMeasuredSeconds || !(reported > base->percent)) {
        return figures;
    }
    const double secondsPerPercent = (seconds - base->seconds) / (reported - base->percent);
    figures.remainingSeconds = secondsPerPercent * (100.0 - reported);
    if (nodeLines) {
        figures.linesPerSecond = static_cast<double>(*nodeLines) / 100.0 / secondsPerPercent;
    }
    return figures;
}

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
        const int barWidth = std::min(maxBarWidth, columns - static_cast<int>(columnsOf(text)) - gaps);
        if (barWidth >= (detail == 3 ? 2 * minBarWidth : minBarWidth)) {
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
