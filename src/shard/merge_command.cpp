#include "shard/commands.hpp"
#include "shard/job.hpp"
#include "shard/locked_directory.hpp"
#include "shard/messages.hpp"
#include "shard/output_parts.hpp"
#include "shard/tool_run.hpp"

#include <nlohmann/json.hpp>

#include <cerrno>
#include <filesystem>
#include <iostream>
#include <sys/stat.h>
#include <unistd.h>

namespace vadelshard {

namespace {

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
