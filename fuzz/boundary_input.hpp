/// \file
/// Makes a boundary from bytes. Few bytes make difficult rings, large combs and many polygons.
#pragma once

#include "boundary/boundary_set.hpp"
#include "fuzz_target.hpp"

namespace vadelclip {

/// Takes the number of polygons (one byte) and the polygons. Every coordinate is finite, as in a boundary file.
///
/// Includes holes and lists closed by their first index. No file can describe them, but the index accepts them.
BoundarySet takeBoundary(InputBytes& input);

/// Takes a coordinate. Most bytes are whole numbers times `scale`; some mean an earlier coordinate, a neighbour of one, or
/// any finite double (eight more bytes).
double takeCoordinate(InputBytes& input, double scale, const BoundarySet& earlier);

} // namespace vadelclip
