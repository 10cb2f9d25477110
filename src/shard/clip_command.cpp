#include "shard/commands.hpp"
#include "shard/input_scan.hpp"
#include "shard/interruption.hpp"
#include "shard/job.hpp"
#include "shard/locked_directory.hpp"
#include "shard/messages.hpp"
#include "shard/staged_run.hpp"

#include <string>

namespace vadelshard {

namespace {

/// Clips all units of a shard. Stages as many at once as fit into the length of one part.
ShardReport clipUnits(const Job& job, const Shard& shard, StagedRun& run, std::uint64_t part) {
    ShardReport report;
    report.keptLines.resize(shard.size());
    report.outputSizes.resize(shard.size());
    std::uint64_t stagedBytes = 0;
    for (std::size_t i = 0; i < shard.size(); ++i) {
        const std::uint64_t length = shard[i].end - shard[i].begin;
        if (stagedBytes + length > part) {
            run.clip(report);
            stagedBytes = 0;
        }
        run.stage(job.inputDirectory, shard[i], i);
        stagedBytes += length;
    }
    run.clip(report);
    return report;
}

void clipAndPublish(const WorkDirectory& work, const Job& job, std::uint64_t index, bool direct) {
    const std::string attemptName = std::to_string(index) + '.';
    removeAbandoned(work.attempts(), attemptName);
    const LockedDirectory attempt(work.attempts() + '/' + attemptName);
    const std::string scratchName = scratchPrefix(job);
    removeAbandoned(scratchRoot(), scratchName);
    const LockedDirectory scratch(scratchRoot() + '/' + scratchName);

    const std::string result = attempt.path() + "/result";
    makeDirectory(result);
    StagedRun run(scratch.path(), work.boundary(), result, direct);
    writeReport(result, clipUnits(job, readShard(work, index), run, job.part));
    failIfInterrupted();
    moveFile(result, work.done(index));
}

void clipUnlessDone(const WorkDirectory& work, std::uint64_t index, bool direct) {
    const Job job = readJob(work);
    if (index >= job.shards) {
        throw Failure(formatMessage("There is no shard {0}: the last one is {1}.", std::to_string(index),
                                    std::to_string(job.shards - 1)));
    }
    if (!exists(work.done(index))) {
        clipAndPublish(work, job, index, direct);
    }
}

} // namespace

int clipShard(const std::string& workDirectory, std::uint64_t index, bool direct) {
    const WorkDirectory work = workDirectoryAt(workDirectory);
    if (work.isMerged()) {
        return finishedStatus;
    }
    try {
        clipUnlessDone(work, index, direct);
    } catch (const Failure&) {
        // Another attempt may have been first, or a merge may have removed the plan and the attempts. A network file system
        // may also report a rename as failed that was not.
        if (!exists(work.done(index)) && !work.isMerged()) {
            throw;
        }
    }
    return finishedStatus;
}

} // namespace vadelshard
