/// \file
/// Polygons of a boundary file as geometries of GDAL, and back.
#pragma once

#include "boundary/boundary_set.hpp"
#include "gdal/ring.hpp"

#include <memory>
#include <string>
#include <vector>

class OGRGeometry;

namespace vadelclip_gdal {

/// Returns a polygon with the holes that are recognised. Of two points a line string, of one a point, of none an empty
/// polygon.
std::unique_ptr<OGRGeometry> geometryOf(const vadelclip::BoundaryPolygon& polygon,
                                        const std::vector<vadelclip::BoundaryVertex>& vertexTable);

/// Appends one ring for each polygon of a geometry, with its holes joined. Curves become straight edges; z is left out.
/// An empty part has no ring.
///
/// @param withPointsAndLines also accept points and line strings of two points, and collections.
/// @return why the geometry cannot be written, empty for success.
std::string appendRings(std::vector<Ring>& rings, const OGRGeometry& geometry, bool withPointsAndLines);

} // namespace vadelclip_gdal
