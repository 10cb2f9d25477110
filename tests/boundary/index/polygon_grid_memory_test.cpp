/// Memory of the grid over boxes, in the program that counts every allocation of its process.

#include "boundary/index/polygon_grid.hpp"

#include "support/counting_allocator.hpp"

#include <gtest/gtest.h>

#include <numeric>
#include <vector>

namespace vadelclip {

namespace {

/// Seventeen small boxes in one place across x = 0 and flat ones above them, each wider and higher up than the one
/// before. A grid over them has the highest in its upper rows and all others in both cells of the lowest row that meet
/// at x = 0: each of the two is crowded and holds one box less.
std::vector<IndexedPolygon> makePyramid(std::size_t flatBoxes) {
    std::vector<BoundingBox> boxes(17, BoundingBox{-0.1, 0.0, 0.1, 0.1});
    double width = 1.0;
    double height = 1.0;
    for (std::size_t i = 0; i < flatBoxes; ++i) {
        boxes.push_back({-width, height, width, height});
        width *= 2.5;
        height *= 5.0;
    }
    std::vector<IndexedPolygon> polygons;
    for (const BoundingBox& box : boxes) {
        polygons.push_back({WidenedBox(box), {UniformCells(), IndexedPolygon::noRows, 0}});
    }
    return polygons;
}

/// Of making the grid over a pyramid. Each of its cells and each grid in it makes some.
long countAllocations(std::size_t flatBoxes) {
    const std::vector<IndexedPolygon> polygons = makePyramid(flatBoxes);
    std::vector<std::uint32_t> members(polygons.size());
    std::iota(members.begin(), members.end(), 0);
    const long before = allocationCount();
    const PolygonGrid grid(polygons, members);
    return allocationCount() - before;
}

} // namespace

// Without a bound there would be twice as many grids in grids for each further box.
TEST(PolygonGrid, needsNoMoreThanTwiceTheMemoryForTwiceTheBoxes) {
    const long allocations = countAllocations(6);
    ASSERT_LE(countAllocations(10), 2 * allocations);
    EXPECT_LE(countAllocations(28), 2 * allocations) << "for 45 boxes, and so many for 23";
}

} // namespace vadelclip
