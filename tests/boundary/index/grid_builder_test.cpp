#include "boundary/index/grid_builder.hpp"

#include <gtest/gtest.h>

namespace vadelclip {

// If even a few cells take too much memory, the index must not lose edges. Then there is one cell.
TEST(GridBuilder, keepsEveryEdgeWithoutMemory) {
    const BoundarySet set;
    CellGrids grids;
    grids.points = {{0.0, 0.0}, {4.0, 4.0}, {0.0, 4.0}, {4.0, 0.0}, {0.0, 0.0}};
    CellEntry ring;
    ring.edgeCount = 4;
    ring.endsPolygon = true;
    Budget budget{0.0};
    const std::span entries(&ring, 1);
    const GridMeasure measure = measureEntries(grids, entries, set, plane, ring.edgeCount);
    GridBuilder(grids, set, budget, 96.0, 0).buildRoot(entries, measure, 2048.0);
    ASSERT_EQ(grids.grids.front().cells.size(), 1U);
    EXPECT_EQ(grids.grids.front().cells.front().edgeCount, 4U);
}

} // namespace vadelclip
