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
    GridBuilder(grids, set, budget, 0).buildRoot(std::span(&ring, 1));
    ASSERT_EQ(grids.grids.front().cells.size(), 1U);
    EXPECT_EQ(grids.grids.front().cells.front().edgeCount, 4U);
}

} // namespace vadelclip
