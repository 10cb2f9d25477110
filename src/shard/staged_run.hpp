/// \file
/// One run of the tool over copies of units, with a check of everything that it writes.
#pragma once

#include "shard/job.hpp"

#include <cstddef>
#include <string>
#include <vector>

namespace vadelshard {

/// Stages units in a scratch directory, clips them, and moves the checked outputs to a result directory.
///
/// A staged file is named by the place of its unit in the shard. So no name of a node file can harm, not even
/// `total_node_count.txt`, and parts of one file fit into one run.
class StagedRun {
public:
    /// @param direct whole files are symbolic links in place of copies.
    StagedRun(std::string scratchDirectory, std::string boundaryFile, std::string resultDirectory, bool direct);

    /// Copies a unit, with the first line of its file in front, unless the tool would skip the file.
    ///
    /// @throws Failure if the file is not as planned, before or after the copy.
    void stage(const std::string& inputDirectory, const Unit& unit, std::size_t place);

    /// Runs the tool over what is staged, and enters kept lines and sizes into the report. Does nothing if nothing is
    /// staged.
    ///
    /// @throws Failure if the run failed, or if its outputs, its count and its messages do not agree.
    void clip(ShardReport& report);

private:
    struct StagedUnit {
        std::size_t place;
        std::string path; ///< Of the node file.
        FileState file;
    };

    std::string outputOf(const StagedUnit& unit) const;
    void checkRun(int status) const;
    std::uint64_t collect(const StagedUnit& unit, ShardReport& report) const;

    std::string scratch;
    std::string boundary;
    std::string result;
    bool usesLinks;
    std::vector<StagedUnit> staged;
};

} // namespace vadelshard
