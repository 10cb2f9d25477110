/// \file
/// Compares the index with `containsPoint` for each polygon in turn, on random outlines.
#pragma once

#include "boundary/boundary_set.hpp"
#include "support/boundary_support.hpp"

#include <cstddef>
#include <random>

namespace vadelclip {

using Random = std::mt19937_64;

double uniform(Random& random, double low, double high);

/// Returns a number less than `count`.
std::size_t pick(Random& random, std::size_t count);

/// Returns how many rounds a test makes: all of them if the environment variable VADELCLIP_ALL_ROUNDS is set, else a
/// tenth. Builds that are not optimised make fewer (support/workload.hpp).
int rounds(int full);

/// Compares many points. NaN is left out, because no node line has such a coordinate.
void compareIndex(BoundarySet set, Random& random, int pointCount);

Outline randomRing(Random& random, std::size_t size, double scale);

/// Returns a ring with few different coordinates, so that most points are at the height of a vertex. Some vertices are
/// repeated, and some are in runs.
Outline gridRing(Random& random, std::size_t size, std::size_t cells, double scale = 1.0);

Outline star(Random& random, std::size_t size, Point2D centre, double innerRadius, double outerRadius);

/// Returns a ring with small steps, like a measured outline. If `cells` is not 0, many vertices are at the same height.
Outline randomWalk(Random& random, std::size_t size, std::size_t cells);

Outline moved(Outline ring, double factor, Point2D by);

} // namespace vadelclip
