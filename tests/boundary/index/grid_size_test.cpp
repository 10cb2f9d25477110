/// No answer depends on the size of a grid, but time does.

#include "boundary/index/cell_grids.hpp"

#include "support/boundary_support.hpp"

#include <gtest/gtest.h>

#include <vector>

namespace vadelclip {

TEST(GridSize, countsBothVerticesOfSegment) {
    std::vector<Outline> segments;
    for (int i = 0; i < 50; ++i) {
        segments.push_back({{100.0, 100.0}, {i * 1.0, i * 7 % 50 * 1.0}});
    }
    EXPECT_GT(buildCellGrids(setOf(segments)).grids.front().cells.size(), 1000U);
}

} // namespace vadelclip
