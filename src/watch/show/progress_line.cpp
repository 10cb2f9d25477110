#include "watch/show/progress_line.hpp"

#include "watch/show/messages.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <map>
#include <utility>

namespace vadelwatch {

namespace {

/// In less time than this, one report more or less changes the speed too much.
constexpr double minMeasuredSeconds = 0.1;

/// The speed is the one of this time, and of at least this number of samples in a run with rare reports.
constexpr double windowSeconds = 5.0;
constexpr std::size_t minSamples = 4;

constexpr double secondsBetweenSamples = 0.05;

/// The tool makes no progress after this time without a report, and after several times the usual time between reports.
constexpr double minStalledSeconds = 10.0;
constexpr double usualTimes = 3.0;

constexpr int minBarWidth = 8;
constexpr int maxBarWidth = 80;
constexpr int minNameWidth = 8;
constexpr int maxNameWidth = 40;

/// Spaces between two figures.
constexpr int gap = 2;

std::string percentText(double percent) {
    // Rounded down, as in the tool: only the end is 100.0.
    return fmt::format("{:>5} %", decimalNumber(std::floor(percent * 10.0) / 10.0, 1));
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

enum class Part { phase, bar, percent, file, speed, bytes, elapsed, left, name };

/// The parts from left to right. With a different number in each, they keep their places while the figures change.
constexpr std::array partsInOrder{Part::phase, Part::bar,     Part::percent, Part::file, Part::speed,
                                  Part::bytes, Part::elapsed, Part::left,    Part::name};

/// The most important part first. A window that has no space for one of them has none for those after it.
constexpr std::array partsByImportance{Part::percent, Part::bar,     Part::left,  Part::phase, Part::speed,
                                       Part::file,    Part::elapsed, Part::bytes, Part::name};

std::string fileText(const ProgressFigures& figures) {
    if (figures.file == 0) {
        return {};
    }
    const std::string files = std::to_string(figures.files);
    const std::string number = fmt::format("{:>{}}", figures.file, figures.files == 0 ? 1 : files.size());
    return figures.files == 0 ? formatMessage("file {0}", number) : formatMessage("file {0}/{1}", number, files);
}

std::string speedText(const ProgressFigures& figures) {
    if (figures.stalledSeconds > 0.0) {
        return formatMessage("no progress for {0} s",
                             std::to_string(static_cast<std::uint64_t>(figures.stalledSeconds)));
    }
    // No file in work: counting, for example, has no such speed.
    if (figures.file == 0 && !figures.linesPerSecond) {
        return {};
    }
    const std::string lines =
        figures.linesPerSecond ? groupedNumber(static_cast<std::uint64_t>(*figures.linesPerSecond)) : "-";
    return fmt::format("{:>9} {}", lines, translateMessage("lines/s"));
}

/// Returns the text of each part except the bar, empty if it is unknown.
std::string partText(Part part, const ProgressFigures& figures) {
    constexpr double bytesPerMegabyte = 1e6;
    switch (part) {
    case Part::phase:
        return figures.phase;
    case Part::percent:
        return figures.percent ? percentText(*figures.percent) : "";
    case Part::file:
        return fileText(figures);
    case Part::speed:
        return speedText(figures);
    case Part::bytes:
        return figures.bytesPerSecond
                   ? fmt::format("{:>6} MB/s", decimalNumber(*figures.bytesPerSecond / bytesPerMegabyte, 1))
                   : "";
    case Part::elapsed:
        return fmt::format("{:>5} {}", clockText(figures.elapsedSeconds), translateMessage("elapsed"));
    case Part::left:
        if (!figures.remainingSeconds && (figures.file == 0 || figures.stalledSeconds > 0.0)) {
            return {};
        }
        return fmt::format("{:>5} {}",
                           figures.remainingSeconds ? clockText(std::ceil(*figures.remainingSeconds)) : "-:--",
                           translateMessage("left"));
    case Part::name:
        return shownName(figures.fileName);
    case Part::bar:
        break;
    }
    return {};
}

/// Returns the first characters of a text in UTF-8.
std::string cutText(const std::string& text, std::size_t columns) {
    std::size_t end = 0;
    std::size_t characters = 0;
    for (; end < text.size(); ++end) {
        const bool startsCharacter = (static_cast<unsigned char>(text[end]) & 0xC0U) != 0x80U;
        if (startsCharacter && ++characters > columns) {
            break;
        }
    }
    return text.substr(0, end);
}

} // namespace

void ProgressMeasure::endOfReports(double seconds) {
    if (reported <= 0.0 || (!samples.empty() && samples.back().percent == reported)) {
        return;
    }
    lastChange = seconds;
    if (!samples.empty() && seconds - samples.back().seconds < secondsBetweenSamples) {
        return;
    }
    samples.push_back({seconds, reported});
    while (samples.size() > minSamples && samples[1].seconds <= seconds - windowSeconds) {
        samples.pop_front();
    }
}

void ProgressMeasure::addTo(ProgressFigures& figures, double seconds, std::optional<std::uint64_t> nodeLines,
                            std::uint64_t bytes) const {
    figures.percent = reported;
    if (reported >= 100.0) {
        figures.remainingSeconds = 0.0;
    }
    const double usualSeconds =
        samples.size() < 2 ? 0.0 : (samples.back().seconds - samples.front().seconds) / double(samples.size() - 1);
    const double silence = seconds - lastChange;
    if (reported < 100.0 && silence >= std::max(minStalledSeconds, usualTimes * usualSeconds)) {
        figures.stalledSeconds = silence;
        return;
    }
    if (samples.empty() || seconds - samples.front().seconds < minMeasuredSeconds ||
        !(reported > samples.front().percent)) {
        return;
    }
    const double percentPerSecond = (reported - samples.front().percent) / (seconds - samples.front().seconds);
    figures.remainingSeconds = (100.0 - reported) / percentPerSecond;
    if (nodeLines) {
        figures.linesPerSecond = static_cast<double>(*nodeLines) / 100.0 * percentPerSecond;
    }
    if (bytes > 0) {
        figures.bytesPerSecond = static_cast<double>(bytes) / 100.0 * percentPerSecond;
    }
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
    std::map<Part, std::string> chosen;
    int space = columns + gap;
    for (const Part part : partsByImportance) {
        std::string text =
            part == Part::bar && figures.percent ? std::string(minBarWidth, ' ') : partText(part, figures);
        if (text.empty()) {
            continue;
        }
        // A field of one width, or the bar would change its own with every name.
        const int width = part == Part::name ? std::min(maxNameWidth, space - gap) : static_cast<int>(columnsOf(text));
        if (width + gap > space || (part == Part::name && width < minNameWidth)) {
            break;
        }
        space -= width + gap;
        chosen[part] = part == Part::name ? cutText(text, static_cast<std::size_t>(width)) : std::move(text);
    }
    std::string line;
    for (const Part part : partsInOrder) {
        const auto found = chosen.find(part);
        if (found == chosen.end()) {
            continue;
        }
        line += line.empty() ? "" : std::string(gap, ' ');
        line += part == Part::bar
                    ? barText(*figures.percent, std::min(maxBarWidth, minBarWidth + std::max(0, space)), style)
                    : found->second;
    }
    return line;
}

std::string plainProgressLine(const ProgressFigures& figures) {
    std::string line;
    for (const Part part : partsInOrder) {
        const std::string text = partText(part, figures);
        if (!text.empty()) {
            line += (line.empty() ? "" : "  ") + text.substr(std::min(text.find_first_not_of(' '), text.size()));
        }
    }
    return line;
}

} // namespace vadelwatch
