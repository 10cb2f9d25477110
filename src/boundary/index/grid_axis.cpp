#include "boundary/index/grid_axis.hpp"

#include <algorithm>
#include <cmath>
#include <limits>

namespace vadelclip {

GridAxis::GridAxis(double minimum, double maximum, std::uint32_t cellCount, double first_, double last_)
    : cells(minimum, maximum, cellCount), first(first_), last(last_), limits(cells.count() + 1, first_) {
    for (std::uint32_t cell = 1; cell < cells.count(); ++cell) {
        limits[cell] = std::max(first, cells.firstCoordinateOf(cell));
    }
    limits.back() = std::nextafter(last, std::numeric_limits<double>::infinity());
}

double GridAxis::lastOf(std::int32_t cell) const {
    return std::nextafter(firstOf(cell + 1), -std::numeric_limits<double>::infinity());
}

} // namespace vadelclip
