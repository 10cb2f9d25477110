/// \file
/// Decides whether a point is in any polygon of a boundary, without reading most of the edges.
#pragma once

#include "boundary/boundary_set.hpp"
#include "boundary/index/cell_grids.hpp"
#include "boundary/widened_box.hpp"

#include <cstdint>
#include <limits>
#include <span>

namespace vadelclip {

/// An index over a finished set. It has the same answers as `containsPoint` for each polygon in turn, bit for bit.
///
/// A grid cuts the plane into cells (cell_grids.hpp). If no outline passes through a cell, the cell holds the answer
/// for all of its points. Any other cell lists the pieces of rings that pass through it. docs/performance.md has the
/// proof that the answers are the same, and the bounds of time and memory.
class BoundaryIndex {
public:
    /// @param boundarySet_ must outlive the index, with the same polygons and vertices. It is writable because
    ///                     `containsPoint` fills the edges of two-vertex polygons.
    /// @param pointCount   the expected number of points. It changes time and memory, but no answer.
    explicit BoundaryIndex(BoundarySet& boundarySet_, double pointCount = std::numeric_limits<double>::infinity());

    /// Returns true if the point is in any polygon of the set. The coordinates must not be NaN.
    bool anyContains(Point2D point) const { return anyContains(cells.grids.front().at(point), point); }

    /// Finds the cells of several points and starts to load what is in them. These accesses to memory overlap, which is
    /// faster if the boundary is large.
    ///
    /// @param cellsOfPoints receives one cell for each point.
    void findCells(std::span<const Point2D> points, std::span<const CellEntry*> cellsOfPoints) const;

    /// Returns the same as `anyContains(point)`.
    ///
    /// @param entry the cell that `findCells` found for the point.
    bool anyContains(CellEntry entry, Point2D point) const {
        const CellGrid* grid = &cells.grids.front();
        while (entry.kind == CellEntry::Kind::grid) {
            grid = &cells.grids[entry.first];
            entry = grid->at(point);
        }
        return (entry.isDecided() ? entry.odd : anyEntryContains(*grid, entry, point)) ||
               (!cells.unusualPolygons.empty() && anyUnusualContains(point));
    }

    /// Returns the box outside of which no polygon contains a point.
    const WidenedBox& extent() const { return extentOfSet; }

private:
    bool anyEntryContains(const CellGrid& grid, const CellEntry& entry, Point2D point) const;
    bool anyUnusualContains(Point2D point) const;
    bool thinContains(std::uint32_t number, Point2D point) const;

    BoundarySet& boundarySet;
    WidenedBox extentOfSet;
    CellGrids cells;
};

} // namespace vadelclip
