/// \file
/// Joins a polygon with holes to one ring, for the even-odd rule.
#pragma once

#include "gdal/ring.hpp"

#include <optional>

namespace vadelclip_gdal {

/// Returns a ring that walks in through a horizontal cut, round each hole and back through the same cut.
///
/// A cut leads from the rightmost corner of a hole to the right. It is horizontal because the containment test then
/// computes nothing on it: a horizontal edge crosses no height, and a point on the cut is on the outline. docs/gdal.md
/// has the proof. Without holes the outer ring is returned unchanged. With holes, a corner that equals the one before it
/// is left out. A hole that touches another ring at its rightmost corner gets a cut of length zero.
///
/// @return nothing if a hole is not inside the outer ring, or if a ring has fewer than three corners.
std::optional<Ring> joinHoles(const RingsOfPolygon& polygon);

} // namespace vadelclip_gdal
