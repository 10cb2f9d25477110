#include "watch/check/output_difference.hpp"

#include "watch/show/messages.hpp"

#include <algorithm>
#include <cstdlib>
#include <set>

namespace vadelwatch {

namespace {

/// Further node files without an output are counted and not named: in a large survey that is clipped to a small area,
/// most of them have none.
constexpr std::size_t maxNamed = 20;

std::string differenceLine(const OutputCheck& check, const std::string& outputDirectory) {
    if (check.directoryError) {
        return formatMessage("Vadelwatch: the output directory {0} cannot be read: {1}", outputDirectory,
                             check.directoryError.message());
    }
    const std::string found = groupedNumber(check.nodeLines);
    if (!check.nodeCount && !check.hasNodeCountFile) {
        return formatMessage(
            "Vadelwatch: nodes in the output files: {0}. There is no total_node_count.txt to compare with.", found);
    }
    if (!check.nodeCount) {
        return formatMessage(
            "Vadelwatch: nodes in the output files: {0}. total_node_count.txt holds no number to compare with.", found);
    }
    const std::int64_t missing = check.missingNodes();
    if (missing == 0) {
        return formatMessage(
            "Vadelwatch: nodes in the output files: {0}, as many as total_node_count.txt says, but not "
            "every file can be counted.",
            found);
    }
    const std::string count = std::string(*check.nodeCount < 0 ? "-" : "") +
                              groupedNumber(static_cast<std::uint64_t>(std::abs(*check.nodeCount)));
    const std::string difference = groupedNumber(static_cast<std::uint64_t>(std::abs(missing)));
    if (missing < 0) {
        return formatMessage("Vadelwatch: nodes in the output files: {0}, in total_node_count.txt: {1}, too many: {2}.",
                             found, count, difference);
    }
    return formatMessage("Vadelwatch: nodes in the output files: {0}, in total_node_count.txt: {1}, missing: {2}.",
                         found, count, difference);
}

/// Returns what is wrong with a file; empty for a whole one.
std::string conditionLine(const OutputFile& file) {
    switch (file.condition) {
    case OutputCondition::empty:
        return formatMessage("{0}: empty, even its header is missing", file.name);
    case OutputCondition::cut:
        return formatMessage("{0}: its last line is cut off, {1} whole nodes before it", file.name,
                             groupedNumber(file.nodeLines));
    case OutputCondition::withoutNode:
        return formatMessage("{0}: a header and no node; Vadelclip leaves no such file", file.name);
    case OutputCondition::unreadable:
        return formatMessage("{0}: cannot be read", file.name);
    case OutputCondition::notRegular:
        return formatMessage("{0}: not a regular file, its lines cannot be counted", file.name);
    case OutputCondition::whole:
        break;
    }
    return {};
}

void addConditions(const OutputCheck& check, std::vector<Suspect>& suspects) {
    for (const OutputFile& file : check.files) {
        const std::string line = conditionLine(file);
        if (!line.empty()) {
            suspects.push_back({file.name, line});
        }
    }
}

void addInputs(const NodeFiles& nodeFiles, std::vector<Suspect>& suspects) {
    for (const NodeFile& file : nodeFiles.files) {
        if (fileState(file.path) != file.state) {
            suspects.push_back({file.name, formatMessage("{0}: the node file was changed during the run", file.name)});
        }
    }
    if (std::ranges::count(nodeFiles.files, nodeCountName, &NodeFile::name) > 0) {
        suspects.push_back(
            {nodeCountName, translateMessage("total_node_count.txt: also the name of a node file; the count "
                                             "includes its nodes and has replaced its output")});
    }
}

/// Returns the names that output files may have. Empty if the input is unknown.
std::set<std::string> expectedNames(const NodeFiles& nodeFiles) {
    std::set<std::string> names(nodeFiles.unread.begin(), nodeFiles.unread.end());
    for (const NodeFile& file : nodeFiles.files) {
        names.insert(file.name);
    }
    return names;
}

/// Returns the expected names that are not in the output directory, sorted.
std::vector<std::string> missingNames(const OutputCheck& check, const std::set<std::string>& expected) {
    std::set<std::string> missing = expected;
    for (const OutputFile& file : check.files) {
        missing.erase(file.name);
    }
    for (const std::string& name : check.directories) {
        missing.erase(name);
    }
    // A file with this name is always the count.
    missing.erase(nodeCountName);
    return {missing.begin(), missing.end()};
}

void addMissing(const std::vector<std::string>& missing, std::vector<Suspect>& suspects) {
    const std::size_t named = std::min(missing.size(), maxNamed);
    for (std::size_t i = 0; i < named; ++i) {
        suspects.push_back(
            {missing[i],
             formatMessage("{0}: no output file, which is right only if none of its nodes was kept", missing[i])});
    }
    if (missing.size() > named) {
        suspects.push_back(
            {"", formatMessage("more node files without an output file: {0}", groupedNumber(missing.size() - named))});
    }
}

/// Names directories in place of an output file, and files that are the output of no node file.
void addUnexpected(const OutputCheck& check, const std::set<std::string>& expected, std::vector<Suspect>& suspects) {
    for (const std::string& name : check.directories) {
        if (name == nodeCountName || expected.contains(name)) {
            suspects.push_back({name, formatMessage("{0}: a directory in place of the file", name)});
        }
    }
    for (const OutputFile& file : check.files) {
        if (!expected.empty() && !expected.contains(file.name)) {
            suspects.push_back(
                {file.name, formatMessage("{0}: no node file had this name when the run began", file.name)});
        }
    }
}

} // namespace

Difference findDifference(const OutputCheck& check, const RunEvidence& evidence) {
    if (check.addsUp) {
        return {};
    }
    std::vector<Suspect> details;
    addConditions(check, details);
    const std::set<std::string> expected = expectedNames(evidence.nodeFiles);
    std::vector<std::string> missing;
    if (!check.directoryError) {
        addUnexpected(check, expected, details);
        missing = missingNames(check, expected);
    }
    // Without a count it is unknown if output is missing.
    if (check.nodeCount && check.missingNodes() > 0) {
        addMissing(missing, details);
    }
    if (evidence.rejectedHeaders > 0) {
        details.push_back(
            {"", formatMessage("node files that lost the header during the run: {0}; Vadelclip adds 1 to the count for "
                               "each and writes no line",
                               groupedNumber(evidence.rejectedHeaders))});
    }
    addInputs(evidence.nodeFiles, details);
    for (const std::string& obstacle : obstaclesIn(evidence.outputDirectory)) {
        details.push_back({"", obstacle});
    }
    // Two numbers differ, and no reason was found.
    if (details.empty() && !check.directoryError && check.nodeCount && missing.empty()) {
        details.push_back(
            {"", check.files.empty()
                     ? translateMessage("There is no output file.")
                     : translateMessage("Every file looks whole, so the file with the difference is unknown.")});
    }
    return {differenceLine(check, evidence.outputDirectory), details};
}

std::vector<std::string> describeDifference(const Difference& difference) {
    std::vector<std::string> lines;
    if (!difference.size.empty()) {
        lines.push_back(difference.size);
    }
    for (const Suspect& suspect : difference.suspects) {
        lines.push_back("  " + suspect.text);
    }
    return lines;
}

} // namespace vadelwatch
