/// \file
/// One direction of a grid while it is built.
#pragma once

#include "boundary/index/uniform_cells.hpp"

#include <cstdint>
#include <vector>

namespace vadelclip {

/// The cells of one direction, for points between a first and a last coordinate.
struct GridAxis {
    UniformCells cells;
    double first = 0.0;
    double last = 0.0;
    std::vector<double> limits; ///< The first coordinate of each cell, and the double after `last`.

    GridAxis() = default;

    /// Cuts `minimum` to `maximum`, a part of `first_` to `last_`, into cells. The outermost cells extend to these two.
    GridAxis(double minimum, double maximum, std::uint32_t cellCount, double first_, double last_);

    std::int32_t count() const { return static_cast<std::int32_t>(cells.count()); }

    /// Returns the cell of a coordinate, -1 for one before `first`, and `count()` for one after `last`.
    std::int32_t place(double coordinate) const {
        if (coordinate < first) {
            return -1;
        }
        return coordinate > last ? count() : static_cast<std::int32_t>(cells.cellOf(coordinate));
    }

    bool has(std::int32_t cell) const { return cell >= 0 && cell < count(); }
    double firstOf(std::int32_t cell) const { return limits[static_cast<std::size_t>(cell)]; }
    double lastOf(std::int32_t cell) const;
};

} // namespace vadelclip
