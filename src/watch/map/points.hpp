/// \file
/// The points of a run for the map: every node of the input directory, kept or dropped.
#pragma once

#include "watch/check/node_files.hpp"

#include <cstdint>
#include <functional>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

namespace vadelwatch {

/// The numbers of data lines. Lines without a position are `unreadable`: neither kept nor dropped here, although the tool
/// drops them.
struct NodeCounts {
    std::uint64_t kept = 0;
    std::uint64_t dropped = 0;
    std::uint64_t unreadable = 0;
    /// Kept nodes whose third column is not a number. 0 unless elevations are read.
    std::uint64_t withoutElevation = 0;
};

struct MapNode {
    MapPosition position;
    bool kept = false;
    /// NaN for a node without elevation, and for all nodes unless elevations are read.
    float elevation = std::numeric_limits<float>::quiet_NaN();
};

/// Returns the number in the third column of a node line, or NaN if there is none.
float elevationOf(std::string_view line, char separator);

using NodeVisitor = std::function<void(const MapNode& node)>;

/// Visits all nodes of a finished run, file by file, in bounded memory.
///
/// A node is kept if its line is in the file of the same name in the output directory. The lines of an output file are a
/// subsequence of those of its input file, and equal lines are all kept or all dropped, so both files are read in step
/// and no geometry is computed again.
///
/// @param counts receives the numbers, including nodes that cannot be drawn.
/// @return empty on success, otherwise an error message: the output directory cannot be read, or the files have changed
///         and do not belong to one run. Part of the nodes may have been visited then.
std::string visitNodes(const std::vector<NodeFile>& nodeFiles, const std::string& outputDirectory, NodeCounts& counts,
                       const NodeVisitor& visit, bool readElevations = false);

} // namespace vadelwatch
