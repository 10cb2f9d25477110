#include "watch/output_check.hpp"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <system_error>

namespace {

std::string differenceLine(const OutputCheck& check, const std::string& outputDirectory, const WatchTexts& texts) {
    if (check.directoryError) {
        return filledIn(texts.outputUnreadable, {outputDirectory, check.directoryError.message()});
    }
    const std::string found = groupedNumber(check.nodeLines);
    if (!check.nodeCount) {
        return filledIn(check.hasNodeCountFile ? texts.noNodeCount : texts.noNodeCountFile, {found});
    }
    const std::int64_t missing = check.missingNodes();
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
                                         [](const NodeFile& file) { return file.name == "total_node_count.txt"; });
    if (overwritten) {
        lines.emplace_back(texts.countOverwrites);
    }
}

bool isFull(const std::string& directory) {
    std::error_code error;
    const std::filesystem::space_info space = std::filesystem::space(directory, error);
    return !error && space.available == 0;
}

} // namespace

std::vector<std::string> describeDifference(const OutputCheck& check, const RunEvidence& evidence,
                                            const WatchTexts& texts) {
    if (check.addsUp) {
        return {};
    }
    std::vector<std::string> lines{differenceLine(check, evidence.outputDirectory, texts)};
    addConditions(check, texts, lines);
    if (evidence.rejectedHeaders > 0) {
        lines.push_back(filledIn(texts.headerRejected, {std::to_string(evidence.rejectedHeaders)}));
    }
    addInputs(evidence.nodeFiles, texts, lines);
    if (isFull(evidence.outputDirectory)) {
        lines.push_back(filledIn(texts.diskFull, {evidence.outputDirectory}));
    }
    // Two numbers differ, and nothing accounts for it.
    if (lines.size() == 1 && !check.directoryError && check.nodeCount) {
        lines.emplace_back(check.files.empty() ? texts.noOutputFile : texts.noSuspect);
    }
    return lines;
}
