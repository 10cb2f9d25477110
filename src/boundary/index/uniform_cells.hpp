/// \file
/// A range of coordinates cut into cells of the same size.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace vadelclip {

/// Maps coordinates to cells 0 to count - 1.
///
/// The mapping is monotone: a larger coordinate is never in a cell with a smaller number. This holds exactly for all
/// coordinates, because every operation is monotone, rounding included. Nothing else may be assumed. Coordinates beyond
/// the range are in the first and the last cell.
struct UniformCells {
    double origin = 0.0;
    double scale = 0.0;    ///< Cells per unit; 0 if there is only one cell.
    double lastCell = 0.0; ///< A double, because positions are clamped before the conversion to an integer.

    UniformCells() = default;

    /// Cuts `minimum` to `maximum` into `count` cells, or into one if the range is empty or not finite.
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

    /// Returns the smallest double in a cell or in a later one. `cell` is at least 1 and less than `count`.
    double firstCoordinateOf(std::uint32_t cell) const;
};

} // namespace vadelclip
