#include "gdal/geometry.hpp"

#include "gdal/hole_join.hpp"
#include "gdal/hole_split.hpp"

#include <cpl_error.h>
#include <ogr_geometry.h>

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace vadelclip_gdal {

namespace {

constexpr const char* notFinite = "a coordinate is not finite";

std::unique_ptr<OGRLinearRing> closedRing(const Ring& corners) {
    // GEOS needs at least four points, also for a ring that its file closes.
    const bool isClosed = corners.size() > 3 && samePoint(corners.front(), corners.back());
    const std::size_t size = corners.size() + (isClosed ? 0 : 1);
    auto ring = std::make_unique<OGRLinearRing>();
    ring->setNumPoints(static_cast<int>(size), FALSE);
    for (std::size_t i = 0; i < corners.size(); ++i) {
        ring->setPoint(static_cast<int>(i), corners[i].x, corners[i].y);
    }
    ring->setPoint(static_cast<int>(size) - 1, corners.front().x, corners.front().y);
    return ring;
}

Ring cornersOf(const vadelclip::BoundaryPolygon& polygon, const std::vector<vadelclip::BoundaryVertex>& vertexTable) {
    Ring corners;
    corners.reserve(polygon.vertexIndices.size());
    for (const std::int32_t index : polygon.vertexIndices) {
        const vadelclip::BoundaryVertex& vertex = vertexTable[static_cast<std::size_t>(index)];
        corners.push_back({vertex.x, vertex.y});
    }
    return corners;
}

/// Returns the points of a ring or line, without the last one if it repeats the first.
Ring pointsOf(const OGRSimpleCurve& curve, bool isRing) {
    Ring points;
    for (int i = 0; i < curve.getNumPoints(); ++i) {
        points.push_back({curve.getX(i), curve.getY(i)});
    }
    if (isRing && points.size() > 1 && samePoint(points.front(), points.back())) {
        points.pop_back();
    }
    return points;
}

bool isFinite(const Ring& points) {
    return std::all_of(points.begin(), points.end(),
                       [](Point2D point) { return std::isfinite(point.x) && std::isfinite(point.y); });
}

RingsOfPolygon ringsOfPolygon(const OGRPolygon& polygon) {
    RingsOfPolygon rings{pointsOf(*polygon.getExteriorRing(), true), {}};
    for (int i = 0; i < polygon.getNumInteriorRings(); ++i) {
        rings.holes.push_back(pointsOf(*polygon.getInteriorRing(i), true));
    }
    return rings;
}

std::string addPolygon(std::vector<Ring>& result, const OGRPolygon& polygon) {
    const RingsOfPolygon rings = ringsOfPolygon(polygon);
    if (!isFinite(rings.outer) || !std::all_of(rings.holes.begin(), rings.holes.end(), isFinite)) {
        return notFinite;
    }
    if (rings.outer.size() < 3) {
        return "a polygon has fewer than three corners";
    }
    // GEOS reports the place as a warning.
    if (polygon.IsValid() == 0) {
        if (!rings.holes.empty()) {
            return "the rings of a polygon cross, overlap or are not nested. The option -makevalid of ogr2ogr can mend "
                   "that";
        }
        CPLError(
            CE_Warning, CPLE_AppDefined,
            "A ring that crosses or touches itself is written unchanged: the even-odd rule decides what is inside");
    }
    std::optional<Ring> joined = joinHoles(rings);
    if (!joined) {
        return "a hole is not inside its polygon";
    }
    result.push_back(std::move(*joined));
    return {};
}

std::string addPoints(std::vector<Ring>& result, const Ring& points) {
    if (points.size() > 2) {
        return "a line string has more than two points";
    }
    result.push_back(points);
    return isFinite(points) ? "" : notFinite;
}

std::string addGeometry(std::vector<Ring>& result, const OGRGeometry& geometry, bool withPointsAndLines);

std::string addParts(std::vector<Ring>& result, const OGRGeometryCollection& parts, bool withPointsAndLines) {
    for (const OGRGeometry* part : parts) {
        std::string error = addGeometry(result, *part, withPointsAndLines);
        if (!error.empty()) {
            return error;
        }
    }
    return {};
}

std::string addGeometry(std::vector<Ring>& result, const OGRGeometry& geometry, bool withPointsAndLines) {
    const OGRwkbGeometryType type = wkbFlatten(geometry.getGeometryType());
    if (geometry.IsEmpty() != 0) {
        return {};
    }
    if (type == wkbPolygon || type == wkbTriangle) {
        return addPolygon(result, *geometry.toPolygon());
    }
    const bool isCollection = OGR_GT_IsSubClassOf(type, wkbGeometryCollection) != 0;
    if (type == wkbMultiPolygon || (withPointsAndLines && isCollection)) {
        return addParts(result, *geometry.toGeometryCollection(), withPointsAndLines);
    }
    if (withPointsAndLines && type == wkbLineString) {
        return addPoints(result, pointsOf(*geometry.toLineString(), false));
    }
    if (withPointsAndLines && type == wkbPoint) {
        return addPoints(result, {{geometry.toPoint()->getX(), geometry.toPoint()->getY()}});
    }
    return std::string("the type ") + OGRGeometryTypeToName(type) + " is neither Polygon nor Multi Polygon";
}

} // namespace

std::unique_ptr<OGRGeometry> geometryOf(const vadelclip::BoundaryPolygon& polygon,
                                        const std::vector<vadelclip::BoundaryVertex>& vertexTable) {
    const Ring corners = cornersOf(polygon, vertexTable);
    if (corners.size() == 1) {
        return std::make_unique<OGRPoint>(corners[0].x, corners[0].y);
    }
    if (corners.size() == 2) {
        auto line = std::make_unique<OGRLineString>();
        line->addPoint(corners[0].x, corners[0].y);
        line->addPoint(corners[1].x, corners[1].y);
        return line;
    }
    auto result = std::make_unique<OGRPolygon>();
    if (!corners.empty()) {
        const RingsOfPolygon rings = splitHoles(corners);
        result->addRingDirectly(closedRing(rings.outer).release());
        for (const Ring& hole : rings.holes) {
            result->addRingDirectly(closedRing(hole).release());
        }
    }
    return result;
}

std::string appendRings(std::vector<Ring>& rings, const OGRGeometry& geometry, bool withPointsAndLines) {
    if (geometry.hasCurveGeometry() != 0) {
        const std::unique_ptr<OGRGeometry> straight(geometry.getLinearGeometry());
        return addGeometry(rings, *straight, withPointsAndLines);
    }
    return addGeometry(rings, geometry, withPointsAndLines);
}

} // namespace vadelclip_gdal
