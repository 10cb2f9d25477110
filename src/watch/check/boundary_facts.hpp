/// \file
/// What the boundary file of a run says about its result: the extent of its polygons, or why it cannot be read.
#pragma once

#include "watch/check/extent.hpp"

#include <cstddef>
#include <string>

namespace vadelwatch {

struct BoundaryFacts {
    MapExtent extent;
    std::size_t polygons = 0;     ///< In groups of type "boundaries".
    std::size_t mostVertices = 0; ///< Of one polygon.
};

/// Reads the file as far as it can be read.
BoundaryFacts readBoundaryFacts(const std::string& boundaryFile);

/// Returns a sentence if the file exists and the tool calls it "not found" all the same: it is a directory, may not be
/// read, or is not well-formed XML. Otherwise empty.
std::string whyBoundaryNotFound(const std::string& boundaryFile);

} // namespace vadelwatch
