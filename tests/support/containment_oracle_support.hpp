/// \file
/// A second, independent implementation of the containment test, as reference for the one of the tool.
///
/// It follows the written rules of the test step by step and shares no line with the tool. Its form stays close to the
/// rules on purpose. It counts how often each way through the steps was taken, so that a test can check that it has
/// compared all of them.
#pragma once

#include "boundary/boundary_set.hpp"

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace vadelclip {

namespace oracle {

/// The ways through one step of the walk over a ring, and through the test against a segment.
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
    runContinues,
    runPasses,
    runTouches,
    segmentDegenerate,
    segmentBefore,
    segmentAfter,
    segmentAlong
};

constexpr std::size_t wayCount = static_cast<std::size_t>(Way::segmentAlong) + 1;

/// How often each way was taken, indexed by its number.
using Ways = std::array<std::uint64_t, wayCount>;

/// Returns the result of the containment test. Does not change the polygon: computes the edge of a two-vertex polygon
/// for each call.
bool contains(const BoundaryPolygon& polygon, Point2D point, const std::vector<BoundaryVertex>& vertexTable,
              Ways& ways);

} // namespace oracle

} // namespace vadelclip
