#include "watch/check/output_check.hpp"

#include "watch/check/output_place.hpp"

#include <algorithm>
#include <cstdlib>
#include <set>

namespace vadelwatch {

namespace {

/// More node files without an output are counted and not named: in a large survey clipped to a small area, most of them
/// rightly have none.
constexpr std::size_t mostNamed = 20;

std::string differenceLine(const OutputCheck& check, const std::string& outputDirectory, const WatchTexts& texts) {
    if (check.directoryError) {
        return filledIn(texts.outputUnreadable, {outputDirectory, check.directoryError.message()});
    }
    const std::string found = groupedNumber(check.nodeLines);
    if (!check.nodeCount) {
        return filledIn(check.hasNodeCountFile ? texts.noNodeCount : texts.noNodeCountFile, {found});
    }
    const std::int64_t missing = check.missingNodes();
    if (missing == 0) {
        return filledIn(texts.linesUncounted, {found});
    }
    return filledIn(
        missing < 0 ? texts.linesTooMany : texts.linesDiffer,
        {found, std::to_string(*check.nodeCount), groupedNumber(static_cast<std::uint64_t>(std::abs(missing)))});
}

/// What is wrong with a file in itself; empty for a whole one.
std::string conditionLine(const OutputFile& file, const WatchTexts& texts) {
    switch (file.condition) {
    case OutputCondition::empty:
        return filledIn(texts.fileEmpty, {file.name});
    case OutputCondition::cut:
        return filledIn(texts.fileCut, {file.name, groupedNumber(file.nodeLines)});
    case OutputCondition::withoutNode:
        return filledIn(texts.fileWithoutNode, {file.name});
    case OutputCondition::unreadable:
        return filledIn(texts.fileUnreadable, {file.name});
    case OutputCondition::notRegular:
        return filledIn(texts.fileNotRegular, {file.name});
    case OutputCondition::whole:
        break;
    }
    return {};
}

void addConditions(const OutputCheck& check, const WatchTexts& texts, std::vector<std::string>& lines) {
    for (const OutputFile& file : check.files) {
        const std::string line = conditionLine(file, texts);
        if (!line.empty()) {
            lines.push_back(line);
        }
    }
}

void addInputs(const NodeFiles& nodeFiles, const WatchTexts& texts, std::vector<std::string>& lines) {
    for (const NodeFile& file : nodeFiles.files) {
        if (fileState(file.path) != file.state) {
            lines.push_back(filledIn(texts.inputChanged, {file.name}));
        }
    }
    const bool overwritten = std::any_of(nodeFiles.files.begin(), nodeFiles.files.end(),
                                         [](const NodeFile& file) { return file.name == nodeCountName; });
    if (overwritten) {
        lines.emplace_back(texts.countOverwrites);
    }
}

/// The names that output files may have. Empty if nothing is known of the input.
std::set<std::string> expectedNames(const NodeFiles& nodeFiles) {
    std::set<std::string> names(nodeFiles.unread.begin(), nodeFiles.unread.end());
    for (const NodeFile& file : nodeFiles.files) {
        names.insert(file.name);
    }
    return names;
}

/// The expected names at which nothing stands in the output directory, by name.
std::vector<std::string> missingNames(const OutputCheck& check, const std::set<std::string>& expected) {
    std::set<std::string> missing = expected;
    for (const OutputFile& file : check.files) {
        missing.erase(file.name);
    }
    for (const std::string& name : check.directories) {
        missing.erase(name);
    }
    // What stands there is the count, whatever the output was.
    missing.erase(nodeCountName);
    return {missing.begin(), missing.end()};
}

void addMissing(const std::vector<std::string>& missing, const WatchTexts& texts, std::vector<std::string>& lines) {
    const std::size_t named = std::min(missing.size(), mostNamed);
    for (std::size_t i = 0; i < named; ++i) {
        lines.push_back(filledIn(texts.fileMissing, {missing[i]}));
    }
    if (missing.size() > named) {
        lines.push_back(filledIn(texts.moreFilesMissing, {groupedNumber(missing.size() - named)}));
    }
}

/// Directories where the tool could not make its files.
void addDirectories(const OutputCheck& check, const std::set<std::string>& expected, const WatchTexts& texts,
                    std::vector<std::string>& lines) {
    for (const std::string& name : check.directories) {
        if (name == nodeCountName || expected.contains(name)) {
            lines.push_back(filledIn(texts.fileIsDirectory, {name}));
        }
    }
}

void addFilesWithoutInput(const OutputCheck& check, const std::set<std::string>& expected, const WatchTexts& texts,
                          std::vector<std::string>& lines) {
    for (const OutputFile& file : check.files) {
        if (!expected.empty() && !expected.contains(file.name)) {
            lines.push_back(filledIn(texts.fileWithoutInput, {file.name}));
        }
    }
}

} // namespace

std::vector<std::string> describeDifference(const OutputCheck& check, const RunEvidence& evidence,
                                            const WatchTexts& texts) {
    if (check.addsUp) {
        return {};
    }
    std::vector<std::string> lines{differenceLine(check, evidence.outputDirectory, texts)};
    addConditions(check, texts, lines);
    const std::set<std::string> expected = expectedNames(evidence.nodeFiles);
    std::vector<std::string> missing;
    if (!check.directoryError) {
        addDirectories(check, expected, texts, lines);
        addFilesWithoutInput(check, expected, texts, lines);
        missing = missingNames(check, expected);
    }
    // Without a count, nothing says that one of them lacks its output wrongly.
    if (check.nodeCount && check.missingNodes() > 0) {
        addMissing(missing, texts, lines);
    }
    if (evidence.rejectedHeaders > 0) {
        lines.push_back(filledIn(texts.headerRejected, {std::to_string(evidence.rejectedHeaders)}));
    }
    addInputs(evidence.nodeFiles, texts, lines);
    addPlace(evidence.outputDirectory, texts, lines);
    // Two numbers differ, and nothing accounts for it.
    if (lines.size() == 1 && !check.directoryError && check.nodeCount && missing.empty()) {
        lines.emplace_back(check.files.empty() ? texts.noOutputFile : texts.noSuspect);
    }
    return lines;
}

} // namespace vadelwatch
