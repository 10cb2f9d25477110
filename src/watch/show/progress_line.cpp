#include "watch/show/progress_line.hpp"

#include "watch/show/messages.hpp"

#include <boost/algorithm/string/trim.hpp>
#include <fmt/format.h>
#include <utf8.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <string_view>

namespace vadelwatch {

namespace {

/// In less time than this, one report more or less changes the speed too much.
constexpr double minMeasuredSeconds = 0.1;

/// The speed is measured over this time, or over this number of samples if reports are rare.
constexpr double windowSeconds = 5.0;
constexpr std::size_t minSamples = 4;

constexpr double secondsBetweenSamples = 0.05;

/// Progress has stalled after this time without a report, if that is also this many times the usual time between reports.
constexpr double minStalledSeconds = 10.0;
constexpr double minStalledIntervals = 3.0;

constexpr int minBarWidth = 8;
constexpr int maxBarWidth = 80;
/// A shorter field would leave too little of most names.
constexpr int minNameWidth = 16;
constexpr int maxNameWidth = 40;

/// In a narrower window "17/60" is the file, without its word.
constexpr int minColumnsOfFileWord = 60;

/// Spaces between two figures.
constexpr int gap = 2;

std::string percentText(double percent) {
    // Rounded down, as in the tool: only the end is 100.0.
    return fmt::format("{:>5} %", decimalNumber(std::floor(percent * 10.0) / 10.0, 1));
}

std::string barText(double percent, int width, const BarStyle& style) {
    const bool drawn = style.letters == BarLetters::drawn;
    const int done = static_cast<int>(std::floor(percent / 100.0 * width));
    // The format fills an empty text up to a width.
    const std::string doneText = fmt::format(fmt::runtime(drawn ? "{:━<{}}" : "{:=<{}}"), "", done);
    const std::string openText = fmt::format(fmt::runtime(drawn ? "{:─<{}}" : "{:-<{}}"), "", width - done);
    if (!style.colour) {
        return doneText + openText;
    }
    return fmt::format("\033[32m{}\033[0;2m{}\033[0m", doneText, openText);
}

/// Returns three digits and a unit, as in "1.12M" or "999k".
std::string shortNumber(double number) {
    std::string unit;
    for (const char* const next : {"k", "M", "G", "T"}) {
        if (number < 999.5) {
            break;
        }
        number /= 1000.0;
        unit = next;
    }
    const int decimals = unit.empty() || number >= 99.95 ? 0 : number >= 9.995 ? 1 : 2;
    return decimalNumber(number, decimals) + unit;
}

std::string stalledText(const ProgressFigures& figures) {
    return figures.stalledSeconds > 0.0
               ? formatMessage("no progress for {0} s",
                               std::to_string(static_cast<std::uint64_t>(figures.stalledSeconds)))
               : "";
}

std::string speedText(const ProgressFigures& figures) {
    // Without a current file, for example while the tool counts, this speed does not exist.
    if (figures.stalledSeconds > 0.0 || (figures.file == 0 && !figures.linesPerSecond)) {
        return {};
    }
    const std::string lines = figures.linesPerSecond ? shortNumber(*figures.linesPerSecond) : "-";
    return fmt::format("{:>5} {}", lines, translateMessage("lines/s"));
}

std::string bytesText(const ProgressFigures& figures) {
    if (figures.stalledSeconds > 0.0 || (figures.file == 0 && !figures.bytesPerSecond)) {
        return {};
    }
    const double megabytes = figures.bytesPerSecond.value_or(0.0) / 1e6;
    return fmt::format("{:>4} MB/s",
                       figures.bytesPerSecond ? decimalNumber(megabytes, megabytes < 99.95 ? 1 : 0) : "-");
}

std::string leftText(const ProgressFigures& figures) {
    if (!figures.remainingSeconds && (figures.file == 0 || figures.stalledSeconds > 0.0)) {
        return {};
    }
    const std::string left = figures.remainingSeconds ? clockText(std::ceil(*figures.remainingSeconds)) : "-:--";
    return fmt::format("{:>5} {}", left, translateMessage("left"));
}

std::string fileText(const ProgressFigures& figures, bool withWord) {
    if (figures.file == 0) {
        return {};
    }
    const std::string files = std::to_string(figures.files);
    const std::string number = fmt::format("{:>{}}", figures.file, figures.files == 0 ? 1 : files.size());
    if (figures.files == 0) {
        return formatMessage("file {0}", number);
    }
    return withWord ? formatMessage("file {0}/{1}", number, files) : number + "/" + files;
}

/// The most important part first. A part that does not fit is left out.
enum Part : std::size_t {
    percentPart,
    stalledPart,
    phasePart,
    leftPart,
    filePart,
    speedPart,
    barPart,
    bytesPart,
    namePart,
    elapsedPart
};

constexpr std::array partsFromLeft{phasePart, barPart,     percentPart, stalledPart, speedPart,
                                   bytesPart, elapsedPart, leftPart,    filePart,    namePart};

using PartTexts = std::array<std::string, partsFromLeft.size()>;

/// Returns the text of each part, empty if it is unknown: without the bar, and with the whole name.
PartTexts partsOf(const ProgressFigures& figures, bool withWord) {
    PartTexts texts;
    texts[phasePart] = figures.phase;
    texts[percentPart] = figures.percent ? percentText(*figures.percent) : "";
    texts[stalledPart] = stalledText(figures);
    texts[speedPart] = speedText(figures);
    texts[bytesPart] = bytesText(figures);
    texts[elapsedPart] = fmt::format("{:>5} {}", clockText(figures.elapsedSeconds), translateMessage("elapsed"));
    texts[leftPart] = leftText(figures);
    texts[filePart] = fileText(figures, withWord);
    texts[namePart] = figures.file > 0 ? shownName(figures.fileName) : "";
    return texts;
}

/// Returns a text in UTF-8 with dots in place of its middle if it is too long.
std::string shortened(const std::string& text, std::size_t columns, BarLetters style) {
    const std::u32string_view dots = style == BarLetters::drawn ? U"…" : U"..";
    std::u32string letters = utf8::utf8to32(text);
    if (letters.size() > columns) {
        const std::size_t tail = (columns - dots.size()) / 2;
        const std::size_t head = columns - dots.size() - tail;
        letters.replace(head, letters.size() - head - tail, dots);
    }
    return utf8::utf32to8(letters);
}

std::string joined(const PartTexts& texts) {
    std::string line;
    for (const Part part : partsFromLeft) {
        if (!line.empty() && !texts[part].empty()) {
            line.append(gap, ' ');
        }
        line += texts[part];
    }
    return line;
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
    if (reported < 100.0 && silence >= std::max(minStalledSeconds, minStalledIntervals * usualSeconds)) {
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
    PartTexts texts = partsOf(figures, columns >= minColumnsOfFileWord);
    if (figures.percent) {
        texts[barPart].assign(minBarWidth, ' ');
    }
    int space = columns + gap;
    for (std::size_t part = 0; part < texts.size(); ++part) {
        int width = static_cast<int>(columnsOf(texts[part]));
        if (part == namePart && !texts[filePart].empty()) {
            // The field has a fixed width. Otherwise the width of the bar would change with every name.
            width = std::clamp(space - gap, minNameWidth, std::clamp(columns / 5, minNameWidth, maxNameWidth));
            texts[part] = shortened(texts[part], static_cast<std::size_t>(width), style.letters);
        }
        if (width + gap > space || (part == namePart && texts[filePart].empty())) {
            texts[part].clear();
        } else if (width > 0) {
            space -= width + gap;
        }
    }
    if (!texts[barPart].empty()) {
        texts[barPart] = barText(*figures.percent, std::min(maxBarWidth, minBarWidth + space), style);
    }
    return joined(texts);
}

std::string plainProgressLine(const ProgressFigures& figures) {
    PartTexts texts = partsOf(figures, true);
    for (std::string& text : texts) {
        boost::algorithm::trim_left(text);
    }
    return joined(texts);
}

} // namespace vadelwatch
