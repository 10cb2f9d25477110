/// \file
/// The four commands. Each can be repeated at any time, also after it has been killed.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace vadelshard {

constexpr int finishedStatus = 0;
constexpr int failedStatus = 1;

/// The tool can count the lines of a part in 32 bits up to this length.
constexpr std::uint64_t maxPart = 2147483647;

struct PlanOptions {
    std::vector<std::string> toolArguments; ///< Input directory, output name, boundary file; or what was given instead.
    std::uint64_t shards = 1000;
    std::uint64_t part = maxPart;
    std::string language; ///< As the tool accepts it.
};

struct StatusOptions {
    bool json = false;
    bool missing = false; ///< Only the indexes to run.
    bool watch = false;
};

/// Makes the work directory of a job and prints the number of shards. For a job that the tool refuses, starts the tool with
/// the user's arguments, so that it prints the reason, and returns its status.
///
/// @throws Failure, as all commands do, with a sentence for people.
int planJob(const PlanOptions& options);

/// Clips one shard, unless that is done.
///
/// @param direct whole files are read where they are, through symbolic links; by default the tool reads copies.
int clipShard(const std::string& workDirectory, std::uint64_t index, bool direct);

/// Makes the output directory from the shards and removes the work directory.
int mergeShards(const std::string& workDirectory);

/// Prints what is done, running and missing.
int showStatus(const std::string& workDirectory, const StatusOptions& options);

} // namespace vadelshard
