/// \file
/// The points of a run for the map: every node of the input directory, kept or dropped.
#pragma once

#include "watch/map/extent.hpp"

#include <cstdint>
#include <functional>
#include <string>

namespace vadelwatch {

/// How many data lines there are. `unreadable` ones have no position; they are neither kept nor dropped here, although
/// a run drops them.
struct NodeCounts {
    std::uint64_t files = 0;
    std::uint64_t kept = 0;
    std::uint64_t dropped = 0;
    std::uint64_t unreadable = 0;
};

using NodeVisitor = std::function<void(MapPosition position, bool kept)>;

/// Visits all nodes of a finished run, file by file in the order of the names, in bounded memory.
///
/// A node is kept if its line stands in the file of the same name in the output directory. The lines of an output file
/// are some of the lines of its input file, in their order, and equal lines have an equal fate, so both files are
/// walked in step and the geometry is not asked again. Input files are the ones a run takes, except those that are no
/// regular files: a FIFO gives its lines only once.
///
/// @param counts receives the numbers, whether or not a line's position can be drawn.
/// @return empty on success, else a sentence: a directory cannot be read, or an output file holds lines that its input
///         file does not hold, so that the two do not belong to one run. Part of the nodes may have been visited then.
std::string visitNodes(const std::string& inputDirectory, const std::string& outputDirectory, NodeCounts& counts,
                       const NodeVisitor& visit);

} // namespace vadelwatch
