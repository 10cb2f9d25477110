#include "boundary/index/grid_size.hpp"

#include "boundary/index/edge_range.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <random>

namespace vadelclip {

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();

/// The difference of two coordinates up to this limit is finite, also with an empty row or column at each side.
constexpr double maxCoordinate = 4e307;

// These numbers measured best (benchmarks/boundary_index_bench.cpp).

/// The minimum number of cells, for few and for many edges.
constexpr std::array minRootCells{2048.0, 8192.0};
constexpr double rootCellsPerCrossing = 500.0;
constexpr double extraRootCells = 32768.0;
constexpr double rootCellsPerPoint = 0.125;
constexpr double maxRootCellsForPoints = 131072.0;

/// To add an edge to a cell takes as much time as to walk along this number of edges.
constexpr double walksPerEntry = 10.0;

/// A cell with fewer edges gets no grid.
constexpr double minCrowd = 96.0;
constexpr double extraRootEntriesPerEdge = 4.0;
constexpr double extraRootEntries = 3e6;
constexpr double innerCellsPerEdge = 0.25;
constexpr double extraInnerEntriesPerEdge = 1.0;

struct Measure {
    BoundingBox vertices{infinity, infinity, -infinity, -infinity}; ///< Extent of the vertices in the region.
    BoundingBox edges = vertices;                                   ///< Extent of the parts of edges in the region.
    double edgeCount = 0.0;
    double vertexCount = 0.0;
    double travelledX = 0.0;
    double travelledY = 0.0;
};

bool contains(const Region& region, Point2D point) {
    return point.x >= region.firstX && point.x <= region.lastX && point.y >= region.firstY && point.y <= region.lastY;
}

void include(BoundingBox& box, const BoundingBox& other) {
    box = {std::min(box.minX, other.minX), std::min(box.minY, other.minY), std::max(box.maxX, other.maxX),
           std::max(box.maxY, other.maxY)};
}

/// Reduces the box of an edge to about the part of the edge that is inside the region.
BoundingBox partInside(Point2D from, Point2D to, BoundingBox box, const Region& region) {
    if (box.minY < box.maxY && box.minY <= region.lastY && box.maxY >= region.firstY) {
        box.minY = std::max(box.minY, region.firstY);
        box.maxY = std::min(box.maxY, region.lastY);
        const XRange range = rangeBetween(from, to, crossingX(from, to, box.minY), crossingX(from, to, box.maxY));
        box.minX = range.minX;
        box.maxX = range.maxX;
    }
    box.minX = std::max(box.minX, region.firstX);
    box.maxX = std::min(box.maxX, region.lastX);
    return box;
}

/// Returns false if the vertex is outside of the region.
bool includeVertex(Measure& measure, Point2D vertex, const Region& region) {
    const bool inside = contains(region, vertex);
    if (inside) {
        include(measure.vertices, {vertex.x, vertex.y, vertex.x, vertex.y});
    }
    return inside;
}

void addEdge(Measure& measure, Point2D from, Point2D to, const Region& region) {
    measure.edgeCount += 1.0;
    BoundingBox box{std::min(from.x, to.x), std::min(from.y, to.y), std::max(from.x, to.x), std::max(from.y, to.y)};
    const bool toInside = includeVertex(measure, to, region);
    measure.vertexCount += toInside ? 1.0 : 0.0;
    if (!toInside || !contains(region, from)) {
        box = partInside(from, to, box, region);
        if (box.minX > box.maxX || box.maxY < region.firstY || box.minY > region.lastY) {
            return;
        }
    }
    include(measure.edges, box);
    measure.travelledX += box.maxX - box.minX;
    measure.travelledY += box.maxY - box.minY;
}

/// Measures one of `step` edges on average. A thin polygon counts as one edge.
///
/// The distances between them look random: a constant one would see only some sides of polygons with a fixed number of them.
Measure measureSamples(const CellGrids& grids, std::span<const CellEntry> entries, const BoundarySet& set,
                       const Region& region, std::size_t step) {
    Measure measure;
    std::minstd_rand random;
    std::size_t next = 0; // the next edge of the sample, counted from the start of the entry
    for (const CellEntry& entry : entries) {
        const std::size_t count = std::max<std::size_t>(entry.edgeCount, 1);
        for (; next < count; next += 1 + random() % (2 * step - 1)) {
            if (entry.kind == CellEntry::Kind::piece) {
                addEdge(measure, grids.points[entry.first + next], grids.points[entry.first + next + 1], region);
            } else {
                const BoundingBox& box = set.polygons[entry.first].boundingBox;
                addEdge(measure, {box.minX, box.minY}, {box.maxX, box.maxY}, region);
                includeVertex(measure, {box.minX, box.minY}, region); // no edge before ends there
            }
        }
        next -= count;
    }
    return measure;
}

bool isSame(const BoundingBox& a, const BoundingBox& b) {
    return a.minX == b.minX && a.minY == b.minY && a.maxX == b.maxX && a.maxY == b.maxY;
}

void limit(double& minimum, double& maximum) {
    if (maximum - minimum > 2.0 * maxCoordinate) {
        minimum = std::max(minimum, -maxCoordinate);
        maximum = std::min(maximum, maxCoordinate);
    }
}

double averageCrossings(double travelled, double extent, double edgeCount) {
    const double average = travelled / extent;
    return average < edgeCount ? std::max(average, 1.0) : edgeCount; // the average may be NaN
}

/// With c columns and r rows, edges have about c * crossingsPerWidth + r * crossingsPerHeight entries more than one
/// each. For a given number of cells, these are fewest if both products are the same.
GridSize chooseSize(const GridMeasure& measure, double cells, double maxExtraEntries) {
    const double perHeight = measure.crossingsPerHeight;
    const double perWidth = measure.crossingsPerWidth;
    const double product = std::min(std::sqrt(cells * perHeight * perWidth), maxExtraEntries / 2.0);
    const double columns = std::clamp(product / perWidth, 1.0, std::max(cells, 1.0));
    const double rows = std::clamp(product / perHeight, 1.0, std::max(cells / columns, 1.0));
    return {measure.extent, static_cast<std::uint32_t>(columns), static_cast<std::uint32_t>(rows)};
}

/// Returns how many entries the edges have more than one each.
double entriesFromCuts(const GridMeasure& measure, const GridSize& size) {
    return size.columns * measure.crossingsPerWidth + size.rows * measure.crossingsPerHeight;
}

} // namespace

GridMeasure measureEntries(const CellGrids& grids, std::span<const CellEntry> entries, const BoundarySet& set,
                           const Region& region, std::size_t maxSamples) {
    std::size_t edgeCount = 0;
    for (const CellEntry& entry : entries) {
        edgeCount += std::max<std::size_t>(entry.edgeCount, 1);
    }
    if (edgeCount == 0) {
        return {};
    }
    const std::size_t step = 1 + edgeCount / maxSamples;
    Measure measure = measureSamples(grids, entries, set, region, step);
    BoundingBox extent = measure.edges;
    // If many edges end inside, only their vertices count: they may fill a small part of the region.
    if (measure.vertexCount * 2.0 >= measure.edgeCount && !isSame(measure.vertices, extent)) {
        extent = measure.vertices;
        measure = measureSamples(grids, entries, set, {extent.minX, extent.maxX, extent.minY, extent.maxY}, step);
    }
    limit(extent.minX, extent.maxX);
    limit(extent.minY, extent.maxY);
    const auto edges = static_cast<double>(edgeCount);
    const auto stepLength = static_cast<double>(step);
    return {extent, edges, averageCrossings(measure.travelledY * stepLength, extent.maxY - extent.minY, edges),
            averageCrossings(measure.travelledX * stepLength, extent.maxX - extent.minX, edges)};
}

GridPlan planGrids(const GridMeasure& measure, double pointCount) {
    const double crossings = measure.crossingsPerHeight * measure.crossingsPerWidth;
    const double wanted =
        std::max(crossings * rootCellsPerCrossing, std::clamp(measure.edgeCount, minRootCells[0], minRootCells[1]));
    const double cellsForPoints = std::min(pointCount * rootCellsPerPoint, maxRootCellsForPoints);
    const double rootCells = std::min(wanted, std::max(measure.edgeCount + extraRootCells, cellsForPoints));
    const GridSize coarse = chooseRootSize(measure, std::min(rootCells, minRootCells[0]), 1.0);
    const GridSize fine = chooseRootSize(measure, rootCells, 1.0);
    const double coarseCells = static_cast<double>(coarse.columns) * coarse.rows;
    const double moreEntries = entriesFromCuts(measure, fine) - entriesFromCuts(measure, coarse);
    return {std::max(minCrowd, measure.edgeCount * walksPerEntry / pointCount), coarse,
            coarseCells * moreEntries * walksPerEntry / pointCount, rootCells};
}

GridSize chooseRootSize(const GridMeasure& measure, double cells, double share) {
    GridSize size =
        chooseSize(measure, cells * share, (measure.edgeCount * extraRootEntriesPerEdge + extraRootEntries) * share);
    const double width = (size.extent.maxX - size.extent.minX) / size.columns;
    const double height = (size.extent.maxY - size.extent.minY) / size.rows;
    size.extent = {size.extent.minX - width, size.extent.minY - height, size.extent.maxX + width,
                   size.extent.maxY + height};
    size.columns += 2;
    size.rows += 2;
    return size;
}

GridSize chooseInnerSize(const GridMeasure& measure, double share) {
    return chooseSize(measure, measure.edgeCount * innerCellsPerEdge * share,
                      measure.edgeCount * extraInnerEntriesPerEdge * share);
}

} // namespace vadelclip
