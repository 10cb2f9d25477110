/// \file
/// Builds the grids of `CellGrids`.
#pragma once

#include "boundary/boundary_set.hpp"
#include "boundary/index/cell_grids.hpp"
#include "boundary/index/grid_axis.hpp"
#include "boundary/index/grid_size.hpp"
#include "boundary/index/row_spans.hpp"

#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <span>
#include <vector>

namespace vadelclip {

/// The memory that is left for grids.
struct Budget {
    double bytes;
};

/// A column while a row is built.
struct ColumnState {
    static constexpr std::uint32_t none = std::numeric_limits<std::uint32_t>::max();

    std::uint32_t firstItem = none;
    std::uint32_t lastItem = none;
    std::int32_t coverChange = 0; ///< Number of polygons that contain the cell, minus that of the cell left of it.
    bool odd = false;             ///< Right of the cell, the current polygon has an odd number of crossings.
};

/// Builds one grid.
class GridBuilder {
public:
    GridBuilder(CellGrids& target_, const BoundarySet& set_, Budget& budget_, double maxEdgesOfCell_, int depth_)
        : target(target_), set(set_), budget(budget_), maxEdgesOfCell(maxEdgesOfCell_), depth(depth_),
          spans(target_, set_) {}

    /// Adds the coarse grid of a plan for the plane.
    ///
    /// @return false if a finer grid is better, or if the memory is not enough. Then only a part of the grid is added.
    bool buildCoarseRoot(std::span<const CellEntry> entries, const GridMeasure& measure, const GridPlan& plan);

    /// Adds the grid for the plane. It has fewer cells than wanted if the memory is not enough.
    void buildRoot(std::span<const CellEntry> entries, const GridMeasure& measure, double wantedCells);

    /// Adds a grid for the inside of a cell, with the entries of the cell.
    ///
    /// @return the number of the grid, or nothing if it would not help or would take too much memory.
    std::optional<std::uint32_t> buildInner(std::span<const CellEntry> entries, const Region& region);

private:
    std::size_t cellCount() const;
    double gridBytes() const;
    double axisBytes() const;
    double rootBytes() const;
    void cut(const GridSize& size, const Region& region);
    std::uint32_t buildCells();
    void countCrossings(std::span<const std::uint32_t> polygonSpans);
    void listSpans(std::span<const std::uint32_t> rowSpans, std::uint32_t first, std::uint32_t end);
    bool extendItem(std::uint32_t number, std::span<const std::uint32_t> rowSpans, std::uint32_t place,
                    std::int32_t column);
    void addItem(const RowSpan& span, std::uint32_t place, std::int32_t column);
    void finishRow(std::int32_t row);
    CellEntry finishCell(std::int32_t row, std::int32_t column);
    bool isRight(std::uint32_t vertex, std::int32_t row, std::int32_t column) const;

    CellGrids& target;
    const BoundarySet& set;
    Budget& budget;
    double maxEdgesOfCell;
    int depth;
    double edgesLeft = std::numeric_limits<double>::infinity(); ///< How many more edges the cells may have.
    GridAxis columns;
    GridAxis rows;
    RowSpans spans;
    std::vector<CellEntry> cells;
    std::vector<CellEntry> lists;

    // For the current row:
    std::vector<ColumnState> states; ///< One for each column and one after the last.
    std::vector<CellItem> items;
    std::vector<std::int32_t> listedColumns; ///< The columns with items.
    bool isCovered = false;                  ///< A polygon contains a whole cell of the row.
    std::vector<std::uint32_t> spansByColumn;
    std::vector<CellEntry> cellEntries;
};

} // namespace vadelclip
