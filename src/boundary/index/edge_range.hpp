/// \file
/// The part of a row that an edge covers.
#pragma once

#include "boundary/ring_walk.hpp"

#include <algorithm>
#include <cmath>

namespace vadelclip {

struct XRange {
    double minX;
    double maxX;
};

/// Returns a range with every xi that the walk can compute for an edge between two heights. At these heights, xi is
/// `firstXi` and `secondXi`.
///
/// For a given edge, xi is a monotone function of y, rounding included. The walk compares x with both ends of the edge
/// before it computes xi, so the range need not exceed them.
inline XRange rangeBetween(Point2D from, Point2D to, double firstXi, double secondXi) {
    const double smallerX = std::min(from.x, to.x);
    const double largerX = std::max(from.x, to.x);
    if (!std::isfinite(firstXi) || !std::isfinite(secondXi)) {
        return {smallerX, largerX};
    }
    return {std::clamp(std::min(firstXi, secondXi), smallerX, largerX),
            std::clamp(std::max(firstXi, secondXi), smallerX, largerX)};
}

} // namespace vadelclip
