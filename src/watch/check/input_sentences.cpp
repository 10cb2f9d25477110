#include "watch/check/input_report.hpp"
#include "watch/show/messages.hpp"

#include <fmt/format.h>

#include <map>

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

/// Returns the text of each `PassedOver`.
std::vector<std::string> passedOverTexts() {
    return {translateMessage("the suffix is not .txt, .xyz or .csv"),
            translateMessage("the suffix has capital letters"),
            translateMessage("a directory with the suffix of a node file"),
            translateMessage("the file cannot be read"),
            translateMessage("the first line is empty"),
            translateMessage("the first line has no line feed"),
            translateMessage("the header does not begin with x or X"),
            translateMessage("the header has no semicolon, comma, blank or tab after x"),
            translateMessage("the columns of the header are not x, y, z or x, y, z, g")};
}

void addPassedOver(const InputReport& report, std::vector<std::string>& sentences) {
    std::map<PassedOver, std::vector<std::string>> namesOf;
    for (const PassedOverEntry& entry : report.passedOver) {
        namesOf[entry.reason].push_back(entry.name);
    }
    const std::vector<std::string> texts = passedOverTexts();
    for (const auto& [reason, names] : namesOf) {
        sentences.push_back(formatMessage("Entries passed over: {0} of {1}, {2}: {3}", groupedNumber(names.size()),
                                          groupedNumber(report.entries), texts.at(static_cast<std::size_t>(reason)),
                                          joined(names)));
    }
}

struct Findings {
    std::uint64_t count = 0;
    std::vector<std::string> names;
};

/// Finds the lines of one kind. The names of their files have the number of lines and of the first one.
Findings linesOfKind(const InputReport& report, FoundLines LineFigures::*kind) {
    Findings found;
    for (const InputFile& file : report.files) {
        const FoundLines& lines = file.figures.*kind;
        found.count += lines.count;
        if (lines.count > 0) {
            found.names.push_back(formatMessage("{0} ({1}, first: line {2})", file.name, groupedNumber(lines.count),
                                                groupedNumber(lines.first)));
        }
    }
    return found;
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
    const std::string lines = groupedNumber(all);
    const std::string files = groupedNumber(report.files.size());
    if (const Findings found = linesOfKind(report, &LineFigures::unparsable); found.count > 0) {
        sentences.push_back(formatMessage("Lines dropped: {0} of {1}, x or y is no number or nothing follows y: {2}",
                                          groupedNumber(found.count), lines, joined(found.names)));
    }
    if (!withoutEnd.empty()) {
        sentences.push_back(
            formatMessage("Node files without a line feed at the end: {0} of {1}, the last line is dropped: {2}",
                          groupedNumber(withoutEnd.size()), files, joined(withoutEnd)));
    }
    if (const Findings found = linesOfKind(report, &LineFigures::decimalCommas); found.count > 0) {
        sentences.push_back(
            formatMessage("Lines probably with decimal commas: {0} of {1}, numbers end at the comma: {2}",
                          groupedNumber(found.count), lines, joined(found.names)));
    }
    if (!exchanged.empty()) {
        sentences.push_back(formatMessage("Node files probably with x and y exchanged: {0} of {1}: {2}",
                                          groupedNumber(exchanged.size()), files, joined(exchanged)));
    }
}

/// Returns the text of each `NothingKeptReason`.
std::vector<std::string> nothingKeptTexts() {
    return {translateMessage("The boundary file has no polygon in a group of type \"boundaries\"."),
            translateMessage("Every polygon has fewer than three points and keeps only nodes on its line."),
            translateMessage("The node files have no line with a position."),
            translateMessage("Nodes and boundary do not overlap, but would overlap with x and y exchanged."),
            translateMessage("Nodes and boundary do not overlap."),
            translateMessage("Nodes and boundary overlap, but no node is in a polygon."),
            translateMessage("The reason is unknown, because Vadelwatch did not read every node file.")};
}

/// Returns the extent in numbers: the shortest from which the same coordinates are read, with a point in every language.
std::string extentText(const MapExtent& extent) {
    return formatMessage("x from {0} to {1}, y from {2} to {3}", fmt::format("{}", extent.minX),
                         fmt::format("{}", extent.maxX), fmt::format("{}", extent.minY),
                         fmt::format("{}", extent.maxY));
}

void addNothingKept(const NothingKept& nothing, std::vector<std::string>& sentences) {
    sentences.push_back(formatMessage("Warning: no node was kept. {0}",
                                      nothingKeptTexts().at(static_cast<std::size_t>(nothing.reason))));
    if (!isEmpty(nothing.nodes)) {
        const std::string extent = extentText(nothing.nodes);
        sentences.push_back(nothing.isSampled ? formatMessage("Nodes, in a sample of the lines: {0}", extent)
                                              : formatMessage("Nodes: {0}", extent));
    }
    if (!isEmpty(nothing.boundary)) {
        sentences.push_back(formatMessage("Boundary: {0}", extentText(nothing.boundary)));
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
