#include "watch/check/input_report.hpp"
#include "watch/show/messages.hpp"

#include <fmt/format.h>

#include <algorithm>

namespace vadelwatch {

namespace {

/// Further names are left out: the sentence has their number.
constexpr std::size_t maxNamed = 5;

std::string joined(const std::vector<std::string>& names) {
    std::string text;
    for (std::size_t i = 0; i < names.size() && i < maxNamed; ++i) {
        text += (i == 0 ? "" : ", ") + names[i];
    }
    return names.size() > maxNamed ? text + ", ..." : text;
}

std::string passedOverText(PassedOver reason) {
    switch (reason) {
    case PassedOver::suffix:
        return translateMessage("the suffix is not .txt, .xyz or .csv");
    case PassedOver::capitals:
        return translateMessage("the suffix has capital letters");
    case PassedOver::directory:
        return translateMessage("a directory with the suffix of a node file");
    case PassedOver::unreadable:
        return translateMessage("the file cannot be read");
    case PassedOver::emptyFirstLine:
        return translateMessage("the first line is empty");
    case PassedOver::firstLineWithoutEnd:
        return translateMessage("the first line has no line feed");
    case PassedOver::firstCharacter:
        return translateMessage("the header does not begin with x or X");
    case PassedOver::separator:
        return translateMessage("the header has no semicolon, comma, blank or tab after x");
    case PassedOver::columns:
        break;
    }
    return translateMessage("the columns of the header are not x, y, z or x, y, z, g");
}

void addPassedOver(const InputReport& report, std::vector<std::string>& sentences) {
    for (int reason = 0; reason <= static_cast<int>(PassedOver::columns); ++reason) {
        std::vector<std::string> names;
        for (const PassedOverEntry& entry : report.passedOver) {
            if (entry.reason == static_cast<PassedOver>(reason)) {
                names.push_back(entry.name);
            }
        }
        if (!names.empty()) {
            sentences.push_back(formatMessage("{0} of {1} entries passed over, {2}: {3}", groupedNumber(names.size()),
                                              groupedNumber(report.entries),
                                              passedOverText(static_cast<PassedOver>(reason)), joined(names)));
        }
    }
}

/// Lines of one kind in all files.
struct LinesInFiles {
    std::uint64_t count = 0;
    std::vector<std::string> names; ///< With the number of lines and of the first one.
};

LinesInFiles linesInFiles(const InputReport& report, FoundLines LineFigures::*kind) {
    LinesInFiles lines;
    for (const InputFile& file : report.files) {
        const FoundLines& found = file.figures.*kind;
        if (found.count > 0) {
            lines.count += found.count;
            lines.names.push_back(formatMessage("{0} ({1}, first: line {2})", file.name, groupedNumber(found.count),
                                                groupedNumber(found.first)));
        }
    }
    return lines;
}

void addLines(const InputReport& report, std::vector<std::string>& sentences) {
    std::uint64_t all = 0;
    std::vector<std::string> withoutEnd;
    std::vector<std::string> exchanged;
    for (const InputFile& file : report.files) {
        all += file.figures.count.nodeLines();
        if (file.figures.count.lineFeeds > 0 && !file.figures.count.endsInLineFeed) {
            withoutEnd.push_back(file.name);
        }
        if (file.looksExchanged) {
            exchanged.push_back(file.name);
        }
    }
    const std::string files = groupedNumber(report.files.size());
    const LinesInFiles unparsable = linesInFiles(report, &LineFigures::unparsable);
    if (unparsable.count > 0) {
        sentences.push_back(formatMessage("{0} of {1} lines dropped, x or y is no number or nothing follows y: {2}",
                                          groupedNumber(unparsable.count), groupedNumber(all),
                                          joined(unparsable.names)));
    }
    if (!withoutEnd.empty()) {
        sentences.push_back(
            formatMessage("{0} of {1} node files without a line feed at the end, the last line is dropped: {2}",
                          groupedNumber(withoutEnd.size()), files, joined(withoutEnd)));
    }
    const LinesInFiles commas = linesInFiles(report, &LineFigures::decimalCommas);
    if (commas.count > 0) {
        sentences.push_back(
            formatMessage("{0} of {1} lines probably with decimal commas, numbers end at the comma: {2}",
                          groupedNumber(commas.count), groupedNumber(all), joined(commas.names)));
    }
    if (!exchanged.empty()) {
        sentences.push_back(formatMessage("{0} of {1} node files probably with x and y exchanged: {2}",
                                          groupedNumber(exchanged.size()), files, joined(exchanged)));
    }
}

std::string nothingKeptText(NothingKeptReason reason) {
    switch (reason) {
    case NothingKeptReason::noPolygon:
        return translateMessage("The boundary file has no polygon in a group of type \"boundaries\".");
    case NothingKeptReason::fewVertices:
        return translateMessage("Every polygon has fewer than three points.");
    case NothingKeptReason::noPosition:
        return translateMessage("The node files have no line with a position.");
    case NothingKeptReason::exchanged:
        return translateMessage("Nodes and boundary do not overlap, but would overlap with x and y exchanged.");
    case NothingKeptReason::apart:
        return translateMessage("Nodes and boundary do not overlap.");
    case NothingKeptReason::outside:
        break;
    }
    return translateMessage("Nodes and boundary overlap, but no node is in a polygon.");
}

/// Returns the shortest text of a coordinate from which the same number is read, with a point in every language.
std::string coordinate(double number) {
    return fmt::format("{}", number);
}

void addNothingKept(const NothingKept& nothing, std::vector<std::string>& sentences) {
    sentences.push_back(formatMessage("Warning: no node was kept. {0}", nothingKeptText(nothing.reason)));
    const MapExtent& nodes = nothing.nodes;
    if (!isEmpty(nodes)) {
        sentences.push_back(formatMessage("Nodes: x from {0} to {1}, y from {2} to {3}", coordinate(nodes.minX),
                                          coordinate(nodes.maxX), coordinate(nodes.minY), coordinate(nodes.maxY)));
    }
    const MapExtent& boundary = nothing.boundary;
    if (!isEmpty(boundary)) {
        sentences.push_back(formatMessage("Boundary: x from {0} to {1}, y from {2} to {3}", coordinate(boundary.minX),
                                          coordinate(boundary.maxX), coordinate(boundary.minY),
                                          coordinate(boundary.maxY)));
    }
}

} // namespace

std::vector<std::string> inputSentences(const InputReport& report) {
    std::vector<std::string> sentences;
    if (report.nothingKept) {
        addNothingKept(*report.nothingKept, sentences);
    }
    addPassedOver(report, sentences);
    addLines(report, sentences);
    return sentences;
}

} // namespace vadelwatch
