#include "shard/staged_run.hpp"

#include "shard/input_scan.hpp"
#include "shard/messages.hpp"
#include "shard/tool_run.hpp"
#include "text/text_lines.hpp"

#include <algorithm>
#include <cerrno>
#include <optional>
#include <sstream>
#include <string_view>
#include <unistd.h>
#include <utility>

namespace vadelshard {

namespace {

/// The suffix of every staged file. The tool treats all suffixes alike.
constexpr const char* stagedSuffix = ".xyz";

void requireState(const std::string& path, const FileState& found, const FileState& planned) {
    if (found != planned) {
        throw Failure(formatMessage(
            "{0} has changed since the plan was made. Restore it, or remove the work directory to start anew.", path));
    }
}

/// Returns the number of line feeds. An output whose last line is cut off is a `Failure`.
std::uint64_t countLines(const OpenFile& file, const std::string& path) {
    std::uint64_t lineFeeds = 0;
    char last = '\n';
    file.readBlocks(0, file.state().size, [&lineFeeds, &last](std::string_view block) {
        lineFeeds += vadelclip::countLineFeeds(block.data(), block.size());
        last = block.back();
    });
    if (last != '\n') {
        throw Failure(formatMessage("The last line of {0} is cut off. Is the disk full?", path));
    }
    return lineFeeds;
}

/// Returns the number of passes over node files that the tool has reported.
std::size_t countPasses(const std::string& messageFile) {
    std::istringstream messages(readWholeFile(messageFile));
    std::size_t passes = 0;
    for (std::string line; std::getline(messages, line);) {
        passes += line.starts_with(R"({"type":"state")") ? 1U : 0U;
    }
    return passes;
}

} // namespace

StagedRun::StagedRun(std::string scratchDirectory, std::string boundaryFile, std::string resultDirectory, bool direct)
    : scratch(std::move(scratchDirectory)), boundary(std::move(boundaryFile)), result(std::move(resultDirectory)),
      usesLinks(direct) {}

void StagedRun::stage(const std::string& inputDirectory, const Unit& unit, std::size_t place) {
    const std::string path = inputDirectory + '/' + unit.name;
    const OpenFile source = OpenFile::forReading(path);
    requireState(path, source.state(), unit.file);
    const std::optional<std::string> header = rawFirstLine(source);
    if (!header || !isNodeFileLine(*header)) {
        return;
    }
    if (staged.empty()) {
        makeDirectory(scratch + "/in");
    }
    const std::string copy = scratch + "/in/" + std::to_string(place) + stagedSuffix;
    if (usesLinks && unit.isWholeFile()) {
        if (symlink(path.c_str(), copy.c_str()) != 0) {
            throw fileFailure(copy, errno);
        }
    } else {
        OpenFile target = OpenFile::forWriting(copy);
        if (unit.begin > 0) {
            target.append(*header);
        }
        target.append(source, unit.begin, unit.end);
        target.close();
        requireState(path, source.state(), unit.file);
    }
    staged.push_back({place, path, unit.file});
}

void StagedRun::clip(ShardReport& report) {
    if (staged.empty()) {
        return;
    }
    checkRun(runTool({scratch + "/in", "out", boundary, "-pipe", "-lang=en"}, scratch + "/console.txt",
                     scratch + "/messages.jsonl"));
    std::uint64_t keptLines = 0;
    for (const StagedUnit& unit : staged) {
        keptLines += collect(unit, report);
    }
    const std::string count = readWholeFile(scratch + "/out/total_node_count.txt");
    if (count != std::to_string(keptLines) + '\n') {
        throw Failure(formatMessage("The outputs hold {0} lines, but the count of the tool is {1}. Is the disk full?",
                                    std::to_string(keptLines), count.substr(0, count.find('\n'))));
    }
    removeAll(scratch + "/in");
    removeAll(scratch + "/out");
    staged.clear();
}

std::string StagedRun::outputOf(const StagedUnit& unit) const {
    return scratch + "/out/" + std::to_string(unit.place) + stagedSuffix;
}

void StagedRun::checkRun(int status) const {
    if (status != 0) {
        std::string console = readWholeFile(scratch + "/console.txt");
        std::replace(console.begin(), console.end(), '\n', ' ');
        throw Failure(formatMessage("Vadelclip ended with exit status {0}: {1}", std::to_string(status), console));
    }
    const std::size_t passes = countPasses(scratch + "/messages.jsonl");
    if (passes != staged.size()) {
        throw Failure(formatMessage("Vadelclip has read {0} of {1} node files.", std::to_string(passes),
                                    std::to_string(staged.size())));
    }
    for (const StagedUnit& unit : staged) {
        if (usesLinks) {
            requireState(unit.path, OpenFile::forReading(unit.path).state(), unit.file);
        }
    }
}

/// Moves the output of a unit to the result directory.
///
/// @return its number of kept lines, 0 if it has no output.
std::uint64_t StagedRun::collect(const StagedUnit& unit, ShardReport& report) const {
    const std::string output = outputOf(unit);
    if (!exists(output)) {
        return 0;
    }
    std::uint64_t& keptLines = report.keptLines[unit.place];
    {
        const OpenFile file = OpenFile::forReading(output);
        report.outputSizes[unit.place] = file.state().size;
        keptLines = std::max<std::uint64_t>(countLines(file, output), 1) - 1; // without the header
    }
    moveFile(output, result + '/' + std::to_string(unit.place));
    return keptLines;
}

} // namespace vadelshard
