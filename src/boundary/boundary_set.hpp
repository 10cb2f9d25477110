/// \file
/// The boundary in memory: all polygons of a boundary file and the one table of vertices they share.
///
/// A polygon contains no coordinates. It lists indices into the vertex table of the set, so the table may reallocate
/// while it grows. Every geometric operation receives the table together with the polygon. The n-th point of the file
/// has index n - 1: the reader removes no duplicates, sorts nothing and closes no ring.
///
/// The records are plain values without shared ownership; a copy is deep. Members marked "carried" get their initial
/// value and are copied with the record. No code reads them.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace vadelclip {

/// A position or direction in the plane of the boundary, in the unit of its coordinates.
struct Point2D {
    double x;
    double y;
};

/// One corner of an outline. Only `x` and `y` are ever read.
struct BoundaryVertex {
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;                          ///< Carried: the boundary file has no third coordinate.
    std::vector<std::int32_t> attachedItems; ///< Carried, always empty.
    std::int32_t vertexTag = 0;              ///< Carried.
};

/// An edge with everything that the distance test of a two-vertex polygon needs. Only `containsPoint` writes edges.
struct BoundaryEdge {
    double length = 0.0;        ///< 1.0 in place of a length below 1e-12, so that nothing is divided by almost zero.
    double lineOffset = 0.0;    ///< Offset of the edge's line along `normal`. Carried.
    double squaredLength = 0.0; ///< Computed from `delta`, also if `length` was replaced.
    bool marked = false;        ///< Carried.
    std::int32_t firstVertex = 0;
    std::int32_t secondVertex = 0;
    Point2D start{0.0, 0.0};
    Point2D end{0.0, 0.0};
    Point2D delta{0.0, 0.0};
    Point2D direction{0.0, 0.0}; ///< `delta` divided by `length`; not a unit vector if `length` was replaced.
    Point2D normal{0.0, 0.0};
    Point2D minCorner{0.0, 0.0};             ///< Carried.
    Point2D maxCorner{0.0, 0.0};             ///< Carried.
    std::vector<std::int32_t> attachedItems; ///< Carried, always empty.
};

/// The exact extent of an outline, without any margin.
struct BoundingBox {
    double minX = 0.0;
    double minY = 0.0;
    double maxX = 0.0;
    double maxY = 0.0;
};

/// An outline with its holes. Only `childPolygons`, `boundingBox`, `vertexIndices` and `edges` have an effect.
struct BoundaryPolygon {
    std::vector<BoundaryPolygon> childPolygons; ///< Holes. A boundary file cannot describe them.
    std::array<std::uint32_t, 5> headerWords{}; ///< Carried, as all members up to `boundingBox`.
    std::string firstText;
    std::array<std::uint8_t, 7> flagBytes{};
    std::uint64_t firstWord = 0;
    std::uint64_t secondWord = 0;
    std::uint8_t firstFlag = 0;
    BoundingBox boundingBox;                 ///< Written by `computeBoundingBox`.
    std::vector<std::int32_t> vertexIndices; ///< The outline in ring order, open or closed by its first index.
    std::vector<std::int32_t> firstIntList;  ///< Carried, as all members up to `edges`.
    std::vector<std::uint64_t> wordList;
    std::vector<std::int32_t> secondIntList;
    std::vector<std::string> textList;
    std::map<std::int32_t, std::vector<std::int32_t>> intListMap;
    std::uint64_t thirdWord = 0;
    std::uint8_t secondFlag = 0;
    std::uint64_t fourthWord = 0;
    std::uint64_t fifthWord = 0;
    double defaultedReal = -1.0;
    std::vector<std::int32_t> thirdIntList;
    std::vector<std::int32_t> fourthIntList;
    std::vector<BoundaryEdge> edges;                    ///< Filled by `containsPoint` if the polygon has two vertices.
    std::vector<std::array<std::uint64_t, 2>> pairList; ///< Carried, as all members from here on.
    std::string secondText;
    std::vector<std::int32_t> fifthIntList;
    std::array<std::uint8_t, 2> closingFlags{};
    std::int32_t defaultedIndex = -1;
};

/// All polygons of a boundary file, in file order, and their vertices.
struct BoundarySet {
    std::vector<BoundaryPolygon> polygons;
    std::vector<BoundaryVertex> vertices;
};

/// Returns the number of vertices of an outline. A last index that repeats the first one does not count.
std::size_t distinctVertexCount(const BoundaryPolygon& polygon);

/// Empties both vectors, the vertices first.
void clearBoundarySet(BoundarySet& boundarySet);

/// Sets the bounding box of a polygon, and of its children, to the exact minimum and maximum of its vertices.
///
/// Does not change the box of a polygon without vertices. The boundary reader calls this once for each polygon.
///
/// @param vertexTable must contain every index of the polygon.
void computeBoundingBox(BoundaryPolygon& polygon, const std::vector<BoundaryVertex>& vertexTable);

} // namespace vadelclip
