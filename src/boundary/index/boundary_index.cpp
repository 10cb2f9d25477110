#include "boundary/index/boundary_index.hpp"

#include "boundary/boundary_extent.hpp"
#include "boundary/contains_point.hpp"
#include "boundary/index/prefetch.hpp"
#include "boundary/ring_walk.hpp"
#include "boundary/widened_box.hpp"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace vadelclip {

namespace {

/// Walks along a piece and adds its crossings to `odd`. Returns true if the point is on the outline there.
bool walkExactly(const Point2D* vertex, const Point2D* end, Point2D point, bool& odd) {
    RingWalk ringWalk(point, vertex->x, vertex->y);
    while (vertex != end) {
        ++vertex;
        if (ringWalk.visit(vertex->x, vertex->y)) {
            return true;
        }
    }
    odd = odd != ringWalk.isOdd();
    return false;
}

/// Two numbers, for two edges at once.
using Pair = double __attribute__((vector_size(16)));
using PairOfMasks = std::int64_t __attribute__((vector_size(16)));

/// Does the same, faster: two edges at once and without branches, as long as no vertex is at the point's height and no xi
/// is its x. These cases are left to the walk. For random points, branches would be predicted wrongly half of the time.
bool walk(const std::vector<Point2D>& points, const CellEntry& piece, Point2D point, bool& odd) {
    const Point2D* const first = &points[piece.first];
    const Point2D* const end = first + piece.edgeCount;
    odd = odd != (piece.startsRight && first->y < point.y);
    odd = odd != (piece.endsRight && end->y < point.y);
    const Pair x{point.x, point.x};
    const Pair y{point.y, point.y};
    PairOfMasks special{first->y == point.y ? -1 : 0, 0};
    PairOfMasks crossings{};
    for (const Point2D* vertex = first; vertex < end; vertex += 2) {
        const Point2D middle = vertex[1];
        const Point2D last = vertex[vertex + 1 == end ? 1 : 2]; // an edge without length never counts
        const Pair fromX{vertex->x, middle.x};
        const Pair fromY{vertex->y, middle.y};
        const Pair toX{middle.x, last.x};
        const Pair toY{middle.y, last.y};
        const Pair smallerX = toX < fromX ? toX : fromX;
        const Pair largerX = toX > fromX ? toX : fromX;
        // As in crossingX, but never beyond the ends of the edge: the walk compares them first.
        Pair xi = ((y - fromY) * (toX - fromX)) / (toY - fromY) + fromX;
        xi = xi > smallerX ? xi : smallerX;
        xi = xi < largerX ? xi : largerX;
        const PairOfMasks straddles = (fromY < y) ^ (toY <= y);
        crossings ^= straddles & (xi > x);
        special |= (toY == y) | (straddles & (xi == x));
    }
    if ((special[0] | special[1]) != 0) {
        return walkExactly(first, end, point, odd);
    }
    odd = odd != ((crossings[0] ^ crossings[1]) != 0);
    return false;
}

template <class Element>
const Element* elementOrEnd(const std::vector<Element>& elements, std::size_t number) {
    return elements.data() + std::min(number, elements.size());
}

} // namespace

BoundaryIndex::BoundaryIndex(BoundarySet& boundarySet_, double pointCount)
    : boundarySet(boundarySet_), extentOfSet(extentOf(boundarySet_.polygons)),
      cells(buildCellGrids(boundarySet_, pointCount)) {}

void BoundaryIndex::findCells(std::span<const Point2D> points, std::span<const CellEntry*> cellsOfPoints) const {
    const CellGrid& root = cells.grids.front();
    for (std::size_t i = 0; i < points.size(); ++i) {
        cellsOfPoints[i] = &root.at(points[i]);
        PREFETCH(cellsOfPoints[i]);
    }
    constexpr std::size_t cacheLine = 64;
    constexpr std::size_t linesOfList = 3; // nearly all lists end before a fourth line
    for (const CellEntry* const entry : cellsOfPoints.first(points.size())) {
        if (entry->kind == CellEntry::Kind::list) {
            for (std::size_t line = 0; line < linesOfList; ++line) {
                PREFETCH(elementOrEnd(root.lists, entry->first + line * cacheLine / sizeof(CellEntry)));
            }
        } else if (entry->kind == CellEntry::Kind::piece && !entry->isDecided()) {
            PREFETCH(elementOrEnd(cells.points, entry->first));
            PREFETCH(elementOrEnd(cells.points, entry->first + cacheLine / sizeof(Point2D)));
        }
    }
}

bool BoundaryIndex::anyEntryContains(const CellGrid& grid, const CellEntry& entry, Point2D point) const {
    bool odd = false;
    for (const CellEntry* item = entry.kind == CellEntry::Kind::list ? &grid.lists[entry.first] : &entry;; ++item) {
        if (item->kind == CellEntry::Kind::thinPolygon) {
            if (thinContains(item->first, point)) {
                return true;
            }
        } else {
            odd = odd != static_cast<bool>(item->odd);
            if (walk(cells.points, *item, point, odd) || (odd && item->endsPolygon)) {
                return true;
            }
            odd = odd && !item->endsPolygon;
        }
        if (item->endsList) {
            return false;
        }
    }
}

/// A flat ring contains the points at its height that its box does not reject. `containsPoint` has the same answer but
/// reads all vertices.
bool BoundaryIndex::thinContains(std::uint32_t number, Point2D point) const {
    BoundaryPolygon& polygon = boundarySet.polygons[number];
    if (distinctVertexCount(polygon) == 2) {
        return containsPoint(polygon, point, boundarySet.vertices);
    }
    return point.y == polygon.boundingBox.minY && !WidenedBox(polygon.boundingBox).rejects(point);
}

bool BoundaryIndex::anyUnusualContains(Point2D point) const {
    return std::any_of(cells.unusualPolygons.begin(), cells.unusualPolygons.end(), [this, point](std::uint32_t number) {
        return containsPoint(boundarySet.polygons[number], point, boundarySet.vertices);
    });
}

} // namespace vadelclip
