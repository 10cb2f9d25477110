/// \file
/// Recovers a polygon with holes from a ring that walks round them through horizontal cuts.
#pragma once

#include "gdal/ring.hpp"

namespace vadelclip_gdal {

/// Returns the outer ring and the holes of a ring that `joinHoles` has made.
///
/// A hole is recognised by its cut: a horizontal edge that is walked in both directions, with a loop of at least three
/// corners at its left end, no corner of which is further right. The cuts have to be nested, and each has to run inside
/// the polygon. Otherwise the ring is returned unchanged, without holes: the even-odd rule sees the same area either way.
///
/// @param ring as in `Ring`. A first corner that is repeated at the end is allowed.
RingsOfPolygon splitHoles(const Ring& ring);

} // namespace vadelclip_gdal
