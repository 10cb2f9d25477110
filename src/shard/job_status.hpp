/// \file
/// The progress of a job.
#pragma once

#include "shard/job.hpp"

#include <cstdint>
#include <string>
#include <vector>

namespace vadelshard {

struct JobStatus {
    std::uint64_t shards = 0;
    std::uint64_t done = 0;
    std::vector<std::uint64_t> running; ///< Not done, and a running process clips them.
    std::vector<std::uint64_t> missing; ///< All others.
    std::uint64_t keptLines = 0;        ///< In the shards that are done.
};

JobStatus readStatus(const WorkDirectory& work, const Job& job);

/// Writes increasing indexes as Slurm's --array takes them: "0-3,7". Empty if there are none.
std::string arrayExpression(const std::vector<std::uint64_t>& indexes);

} // namespace vadelshard
