// All small rings on a grid, compared with the rules for the shape of the outline, computed in whole numbers.
#include "boundary/contains_point.hpp"

#include "support/boundary_support.hpp"

#include <gtest/gtest.h>

#include <algorithm>

namespace vadelclip {

namespace {

struct GridPoint {
    int x;
    int y;
};

using GridRing = std::vector<GridPoint>;

/// Returns true if the point is on the edge and therefore in the polygon.
bool isOutlineOf(GridPoint a, GridPoint b, GridPoint point) {
    const int cross = (b.x - a.x) * (point.y - a.y) - (b.y - a.y) * (point.x - a.x);
    const bool onEdge = cross == 0 && point.x >= std::min(a.x, b.x) && point.x <= std::max(a.x, b.x) &&
                        point.y >= std::min(a.y, b.y) && point.y <= std::max(a.y, b.y);
    const bool atEnd = (point.x == a.x && point.y == a.y) || (point.x == b.x && point.y == b.y);
    // Between the ends of a horizontal edge towards greater x, the point counts as just below the edge.
    return onEdge && (atEnd || a.y != b.y || b.x < a.x);
}

/// Returns true if the edge crosses the height just below the point, right of the point. The point is not on the edge.
bool crossesJustBelow(GridPoint a, GridPoint b, GridPoint point) {
    if ((a.y < point.y) == (b.y < point.y)) {
        return false;
    }
    const int offset = (point.y - a.y) * (b.x - a.x) - (point.x - a.x) * (b.y - a.y);
    return b.y > a.y ? offset > 0 : offset < 0;
}

bool isFlatAt(const GridRing& ring, int y) {
    return std::all_of(ring.begin(), ring.end(), [y](GridPoint corner) { return corner.y == y; });
}

bool isOutsideFlatRing(const GridRing& ring, GridPoint point) {
    const auto byX = [](GridPoint a, GridPoint b) { return a.x < b.x; };
    const auto [least, greatest] = std::minmax_element(ring.begin(), ring.end(), byX);
    return point.x < least->x || point.x > greatest->x;
}

bool expectedInside(const GridRing& ring, GridPoint point) {
    if (isFlatAt(ring, point.y)) {
        return !isOutsideFlatRing(ring, point);
    }
    bool odd = false;
    for (std::size_t i = 0; i < ring.size(); ++i) {
        const GridPoint a = ring[i];
        const GridPoint b = ring[(i + 1) % ring.size()];
        if (isOutlineOf(a, b, point)) {
            return true;
        }
        odd = odd != crossesJustBelow(a, b, point);
    }
    return odd;
}

/// Corners are even numbers from 0 to 2 * (width - 1), so that odd numbers are between them.
GridRing ringOfNumber(int number, int width, int cornerCount) {
    GridRing ring;
    for (int corner = 0; corner < cornerCount; ++corner) {
        ring.push_back({number % width * 2, number / width % width * 2});
        number /= width * width;
    }
    return ring;
}

Outline outlineOf(const GridRing& ring) {
    Outline outline;
    for (const GridPoint corner : ring) {
        outline.push_back({static_cast<double>(corner.x), static_cast<double>(corner.y)});
    }
    return outline;
}

struct Answers {
    int inside = 0;
    int outside = 0;
};

/// Compares one ring at every whole point from just outside of the grid on.
void compare(const GridRing& ring, int width, Closing closing, Answers& answers) {
    std::vector<BoundaryVertex> table;
    BoundaryPolygon polygon = makePolygon(table, outlineOf(ring), closing);
    for (int x = -1; x <= 2 * width - 1; ++x) {
        for (int y = -1; y <= 2 * width - 1; ++y) {
            const bool expected = expectedInside(ring, {x, y});
            const Point2D point{static_cast<double>(x), static_cast<double>(y)};
            ASSERT_EQ(expected, containsPoint(polygon, point, table))
                << "(" << x << ", " << y << ") and " << asText(outlineOf(ring));
            ++(expected ? answers.inside : answers.outside);
        }
    }
}

Answers compareAll(int width, int cornerCount, int ringCount, Closing closing) {
    Answers answers;
    for (int number = 0; number < ringCount && !testing::Test::HasFatalFailure(); ++number) {
        compare(ringOfNumber(number, width, cornerCount), width, closing, answers);
    }
    return answers;
}

} // namespace

TEST(ContainsPointOnAGrid, isCorrectForEveryTriangle) {
    for (const Closing closing : allClosings) {
        const Answers answers = compareAll(4, 3, 16 * 16 * 16, closing);
        EXPECT_EQ(16 * 16 * 16 * 81, answers.inside + answers.outside);
        EXPECT_GT(answers.inside, 30000);
    }
}

TEST(ContainsPointOnAGrid, isCorrectForEveryQuadrilateral) {
    for (const Closing closing : allClosings) {
        const Answers answers = compareAll(3, 4, 9 * 9 * 9 * 9, closing);
        EXPECT_EQ(9 * 9 * 9 * 9 * 49, answers.inside + answers.outside);
        EXPECT_GT(answers.inside, 30000);
    }
}

} // namespace vadelclip
