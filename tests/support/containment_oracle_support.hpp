/// \file
/// A second, independent writing of the containment test, to compare the tool's with.
///
/// It follows the steps of the test as sentences, one after the other, and shares no line with the tool. Where it looks
/// clumsy, it does so to stay close to those sentences. It counts how often each way through the steps was taken, so that
/// a comparison can show that it has compared all of them.
#pragma once

#include "boundary/boundary_set.hpp"

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace vadelclip {

namespace oracle {

/// Every way through one step of the walk over a ring, and through the test against a segment.
enum class Way : std::size_t {
    allAtHeight,
    runBegins,
    vertexHit,
    notStraddling,
    whollyRight,
    whollyLeft,
    crossingRight,
    crossingHit,
    crossingLeft,
    runHit,
    runGoesOn,
    runPasses,
    runTouches,
    segmentDegenerate,
    segmentBefore,
    segmentBehind,
    segmentBeside
};

constexpr std::size_t wayCount = static_cast<std::size_t>(Way::segmentBeside) + 1;

/// How often each way was taken, by its number.
using Ways = std::array<std::uint64_t, wayCount>;

/// The answer of the containment test. Fills nothing: the edge of a two-vertex polygon is computed on the spot.
bool contains(const BoundaryPolygon& polygon, Point2D point, const std::vector<BoundaryVertex>& vertexTable,
              Ways& ways);

} // namespace oracle

} // namespace vadelclip
