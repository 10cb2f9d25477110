/// No answer depends on the size of a grid, but time does.

#include "boundary/index/cell_grids.hpp"

#include "support/boundary_support.hpp"

#include <gtest/gtest.h>

#include <vector>

namespace vadelclip {

namespace {

std::size_t rootCells(const std::vector<Outline>& outlines, double pointCount) {
    return buildCellGrids(setOf(outlines), pointCount).grids.front().cells.size();
}

} // namespace

TEST(GridSize, countsBothVerticesOfSegment) {
    std::vector<Outline> segments;
    for (int i = 0; i < 50; ++i) {
        segments.push_back({{100.0, 100.0}, {i * 1.0, i * 7 % 50 * 1.0}});
    }
    EXPECT_GT(rootCells(segments, 1e9), 1000U);
}

TEST(GridSize, growsWithNumberOfPointsUnlessMostCellsAreDecided) {
    std::vector<Outline> strips;
    std::vector<Outline> nested;
    for (int i = 0; i < 500; ++i) {
        const double y = i * 367 % 500 * 1.0;
        strips.push_back({{0.0, y}, {500.0, 500.0 - y}, {500.0, 500.5 - y}, {0.0, y + 0.5}});
        const double side = i + 1.0;
        nested.push_back({{-side, -side}, {side, -side}, {side, side}, {-side, side}});
    }
    EXPECT_LT(rootCells(strips, 10.0), 3000U);
    EXPECT_GT(rootCells(strips, 1e6), 30000U);
    EXPECT_LT(rootCells(nested, 1e6), 3000U);
    EXPECT_GT(rootCells(nested, 1e9), 30000U);
}

} // namespace vadelclip
