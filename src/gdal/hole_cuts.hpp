/// \file
/// Where the cut of each hole begins and ends.
#pragma once

#include "gdal/ring.hpp"

#include <cstddef>
#include <optional>
#include <vector>

namespace vadelclip_gdal {

/// A cut from the rightmost corner of a hole to the right, to a corner or an edge of another ring. The outer ring has
/// number 0, hole n has number n + 1.
struct HoleCut {
    std::size_t hole;   ///< Number of the hole's ring.
    std::size_t corner; ///< The rightmost corner of the hole.
    std::size_t ring;   ///< The ring at the other end.
    std::size_t edge;   ///< The cut ends at this corner, or on the edge from this corner to the next.
    bool atCorner;
    Point2D end; ///< At the height of `corner`. Not left of it.
};

/// Returns one cut for each hole, in the order in which they are joined: those further right first. A cut ends at the
/// outer ring or at a hole before it.
///
/// @param rings the outer ring, then the holes, each with at least three corners. No corner equals the one before it.
/// @return nothing if a hole has no ring to its right: it is not inside the outer ring.
std::optional<std::vector<HoleCut>> findCuts(const std::vector<Ring>& rings);

} // namespace vadelclip_gdal
