#include "boundary/index/grid_axis.hpp"

#include "support/special_numbers.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <utility>
#include <vector>

namespace vadelclip {

namespace {

constexpr double largest = std::numeric_limits<double>::max();
constexpr double smallest = std::numeric_limits<double>::denorm_min();

/// Axes of a grid for the plane and of grids inside of its cells, at most three deep.
void addAxes(std::vector<GridAxis>& axes, const GridAxis& axis, int depth) {
    axes.push_back(axis);
    if (depth == 0) {
        return;
    }
    for (const std::int32_t cell : {0, axis.count() / 2, axis.count() - 1}) {
        const double first = axis.firstOf(cell);
        const double last = axis.lastOf(cell);
        if (first <= last) {
            addAxes(axes, GridAxis(std::max(first, -4e307), std::min(last, 4e307), 7, first, last), depth - 1);
            addAxes(axes, GridAxis(first, first, 7, first, last), depth - 1);
        }
    }
}

std::vector<GridAxis> awkwardAxes() {
    std::vector<GridAxis> axes;
    for (const auto& [minimum, maximum] : {std::pair(0.0, 1.0),
                                           {-0.1, 0.2},
                                           {382000.0, 383000.0},
                                           {1e8, 1e8 + 1e-6},
                                           {-4e307, 4e307},
                                           {-smallest, 9 * smallest},
                                           {-2.0, -0.0},
                                           {5.0, 5.0}}) {
        addAxes(axes, GridAxis(minimum, maximum, 12, -infinity, infinity), 3);
    }
    return axes;
}

} // namespace

// The builder compares coordinates with the limits. It depends on this where a cell has no coordinate, at the ends of the
// axis, and outside of them.
TEST(GridAxis, hasLimitsThatAgreeWithPlaces) {
    for (const GridAxis& axis : awkwardAxes()) {
        for (std::int32_t limit = 0; limit <= axis.count(); ++limit) {
            const double at = axis.firstOf(limit);
            for (const double coordinate : {std::nextafter(at, -infinity), at, std::nextafter(at, infinity), -largest,
                                            largest, axis.first, axis.last, -smallest, 0.0, smallest}) {
                if (std::isfinite(coordinate)) {
                    ASSERT_EQ(axis.place(coordinate) >= limit, coordinate >= at)
                        << std::hexfloat << coordinate << " at limit " << limit << " of " << axis.first << " to "
                        << axis.last;
                }
            }
        }
    }
}

} // namespace vadelclip
