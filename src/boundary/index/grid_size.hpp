/// \file
/// Chooses how many cells a grid has. No answer depends on it, but time and memory do.
#pragma once

#include "boundary/boundary_set.hpp"
#include "boundary/index/cell_grids.hpp"

#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>

namespace vadelclip {

/// The first and last coordinates of the points that a grid is for.
struct Region {
    double firstX;
    double lastX;
    double firstY;
    double lastY;
};

constexpr Region plane{-std::numeric_limits<double>::infinity(), std::numeric_limits<double>::infinity(),
                       -std::numeric_limits<double>::infinity(), std::numeric_limits<double>::infinity()};

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

/// How fine the grids are. Finer grids take more time to build and less time for each point.
struct GridPlan {
    double maxEdgesOfCell;       ///< A cell with more edges gets a grid.
    GridSize coarseRoot;         ///< A first grid that is fine enough if most of its cells are decided.
    double maxEdgesOfCoarseRoot; ///< The sum of the edges in all of its cells up to which this is so.
    double rootCells;            ///< Otherwise the number of cells that takes the least time.
};

/// Plans the grids for a number of points.
GridPlan planGrids(const GridMeasure& measure, double pointCount);

/// Chooses a grid for the whole plane. It has an empty row or column at each side, for points outside the boundary.
///
/// @param cells wanted number of cells.
/// @param share part of the cells and entries, at most 1.0. Less takes less memory.
GridSize chooseRootSize(const GridMeasure& measure, double cells, double share);

/// Chooses a grid for the inside of a cell.
GridSize chooseInnerSize(const GridMeasure& measure, double share);

} // namespace vadelclip
