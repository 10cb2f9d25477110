#include "clip/count32.hpp"
#include "shard/commands.hpp"
#include "shard/input_scan.hpp"
#include "shard/interruption.hpp"
#include "shard/job.hpp"
#include "shard/job_status.hpp"
#include "shard/locked_directory.hpp"
#include "shard/messages.hpp"
#include "shard/tool_run.hpp"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <iostream>
#include <sys/stat.h>
#include <tuple>
#include <unistd.h>

namespace vadelshard {

namespace {

constexpr const char* countFile = "total_node_count.txt";

/// The output of one unit.
struct Part {
    std::string name; ///< Of the node file.
    std::uint64_t begin = 0;
    std::string path;
    std::uint64_t keptLines = 0;

    bool operator<(const Part& other) const { return std::tie(name, begin) < std::tie(other.name, other.begin); }
};

/// Adds the outputs of a shard.
///
/// @return false if the shard is not done, or a file is not as long as its report says.
bool addParts(const WorkDirectory& work, std::uint64_t index, std::vector<Part>& parts) {
    const Shard shard = readShard(work, index);
    ShardReport report;
    if (!readReport(work, index, report) || report.keptLines.size() != shard.size() ||
        report.outputSizes.size() != shard.size()) {
        return false;
    }
    for (std::size_t i = 0; i < shard.size(); ++i) {
        if (report.outputSizes[i] == 0) {
            continue;
        }
        const std::string path = work.done(index) + '/' + std::to_string(i);
        if (!exists(path) || OpenFile::forReading(path).state().size != report.outputSizes[i]) {
            return false;
        }
        parts.push_back({shard[i].name, shard[i].begin, path, report.keptLines[i]});
    }
    return true;
}

/// Moves away a result that cannot be merged, so that its shard is missing again.
void discardResult(const WorkDirectory& work, std::uint64_t index) {
    if (exists(work.done(index))) {
        const LockedDirectory discarded(work.attempts() + '/' + std::to_string(index) + '.');
        moveFile(work.done(index), discarded.path() + "/result");
    }
}

/// @throws Failure with the indexes of the shards that are missing.
std::vector<Part> allParts(const WorkDirectory& work, const Job& job) {
    std::vector<Part> parts;
    std::vector<std::uint64_t> missing;
    for (std::uint64_t index = 0; index < job.shards; ++index) {
        if (!addParts(work, index, parts)) {
            discardResult(work, index);
            missing.push_back(index);
        }
    }
    if (!missing.empty()) {
        throw Failure(formatMessage("{0} of {1} shards are missing: {2}", std::to_string(missing.size()),
                                    std::to_string(job.shards), arrayExpression(missing)));
    }
    std::sort(parts.begin(), parts.end());
    return parts;
}

/// Joins the parts of one file. Each begins with the header of the file: only the first one keeps it.
void joinParts(const Part* first, const Part* last, const std::string& target) {
    OpenFile output = OpenFile::forWriting(target);
    for (const Part* part = first; part != last; ++part) {
        const OpenFile input = OpenFile::forReading(part->path);
        const std::size_t header = rawFirstLine(input).value_or("").size();
        output.append(input, part == first ? 0 : header, input.state().size);
    }
    output.close();
}

/// Makes and fills a directory.
///
/// @return the figures of the job, to be published.
nlohmann::json buildOutput(const std::string& directory, const std::vector<Part>& parts) {
    makeDirectory(directory);
    std::uint64_t keptLines = 0;
    std::uint64_t files = 0;
    for (auto first = parts.begin(); first != parts.end();) {
        failIfInterrupted();
        const auto last =
            std::find_if(first, parts.end(), [first](const Part& part) { return part.name != first->name; });
        for (auto part = first; part != last; ++part) {
            keptLines += part->keptLines;
        }
        // A node file of this name is replaced by the count, as in one run.
        if (first->name != countFile) {
            const std::string target = directory + '/' + first->name;
            if (last - first == 1) {
                linkOrCopy(first->path, target);
            } else {
                joinParts(&*first, &*first + (last - first), target);
            }
            ++files;
        }
        first = last;
    }
    // The count of one run is a sum of 32 bits.
    const std::int32_t count = vadelclip::wrapTo32(keptLines);
    writeWholeFile(directory + '/' + countFile, std::to_string(count) + '\n');
    return {{"kept_lines", keptLines}, {"files", files}, {"total_node_count", count}};
}

/// Puts the complete output directory at `merged/`, and then the figures at `published`.
///
/// Builds both elsewhere: where locks do not reach other hosts, another merge may run at the same time.
void prepareOutput(const WorkDirectory& work, const std::vector<Part>& parts) {
    const std::string attemptPrefix = "merge.";
    removeAbandoned(work.attempts(), attemptPrefix);
    const LockedDirectory attempt(work.attempts() + '/' + attemptPrefix);
    const std::string merged = attempt.path() + "/merged";
    const std::string figures = attempt.path() + "/figures";
    writeWholeFile(figures, buildOutput(merged, parts).dump() + '\n');
    try {
        moveFile(merged, work.merged());
    } catch (const Failure&) {
        // Another merge may have been first. Its directory has the same content.
        if (!exists(work.merged())) {
            throw;
        }
    }
    moveFile(figures, work.published());
}

/// Starts the tool, which refuses the output directory and prints why.
int letToolRefuseOutput(const WorkDirectory& work, const Job& job) {
    const std::filesystem::path output = work.output();
    // The tool needs the directory of its input.
    const std::string input = output.has_parent_path() ? work.path : "./" + work.path;
    return runTool({input, output.filename().string(), work.boundary(), "-lang=" + job.language});
}

bool isEmptyDirectory(const std::string& path) {
    std::error_code error;
    const bool isEmpty = std::filesystem::is_empty(path, error);
    return !error && isEmpty && std::filesystem::is_directory(path, error);
}

/// Renames `merged/` to the output directory.
///
/// @param mayBeClaimed an earlier merge of this job may have made the empty output directory.
/// @return false if the output directory does not belong to this job.
bool publishOutput(const WorkDirectory& work, bool mayBeClaimed) {
    const std::string output = work.output();
    const bool isClaimed = mkdir(output.c_str(), S_IRWXU | S_IRWXG | S_IRWXO) == 0;
    if (!isClaimed && errno != EEXIST) {
        throw fileFailure(output, errno);
    }
    if (!isClaimed && !(mayBeClaimed && isEmptyDirectory(output))) {
        return false;
    }
    // Replaces the empty directory.
    moveFile(work.merged(), output);
    return true;
}

/// Removes the file `published` last, because a repeated merge reads from it that only the removal is left.
void removeWorkDirectory(const WorkDirectory& work, const WorkLock& lock) {
    for (const std::string& path : {work.attempts(), work.done(), work.plan(), work.published()}) {
        removeAll(path);
    }
    lock.removeEmptyDirectory();
}

void printFigures(const WorkDirectory& work) {
    const nlohmann::json figures = nlohmann::json::parse(readWholeFile(work.published()), nullptr, false);
    const auto keptLines = figures.value("kept_lines", std::uint64_t{0});
    const auto count = figures.value("total_node_count", std::int32_t{0});
    std::cout << formatMessage("Merged: {0} files with {1} nodes in {2}", std::to_string(figures.value("files", 0)),
                               std::to_string(keptLines), work.output())
              << '\n';
    if (count < 0 || static_cast<std::uint64_t>(count) != keptLines) {
        std::cout << formatMessage("total_node_count.txt has 32 bits, as in one run, and holds {0}.",
                                   std::to_string(count))
                  << '\n';
    }
}

/// Merges under the lock of the work directory. Continues where an earlier merge was killed.
int mergeLocked(const WorkDirectory& work, const WorkLock& lock) {
    if (work.isMergedAndRemoved()) {
        lock.removeEmptyDirectory();
        return finishedStatus;
    }
    const bool wasPublished = exists(work.published());
    if (!wasPublished || exists(work.merged())) {
        const Job job = readJob(work);
        if (!wasPublished) {
            const std::vector<Part> parts = allParts(work, job);
            if (exists(work.output())) {
                return letToolRefuseOutput(work, job);
            }
            prepareOutput(work, parts);
        }
        if (!publishOutput(work, wasPublished)) {
            removeAll(work.published());
            return letToolRefuseOutput(work, job);
        }
        removeAbandoned(scratchRoot(), scratchPrefix(job));
    }
    printFigures(work);
    removeWorkDirectory(work, lock);
    return finishedStatus;
}

} // namespace

int mergeShards(const std::string& workDirectory) {
    const WorkDirectory work = workDirectoryAt(workDirectory);
    try {
        const WorkLock lock(work.path, false);
        return mergeLocked(work, lock);
    } catch (const Failure&) {
        // Another merge may have removed the work directory.
        if (exists(work.path) || !work.isMergedAndRemoved()) {
            throw;
        }
        return finishedStatus;
    }
}

} // namespace vadelshard
