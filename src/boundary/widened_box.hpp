/// \file
/// The box that rejects points before any other test.
#pragma once

#include "boundary/boundary_set.hpp"

namespace vadelclip {

/// A bounding box widened by the only tolerance of the tool. It only rejects points.
struct WidenedBox {
    static constexpr double tolerance = 1e-06;

    double minX = 0.0;
    double minY = 0.0;
    double maxX = 0.0;
    double maxY = 0.0;

    WidenedBox() = default;
    explicit WidenedBox(const BoundingBox& box)
        : minX(box.minX + -tolerance), minY(box.minY + -tolerance), maxX(box.maxX + tolerance),
          maxY(box.maxY + tolerance) {}

    /// Returns true if the point is strictly outside. A point exactly on the widened box passes.
    bool rejects(Point2D point) const {
        // Four comparisons without branches: for scattered points the processor could not predict them.
        const int outside = static_cast<int>(minX > point.x) | static_cast<int>(minY > point.y) |
                            static_cast<int>(maxX < point.x) | static_cast<int>(maxY < point.y);
        return outside != 0;
    }

    /// Returns true if the box rejects every point with this x.
    bool rejectsX(double x) const { return minX > x || maxX < x; }

    /// Returns true if the box rejects every point with this y.
    bool rejectsY(double y) const { return minY > y || maxY < y; }
};

} // namespace vadelclip
