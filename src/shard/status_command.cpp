#include "shard/commands.hpp"
#include "shard/interruption.hpp"
#include "shard/job_status.hpp"
#include "shard/messages.hpp"

#include <nlohmann/json.hpp>

#include <cerrno>
#include <chrono>
#include <iostream>
#include <thread>
#include <unistd.h>

namespace vadelshard {

namespace {

/// Reads the status again until every shard is done, and shows each change: on a terminal in one line.
///
/// @throws Failure if the plan is removed without a merge.
JobStatus watchStatus(const WorkDirectory& work, const Job& job) {
    constexpr std::chrono::seconds pause(1);
    const bool isTerminal = isatty(STDOUT_FILENO) == 1;
    bool isPlanned = true;
    std::string shown;
    JobStatus status = readStatus(work, job);
    while (status.done < status.shards) {
        const std::string line = formatMessage("{0} of {1} shards done, {2} running, {3} nodes kept",
                                               std::to_string(status.done), std::to_string(status.shards),
                                               std::to_string(status.running.size()), std::to_string(status.keptLines));
        if (line != shown) {
            std::cout << (isTerminal ? "\r\033[K" : "") << line << (isTerminal ? "" : "\n") << std::flush;
            shown = line;
        }
        std::this_thread::sleep_for(pause);
        failIfInterrupted();
        // In this order, because a merge removes the plan.
        isPlanned = exists(work.plan());
        if (!isPlanned || work.isMerged()) {
            break;
        }
        status = readStatus(work, job);
    }
    if (isTerminal && !shown.empty()) {
        std::cout << "\r\033[K" << std::flush;
    }
    if (!isPlanned && !work.isMerged()) {
        throw fileFailure(work.plan(), ENOENT);
    }
    return status;
}

void printJson(const JobStatus& status, bool isMerged) {
    const nlohmann::ordered_json json = {{"shards", status.shards},
                                         {"done", status.done},
                                         {"running", arrayExpression(status.running)},
                                         {"missing", arrayExpression(status.missing)},
                                         {"kept_lines", status.keptLines},
                                         {"merged", isMerged}};
    std::cout << json.dump() << '\n';
}

void printLines(const JobStatus& status) {
    const std::string all = std::to_string(status.shards);
    std::cout << formatMessage("Done: {0} of {1} shards, {2} nodes kept", std::to_string(status.done), all,
                               std::to_string(status.keptLines))
              << '\n';
    if (!status.running.empty()) {
        std::cout << formatMessage("Running: {0} ({1})", std::to_string(status.running.size()),
                                   arrayExpression(status.running))
                  << '\n';
    }
    if (!status.missing.empty()) {
        std::cout << formatMessage("Missing: {0} ({1})", std::to_string(status.missing.size()),
                                   arrayExpression(status.missing))
                  << '\n';
    }
}

} // namespace

int showStatus(const std::string& workDirectory, const StatusOptions& options) {
    const WorkDirectory work = workDirectoryAt(workDirectory);
    JobStatus status;
    try {
        const Job job = readJob(work);
        status = options.watch ? watchStatus(work, job) : readStatus(work, job);
    } catch (const Failure&) {
        // A merge may have removed what was read.
        if (!work.isMerged()) {
            throw;
        }
    }
    const bool isMerged = work.isMerged();
    if (isMerged) {
        status = {};
    }
    if (options.json) {
        printJson(status, isMerged);
    } else if (options.missing) {
        std::cout << arrayExpression(status.missing) << '\n';
    } else if (isMerged) {
        std::cout << formatMessage("Merged: {0}", work.output()) << '\n';
    } else {
        printLines(status);
    }
    return finishedStatus;
}

} // namespace vadelshard
