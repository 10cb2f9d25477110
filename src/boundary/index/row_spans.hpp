/// \file
/// The edges of a boundary in the rows of a grid.
#pragma once

#include "boundary/boundary_set.hpp"
#include "boundary/index/cell_grids.hpp"
#include "boundary/index/edge_range.hpp"
#include "boundary/index/grid_axis.hpp"
#include "boundary/index/grid_size.hpp"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace vadelclip {

/// Two pieces of a ring with at most this number of edges between them become one entry: walking a few edges more is
/// cheaper than another entry.
constexpr std::uint32_t maxGap = 6;

/// Consecutive edges of a piece that meet a row in the same columns, or a thin polygon.
///
/// Edges that do not meet the row, or only left of all columns, may be among them.
struct RowSpan {
    CellEntry entry;     ///< `odd` if an odd number of its edges start below the row and end above it, or vice versa.
    std::uint32_t piece; ///< The number of the entry that it is part of.
    std::int32_t row;
    std::int32_t firstColumn; ///< The number of columns if the edges are right of all columns.
    std::int32_t lastColumn;

    std::size_t columnCount() const { return static_cast<std::size_t>(lastColumn + 1 - firstColumn); }
};

/// An entry of a cell while the row of the cell is built.
struct CellItem {
    CellEntry entry;
    std::uint32_t piece;
    std::uint32_t polygon;
    std::uint32_t lastSpan; ///< The last span that it contains, as a place in the row.
    std::uint32_t next;     ///< The next item of the cell, or `ColumnState::none`.
};

/// The spans of some entries in a grid.
class RowSpans {
public:
    /// @param grids_ contains the points of the pieces.
    /// @param set_   contains the thin polygons.
    RowSpans(const CellGrids& grids_, const BoundarySet& set_) : grids(grids_), set(set_) {}

    /// Replaces the spans by those of other entries.
    ///
    /// @param measure   of these entries.
    /// @param maxBytes_ limit of `bytes`.
    /// @return false if the limit is too low, or if it would take much more time than expected: then the grid needs fewer
    ///         rows. The spans are incomplete.
    bool add(std::span<const CellEntry> entries, const GridMeasure& measure, const GridAxis& columns_,
             const GridAxis& rows_, double maxBytes_);

    /// Sorts the spans by row. Those of a row keep their order.
    void sort();

    /// Frees the memory of the spans.
    void clear();

    const RowSpan& operator[](std::size_t number) const { return spans[number]; }

    std::uint32_t polygonOf(const RowSpan& span) const { return polygons[span.piece]; }

    /// Returns the numbers of a row's spans, in the order of the entries.
    std::span<const std::uint32_t> inRow(std::int32_t row) const;

    /// Starts to load the spans of a row, which are far from each other. A row beyond the last has none.
    void prefetchRow(std::int32_t row) const;

    /// Returns the greatest possible number of entries in all cells.
    std::size_t entryCount() const { return maxEntries; }

    /// Returns the greatest possible number of items in a row.
    std::size_t itemCount() const { return maxItems; }

    /// Returns the memory for the spans, their order, the lists of cells, and the items of the largest row.
    double bytes() const;

private:
    bool fits() const;
    void addPiece(const CellEntry& entry);
    std::uint32_t endOfStay(std::uint32_t edge, std::uint32_t end, std::int32_t row, std::int32_t column) const;
    void addEdge(std::uint32_t edge, std::int32_t fromRow, std::int32_t toRow);
    void addRange(std::int32_t row, std::uint32_t edge, XRange range, bool crosses);
    void addEdges(std::int32_t row, std::int32_t firstColumn, std::int32_t lastColumn, const CellEntry& edges);
    void addCrossings(std::int32_t firstRow);
    void addThin(const CellEntry& entry);
    void addSegment(const CellEntry& entry);
    void addSpan(const CellEntry& entry, std::int32_t row, std::int32_t firstColumn, std::int32_t lastColumn);

    const CellGrids& grids;
    const BoundarySet& set;
    const GridAxis* columns = nullptr;
    const GridAxis* rows = nullptr;
    std::vector<std::uint32_t> polygons; ///< For each entry its polygon, counted from 0.
    std::size_t firstOfPiece = 0;        ///< The number of the first span of the current entry.
    std::size_t maxEntries = 0;          ///< The sum of all column counts.
    std::size_t maxItems = 0;            ///< The greatest sum of the column counts of a row.
    double maxBytes = 0.0;
    std::size_t rowVisits = 0;
    double maxRowVisits = 0.0;
    bool isFull = false; ///< A span was left out for lack of memory.
    std::vector<RowSpan> spans;
    std::vector<std::size_t> lastOfRow;  ///< For each row the number of its last span plus 1, or 0.
    std::vector<std::size_t> itemsOfRow; ///< For each row the sum of the column counts.
    std::vector<std::uint32_t> sorted;
    std::vector<std::uint32_t> rowStarts; ///< For each row its first place in `sorted`, then the size of `sorted`.
};

} // namespace vadelclip
