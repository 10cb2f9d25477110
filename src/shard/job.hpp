/// \file
/// The plan of a job and the report of each shard, and their places in the work directory:
///
///     <output>.shards/lock           held by a running plan or merge
///                     plan/          job.json, boundary.xml and one <index>.json for each shard
///                     attempts/      <index>.XXXXXX/, locked by the running clip that writes it, and merge.XXXXXX/
///                     done/<index>/  report.json and one file for each unit that has kept a line, named by its place
///                     merged/        the complete output directory before it gets its name
///                     published.json means that the rename of merged/ to the output directory may be next or done
#pragma once

#include "shard/open_file.hpp"

#include <cstdint>
#include <string>
#include <vector>

namespace vadelshard {

/// Bytes of one node file, cut after a line feed unless they end with the file.
struct Unit {
    std::string name; ///< Of the node file. Any bytes but a slash and a zero byte.
    FileState file;   ///< As planned.
    std::uint64_t begin = 0;
    std::uint64_t end = 0;

    bool isWholeFile() const { return begin == 0 && end == file.size; }
    bool operator==(const Unit&) const = default;
};

using Shard = std::vector<Unit>;

struct Job {
    std::string id;             ///< Random. Names the scratch directories of the job.
    std::string inputDirectory; ///< Absolute.
    std::string language;       ///< Of the tool's option "-lang=".
    std::uint64_t wantedShards = 0;
    std::uint64_t part = 0; ///< Longer files are cut.
    std::uint64_t shards = 0;
    std::uint64_t files = 0;
    std::uint64_t units = 0;
};

/// What one shard has done. The vectors have an element for each of its units.
struct ShardReport {
    std::vector<std::uint64_t> keptLines;
    std::vector<std::uint64_t> outputSizes; ///< In bytes. 0 where there is no output file.
};

/// Returns the beginning of the names of the job's scratch directories.
std::string scratchPrefix(const Job& job);

/// Returns the directory for scratch files: $SLURM_TMPDIR, $TMPDIR or /tmp.
std::string scratchRoot();

/// Paths in a work directory.
struct WorkDirectory {
    std::string path; ///< Ends in ".shards".

    std::string output() const;
    std::string lock() const { return path + "/lock"; }
    std::string plan() const { return path + "/plan"; }
    std::string boundary() const { return path + "/plan/boundary.xml"; }
    std::string attempts() const { return path + "/attempts"; }
    std::string done() const { return path + "/done"; }
    std::string done(std::uint64_t shard) const { return done() + '/' + std::to_string(shard); }
    std::string merged() const { return path + "/merged"; }
    std::string published() const { return path + "/published.json"; }

    /// Returns true if the output directory is there and the work directory is gone, or empty but for its lock.
    bool isMergedAndRemoved() const;

    /// Returns true if the output directory is there or about to get its name.
    bool isMerged() const { return exists(published()) || isMergedAndRemoved(); }
};

/// Removes slashes at the end. @throws Failure if the name does not end in ".shards".
WorkDirectory workDirectoryAt(std::string path);

/// Writes the files of a plan, except the boundary, into an existing directory.
void writePlan(const std::string& directory, const Job& job, const std::vector<Shard>& shards);

/// @throws Failure if there is no plan or it cannot be read.
Job readJob(const WorkDirectory& work);
Shard readShard(const WorkDirectory& work, std::uint64_t index);

void writeReport(const std::string& directory, const ShardReport& report);

/// @return false if the shard is not done.
bool readReport(const WorkDirectory& work, std::uint64_t index, ShardReport& report);

} // namespace vadelshard
