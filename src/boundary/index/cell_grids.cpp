#include "boundary/index/cell_grids.hpp"

#include "boundary/index/grid_builder.hpp"

#include <algorithm>
#include <cmath>
#include <limits>
#include <span>

namespace vadelclip {

namespace {

// The largest amount of memory for an index, also while it is built.
constexpr double maxBytesPerVertex = 64.0;
constexpr double maxBytesPerPolygon = 184.0;
constexpr double maxExtraBytes = 60.0 * 1024.0 * 1024.0;

/// Appends the vertices of an outline.
///
/// @return true if all coordinates are finite.
bool addPoints(std::vector<Point2D>& points, const BoundaryPolygon& polygon, std::size_t vertexCount,
               const std::vector<BoundaryVertex>& vertices) {
    bool finite = true;
    for (std::size_t i = 0; i < vertexCount; ++i) {
        const BoundaryVertex& vertex = vertices[static_cast<std::size_t>(polygon.vertexIndices[i])];
        finite = finite && std::isfinite(vertex.x) && std::isfinite(vertex.y);
        points.push_back({vertex.x, vertex.y});
    }
    return finite;
}

/// Appends the entries of a ring whose first vertex is the point number `first`.
void addEdges(std::vector<CellEntry>& entries, std::size_t first, std::size_t edgeCount) {
    for (std::size_t edge = 0; edge < edgeCount; edge += CellEntry::maxEdges) {
        CellEntry entry;
        entry.first = static_cast<std::uint32_t>(first + edge);
        entry.edgeCount = static_cast<std::uint16_t>(std::min<std::size_t>(edgeCount - edge, CellEntry::maxEdges));
        entries.push_back(entry);
    }
    entries.back().endsPolygon = true;
}

void buildGrids(CellGrids& grids, const BoundarySet& set, std::span<const CellEntry> entries, double maxBytes,
                double pointCount) {
    const GridMeasure measure = measureEntries(grids, entries, set, plane, std::numeric_limits<std::size_t>::max());
    const GridPlan plan = planGrids(measure, pointCount);
    Budget budget{maxBytes};
    if (plan.maxEdgesOfCoarseRoot > 0.0 &&
        GridBuilder(grids, set, budget, plan.maxEdgesOfCell, 0).buildCoarseRoot(entries, measure, plan)) {
        return;
    }
    grids.grids.clear();
    budget = {maxBytes};
    GridBuilder(grids, set, budget, plan.maxEdgesOfCell, 0).buildRoot(entries, measure, plan.rootCells);
}

} // namespace

CellGrids buildCellGrids(const BoundarySet& set, double pointCount) {
    CellGrids grids;
    std::vector<CellEntry> entries;
    grids.points.reserve(set.vertices.size() + set.polygons.size());
    entries.reserve(set.polygons.size() + set.vertices.size() / CellEntry::maxEdges);
    for (std::uint32_t number = 0; number < set.polygons.size(); ++number) {
        const BoundaryPolygon& polygon = set.polygons[number];
        const std::size_t vertexCount = distinctVertexCount(polygon);
        if (vertexCount < 2) {
            continue; // contains no point
        }
        const std::size_t first = grids.points.size();
        if (!addPoints(grids.points, polygon, vertexCount, set.vertices) || !polygon.childPolygons.empty()) {
            grids.unusualPolygons.push_back(number);
            grids.points.resize(first);
        } else if (vertexCount == 2 || polygon.boundingBox.minY == polygon.boundingBox.maxY) {
            CellEntry entry;
            entry.first = number;
            entry.kind = CellEntry::Kind::thinPolygon;
            entry.endsPolygon = true;
            entries.push_back(entry);
            grids.points.resize(first);
        } else {
            grids.points.push_back(grids.points[first]);
            addEdges(entries, first, vertexCount);
        }
    }
    const double maxBytes = maxBytesPerVertex * static_cast<double>(set.vertices.size()) +
                            maxBytesPerPolygon * static_cast<double>(set.polygons.size()) + maxExtraBytes -
                            static_cast<double>(grids.points.capacity() * sizeof(Point2D));
    buildGrids(grids, set, entries, maxBytes, pointCount);
    return grids;
}

} // namespace vadelclip
