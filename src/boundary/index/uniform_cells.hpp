/// \file
/// A range of coordinates cut into cells of the same size.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace vadelclip {

/// Maps coordinates to cells 0 to count - 1.
///
/// All that its users rely on is that the mapping is monotone: a larger coordinate is never in a smaller cell. Every
/// operation in it is monotone, rounding included, so this holds exactly, whatever the coordinates. Coordinates
/// beyond the range belong to the first and the last cell.
struct UniformCells {
    double origin = 0.0;
    double scale = 0.0;    ///< Cells per unit; 0 where there is only one cell.
    double lastCell = 0.0; ///< As a double, to clamp before the conversion to an integer.

    UniformCells() = default;

    /// Cuts `minimum` to `maximum` into `count` cells, or into one where the range is empty or not finite.
    UniformCells(double minimum, double maximum, std::uint32_t count) {
        const double cellsPerUnit = count / (maximum - minimum);
        if (maximum > minimum && std::isfinite(maximum - minimum) && std::isfinite(cellsPerUnit)) {
            origin = minimum;
            scale = cellsPerUnit;
            lastCell = count - 1.0;
        }
    }

    std::uint32_t count() const { return static_cast<std::uint32_t>(lastCell) + 1; }

    std::uint32_t cellOf(double coordinate) const {
        const double position = (coordinate - origin) * scale;
        return static_cast<std::uint32_t>(std::min(lastCell, std::max(0.0, position)));
    }

    /// Gives the smallest double that belongs to a cell or to one behind it. `cell` is at least 1 and below `count`.
    double firstCoordinateOf(std::uint32_t cell) const;
};

} // namespace vadelclip
