/// \file
/// A grid over the plane. Each cell holds the pieces of rings that pass through it.
#pragma once

#include "boundary/boundary_set.hpp"
#include "boundary/index/uniform_cells.hpp"

#include <cstddef>
#include <cstdint>
#include <limits>
#include <vector>

namespace vadelclip {

/// The content of a cell, or one item of a cell with several.
///
/// It is small, so a cell can hold its only piece itself: most points then need one access to memory.
struct CellEntry {
    enum class Kind : std::uint8_t {
        piece,       ///< Consecutive edges of a ring. Without edges, `odd` is the answer for every point of the cell.
        thinPolygon, ///< A polygon without area; `first` is its number.
        list,        ///< Entries of `CellGrid::lists`, from `first` to one with `endsList`.
        grid         ///< A finer grid: number `first` in `CellGrids::grids`.
    };
    static constexpr std::uint32_t maxEdges = std::numeric_limits<std::uint16_t>::max();

    std::uint32_t first = 0; ///< Of a piece: the start of its first edge in `CellGrids::points`.
    std::uint16_t edgeCount = 0;
    Kind kind = Kind::piece;
    bool odd : 1 = false;         ///< Right of the cell, an odd number of the polygon's edges cross the whole row.
    bool startsRight : 1 = false; ///< The piece starts at a vertex in this row, right of the cell.
    bool endsRight : 1 = false;   ///< The piece ends at a vertex in this row, right of the cell.
    bool endsPolygon : 1 = false; ///< This is the last entry of its polygon in the cell.
    bool endsList : 1 = false;    ///< This is the last entry of the cell.

    std::uint32_t end() const { return first + edgeCount; }
    bool isDecided() const { return kind == Kind::piece && edgeCount == 0; }
};
static_assert(sizeof(CellEntry) == 8);

/// A grid and its cells, row by row.
struct CellGrid {
    UniformCells columns;
    UniformCells rows;
    std::vector<CellEntry> cells;
    std::vector<CellEntry> lists;

    const CellEntry& at(Point2D point) const {
        return cells[std::size_t{rows.cellOf(point.y)} * columns.count() + columns.cellOf(point.x)];
    }
};

/// All polygons of a boundary, sorted into cells.
struct CellGrids {
    std::vector<Point2D> points; ///< The vertices of the rings. Each ring ends with its first vertex once more.
    std::vector<CellGrid> grids; ///< The first grid covers the plane, each other grid one cell of another grid.
    std::vector<std::uint32_t> unusualPolygons; ///< Numbers of polygons that are in no cell.
};

/// Sorts the polygons of a set into cells. Those with holes and those with coordinates that are not finite are left
/// out: no boundary file can contain them.
///
/// @param pointCount the expected number of points. It changes time and memory, but no answer.
CellGrids buildCellGrids(const BoundarySet& set, double pointCount);

} // namespace vadelclip
