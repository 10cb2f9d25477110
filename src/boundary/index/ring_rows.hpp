/// \file
/// Rings cut into rows, so that one point meets only the few pieces of a ring that lie at its height.
///
/// The walk along a ring knows nothing but the last vertex whose y differs from the point's (ring_walk.hpp). So it
/// may be cut at any such vertex, pieces that do not meet the point's height may be left out, parities add up, and
/// "on the outline" in any piece is the answer. For each row, the *chains* are the pieces that meet it; each starts
/// and ends at a vertex outside the row.
///
/// A chain that lies wholly right of a point counts one crossing exactly if its ends lie on different sides of the
/// row; one wholly left counts nothing; any other is walked. The range of x that a chain takes up inside its row
/// holds its vertices there and every xi that the walk can compute there: xi is a monotone function of y for a
/// given edge, each of its operations being monotone under rounding, so its values at the row's limits bound it.
/// No tolerance and no error bound is involved.
#pragma once

#include "boundary/boundary_set.hpp"
#include "boundary/index/uniform_cells.hpp"

#include <cstdint>
#include <vector>

namespace vadelclip {

/// A piece of a ring that meets a row.
struct RingChain {
    float minX; ///< Range of x inside the row, less the ring's `originX`, rounded outwards.
    float maxX;
    std::uint32_t firstVertex;          ///< Position in the ring.
    std::uint32_t edgeCountAndCrossing; ///< Twice the number of edges, plus 1 if the ends lie on different sides.

    std::uint32_t crossing() const { return edgeCountAndCrossing & 1; }
    std::uint32_t edgeCount() const { return edgeCountAndCrossing / 2; }
};

/// The chains of one row, or of one column of a row with many chains.
struct ChainList {
    std::uint32_t first;         ///< In `RingRows::chains`; for a row with columns, in `RingRows::columns`.
    std::uint32_t countAndFlags; ///< Four times the number of chains, and the two flags.

    /// The chains wholly right of this column count an odd number of crossings.
    static constexpr std::uint32_t oddRight = 1;
    /// The chains of this row stand in the lists of its columns.
    static constexpr std::uint32_t hasColumns = 2;

    std::uint32_t count() const { return countAndFlags / 4; }
};

/// The columns of one row, by x less the ring's `originX`.
struct ChainColumns {
    UniformCells cells;
    std::uint32_t firstList; ///< In `RingRows::columnLists`.
};

/// Where a ring's vertices stand in `RingRows::points`.
struct RingExtent {
    std::uint32_t firstPoint;
    std::uint32_t pointCount;
};

/// How to find a ring in a `RingRows`.
struct RingInRows {
    UniformCells rows;
    std::uint32_t firstRow;
    std::uint32_t ring;
};

/// All rings of a boundary, cut into rows. Built by `RingRowsBuilder`.
struct RingRows {
    std::vector<Point2D> points;
    std::vector<RingExtent> rings;
    std::vector<ChainList> rows;
    std::vector<ChainList> columnLists;
    std::vector<ChainColumns> columns;
    std::vector<RingChain> chains;

    /// Tells what a walk round the whole ring tells. The point must have passed the ring's box.
    ///
    /// @param originX the same as when the ring was added.
    bool ringContains(const RingInRows& ring, double originX, Point2D point) const {
        const double x = point.x - originX;
        ChainList list = rows[ring.firstRow + ring.rows.cellOf(point.y)];
        if ((list.countAndFlags & ChainList::hasColumns) != 0) {
            const ChainColumns& rowColumns = columns[list.first];
            list = columnLists[rowColumns.firstList + rowColumns.cells.cellOf(x)];
        }
        std::uint32_t crossings = list.countAndFlags & ChainList::oddRight;
        const RingChain* const first = chains.data() + list.first;
        for (const RingChain* chain = first; chain != first + list.count(); ++chain) {
            const bool right = chain->minX > x;
            const bool left = chain->maxX < x;
            crossings ^= static_cast<std::uint32_t>(right) & chain->crossing();
            if (right == left && walk(ring.ring, *chain, point, crossings)) {
                return true;
            }
        }
        return (crossings & 1) != 0;
    }

private:
    /// Walks one chain and adds its crossings. @return true if the point is on the outline there.
    bool walk(std::uint32_t ring, const RingChain& chain, Point2D point, std::uint32_t& crossings) const;
};

} // namespace vadelclip
