/// \file
/// A boundary out of bytes: few bytes give awkward rings, large combs and crowds of polygons.
#pragma once

#include "boundary/boundary_set.hpp"
#include "fuzz_target.hpp"

namespace vadelclip {

/// Takes the number of polygons (one byte) and the polygons. Every coordinate is finite, as in a boundary file.
///
/// Holes and lists closed by their first index are among them, which no file can express and the index takes all the
/// same.
BoundarySet takeBoundary(InputBytes& input);

/// Takes a coordinate: most bytes are whole numbers times `scale`; some stand for an earlier coordinate, a neighbour
/// of one, or any finite double (eight more bytes).
double takeCoordinate(InputBytes& input, double scale, const BoundarySet& earlier);

} // namespace vadelclip
