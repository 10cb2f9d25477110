#include "boundary/index/polygon_grid.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <random>
#include <vector>

namespace vadelclip {

namespace {

using Random = std::mt19937_64;

/// Boxes that carry their own number.
std::vector<IndexedPolygon> makePolygons(const std::vector<BoundingBox>& boxes) {
    std::vector<IndexedPolygon> polygons;
    for (std::uint32_t number = 0; number < boxes.size(); ++number) {
        polygons.push_back({WidenedBox(boxes[number]), {UniformCells(), IndexedPolygon::noRows, number}});
    }
    return polygons;
}

PolygonGrid makeGrid(const std::vector<IndexedPolygon>& polygons) {
    std::vector<std::uint32_t> members(polygons.size());
    std::iota(members.begin(), members.end(), 0);
    return {polygons, members};
}

std::vector<std::uint32_t> visitedAt(const PolygonGrid& grid, Point2D point) {
    std::vector<std::uint32_t> numbers;
    grid.anyNear(point, [&numbers](const IndexedPolygon& polygon) {
        numbers.push_back(polygon.ring.ring);
        return false;
    });
    return numbers;
}

/// Every box that does not reject the point is visited, and none twice.
void expectComplete(const std::vector<BoundingBox>& boxes, const std::vector<Point2D>& points) {
    const std::vector<IndexedPolygon> polygons = makePolygons(boxes);
    const PolygonGrid grid = makeGrid(polygons);
    for (const Point2D point : points) {
        std::vector<std::uint32_t> visited = visitedAt(grid, point);
        std::sort(visited.begin(), visited.end());
        ASSERT_EQ(std::adjacent_find(visited.begin(), visited.end()), visited.end()) << "one is visited twice";
        for (const IndexedPolygon& polygon : polygons) {
            if (!polygon.box.rejects(point)) {
                ASSERT_TRUE(std::binary_search(visited.begin(), visited.end(), polygon.ring.ring))
                    << point.x << ' ' << point.y;
            }
        }
    }
}

BoundingBox randomBox(Random& random, double spread, double size) {
    std::uniform_real_distribution<double> place(-spread, spread);
    std::uniform_real_distribution<double> extent(0.0, size);
    const double x = place(random);
    const double y = place(random);
    return {x, y, x + extent(random), y + extent(random)};
}

/// Random points, and the exact corners of the widened boxes.
std::vector<Point2D> pointsFor(Random& random, const std::vector<BoundingBox>& boxes, double spread) {
    std::uniform_real_distribution<double> place(-spread * 1.2, spread * 1.2);
    std::vector<Point2D> points;
    for (int i = 0; i < 300; ++i) {
        const double x = place(random);
        points.push_back({x, place(random)});
        const WidenedBox box(boxes[random() % boxes.size()]);
        points.push_back({box.minX, box.maxY});
        points.push_back({box.maxX, box.minY});
    }
    return points;
}

} // namespace

TEST(PolygonGrid, visitsEveryBoxAtThePointAndNoneTwice) {
    Random random(1);
    for (const double size : {0.01, 1.0, 50.0, 300.0}) {
        for (const std::size_t count : {1U, 2U, 17U, 300U, 2000U}) {
            std::vector<BoundingBox> boxes;
            for (std::size_t i = 0; i < count; ++i) {
                boxes.push_back(randomBox(random, 100.0, i % 50 == 0 ? 200.0 : size));
            }
            expectComplete(boxes, pointsFor(random, boxes, 100.0));
        }
    }
}

TEST(PolygonGrid, visitsEveryBoxAlsoInClustersFarApart) {
    Random random(2);
    std::vector<BoundingBox> boxes;
    for (int i = 0; i < 2000; ++i) {
        boxes.push_back(randomBox(random, 1.0, 0.05));
    }
    boxes.push_back({1e6, 1e6, 1e6 + 1.0, 1e6 + 1.0});
    expectComplete(boxes, pointsFor(random, boxes, 1.0));
}

TEST(PolygonGrid, tellsClustersApartByGridsOfTheirOwn) {
    Random random(3);
    std::vector<BoundingBox> boxes;
    for (int i = 0; i < 2000; ++i) {
        boxes.push_back(randomBox(random, 1.0, 0.01));
    }
    boxes.push_back({1e6, 1e6, 1e6 + 1.0, 1e6 + 1.0});
    const std::vector<IndexedPolygon> polygons = makePolygons(boxes);
    const PolygonGrid grid = makeGrid(polygons);
    std::size_t mostVisited = 0;
    for (const Point2D point : pointsFor(random, boxes, 1.0)) {
        mostVisited = std::max(mostVisited, visitedAt(grid, point).size());
    }
    EXPECT_LT(mostVisited, 50U) << "of 2001 boxes";
}

TEST(PolygonGrid, visitsEveryBoxWhereAllStandInGridsOfTheirOwn) {
    Random random(4);
    std::vector<BoundingBox> boxes;
    for (int i = 0; i < 20; ++i) {
        for (const double corner : {0.0, 1000.0}) {
            const double x = corner + i * 0.1;
            boxes.push_back({x, corner, x + 0.05, corner + 0.05});
        }
    }
    expectComplete(boxes, pointsFor(random, boxes, 1000.0));
}

TEST(PolygonGrid, hasBetweenAQuarterAsManyCellsAsBoxesAndAsMany) {
    // Boxes of half a unit in the middle of each unit of a square.
    for (const auto& [side, visitsEach] : {std::pair<std::size_t, std::size_t>{4, 1}, {16, 1}, {64, 1}, {100, 4}}) {
        std::vector<BoundingBox> boxes;
        for (std::size_t i = 0; i < side * side; ++i) {
            const auto x = static_cast<double>(i % side);
            const auto y = static_cast<double>(i / side);
            boxes.push_back({x + 0.25, y + 0.25, x + 0.75, y + 0.75});
        }
        for (int order = 0; order < 2; ++order) {
            const std::vector<IndexedPolygon> polygons = makePolygons(boxes);
            const PolygonGrid grid = makeGrid(polygons);
            std::size_t visits = 0;
            for (const BoundingBox& box : boxes) {
                visits += visitedAt(grid, {box.minX + 0.25, box.minY + 0.25}).size();
            }
            EXPECT_EQ(visits, boxes.size() * visitsEach) << side;
            std::reverse(boxes.begin(), boxes.end());
        }
    }
}

TEST(PolygonGrid, visitsEveryBoxWhereOneDirectionCannotBeCut) {
    // So far out the boxes' margin is lost: all of them have one and the same x,
    // or y.
    for (const std::size_t count : {4U, 9U, 100U}) {
        std::vector<BoundingBox> upright;
        std::vector<BoundingBox> level;
        std::vector<Point2D> uprightPoints;
        std::vector<Point2D> levelPoints;
        for (std::size_t i = 0; i < count; ++i) {
            const auto place = static_cast<double>(i);
            upright.push_back({1e12, place, 1e12, place + 0.5});
            level.push_back({place, 1e12, place + 0.5, 1e12});
            uprightPoints.push_back({1e12, place + 0.25});
            levelPoints.push_back({place + 0.25, 1e12});
        }
        expectComplete(upright, uprightPoints);
        expectComplete(level, levelPoints);
    }
}

TEST(PolygonGrid, takesBoxesThatNoGridCanTellApart) {
    const std::vector<BoundingBox> boxes(100, BoundingBox{1.0, 1.0, 2.0, 2.0});
    expectComplete(boxes, {{1.5, 1.5}, {1.0, 2.0}, {3.0, 3.0}});
}

TEST(PolygonGrid, stopsAtTheFirstVisitThatSaysSo) {
    const std::vector<IndexedPolygon> polygons = makePolygons(std::vector<BoundingBox>(5, {0.0, 0.0, 1.0, 1.0}));
    const PolygonGrid grid = makeGrid(polygons);
    int visits = 0;
    EXPECT_TRUE(grid.anyNear({0.5, 0.5}, [&visits](const IndexedPolygon&) { return ++visits == 3; }));
    EXPECT_EQ(visits, 3);
    EXPECT_FALSE(PolygonGrid().anyNear({0.5, 0.5}, [](const IndexedPolygon&) { return true; }));
}

} // namespace vadelclip
