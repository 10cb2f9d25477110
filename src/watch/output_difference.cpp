#include "watch/output_check.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <system_error>

namespace {

template <typename... Arguments>
std::string formatted(const char* text, const Arguments&... arguments) {
    return fmt::format(fmt::runtime(text), arguments...);
}

std::string differenceLine(const OutputCheck& check, const WatchTexts& texts) {
    const std::string found = groupedNumber(check.nodeLines);
    if (!check.nodeCount) {
        return formatted(texts.noNodeCount, found);
    }
    const std::int64_t missing = check.missingNodes();
    return formatted(missing < 0 ? texts.linesTooMany : texts.linesDiffer, found, *check.nodeCount,
                     groupedNumber(static_cast<std::uint64_t>(std::abs(missing))));
}

/// What is wrong with a file in itself; empty for a whole one.
std::string conditionLine(const OutputFile& file, const WatchTexts& texts) {
    switch (file.condition) {
    case OutputCondition::empty:
        return formatted(texts.fileEmpty, file.name);
    case OutputCondition::cut:
        return formatted(texts.fileCut, file.name, groupedNumber(file.nodeLines));
    case OutputCondition::withoutNode:
        return formatted(texts.fileWithoutNode, file.name);
    case OutputCondition::unreadable:
        return formatted(texts.fileUnreadable, file.name);
    case OutputCondition::notRegular:
        return formatted(texts.fileNotRegular, file.name);
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
            lines.push_back(formatted(texts.inputChanged, file.name));
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
    std::vector<std::string> lines{differenceLine(check, texts)};
    addConditions(check, texts, lines);
    if (evidence.rejectedHeaders > 0) {
        lines.push_back(formatted(texts.headerRejected, evidence.rejectedHeaders));
    }
    addInputs(evidence.nodeFiles, texts, lines);
    if (isFull(evidence.outputDirectory)) {
        lines.push_back(formatted(texts.diskFull, evidence.outputDirectory));
    }
    if (lines.size() == 1) {
        lines.emplace_back(texts.noSuspect);
    }
    return lines;
}
