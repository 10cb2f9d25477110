/// \file
/// The outputs of all shards, and the directory that they make together.
#pragma once

#include "shard/job.hpp"

#include <cstdint>
#include <string>
#include <vector>

namespace vadelshard {

/// The output of one unit.
struct Part {
    std::string name; ///< Of the node file.
    std::uint64_t begin = 0;
    std::string path;
    std::uint64_t keptLines = 0;
};

/// Returns the parts of each file next to each other, in their order.
///
/// @throws Failure with the indexes of the shards that are missing.
std::vector<Part> allParts(const WorkDirectory& work, const Job& job);

/// Puts the complete output directory at `merged/`, and then the figures of the job at `published`.
void prepareOutput(const WorkDirectory& work, const std::vector<Part>& parts);

} // namespace vadelshard
