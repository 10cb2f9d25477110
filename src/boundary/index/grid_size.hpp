/// \file
/// Chooses how many cells a grid has. No answer depends on it, but time and memory do.
#pragma once

#include "boundary/boundary_set.hpp"
#include "boundary/index/cell_grids.hpp"

#include <cstddef>
#include <cstdint>
#include <span>

namespace vadelclip {

/// The first and last coordinates of the points that a grid is for.
struct Region {
    double firstX;
    double lastX;
    double firstY;
    double lastY;
};

/// The figures that decide the size of a grid.
struct GridMeasure {
    BoundingBox extent;
    double edgeCount = 0.0;
    double crossingsPerHeight = 1.0; ///< The average number of edges that a line of one height crosses.
    double crossingsPerWidth = 1.0;  ///< The average number of edges that an upright line crosses.
};

struct GridSize {
    BoundingBox extent; ///< The box that is cut into cells.
    std::uint32_t columns;
    std::uint32_t rows;
};

/// Measures the parts of some entries that are inside a region.
///
/// @param maxSamples about the number of edges to measure. All edges are assumed to be like these.
GridMeasure measureEntries(const CellGrids& grids, std::span<const CellEntry> entries, const BoundarySet& set,
                           const Region& region, std::size_t maxSamples);

/// Chooses a grid for the whole plane. It has an empty row or column at each side, for points outside the boundary.
///
/// @param share part of the cells and entries that would be fastest, at most 1.0. Less takes less memory.
GridSize chooseRootSize(const GridMeasure& measure, double share);

/// Chooses a grid for the inside of a cell.
GridSize chooseInnerSize(const GridMeasure& measure, double share);

} // namespace vadelclip
