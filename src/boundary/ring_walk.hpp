/// \file
/// Walks along a ring or a piece of one, counts the crossings right of a point, and finds out if the point is on the
/// outline.
#pragma once

#include "boundary/boundary_set.hpp"

namespace vadelclip {

/// Returns the x at which the edge from `prev` to `current` reaches the height `y`. The last bits of the result depend on
/// the order of the operations and on the direction of the edge.
///
/// For one edge each operation is monotone in y, also after rounding, and so is the result.
inline double crossingX(Point2D prev, Point2D current, double y) {
    return ((y - prev.y) * (current.x - prev.x)) / (current.y - prev.y) + prev.x;
}

/// The state of a walk. A walk starts at a vertex. `visit` receives every vertex after it, in ring order.
///
/// The crossings of a walk are the sum of those of its edges, and those of an edge depend on this edge and the point
/// only. So a ring may be walked in pieces. docs/performance.md has the proof.
struct RingWalk {
    Point2D point;
    double prevX; ///< The last vertex that is not part of a run.
    double prevY;
    double lastX;     ///< While `onRun`: x of the vertex visited last.
    bool onRun;       ///< True on a run: vertices at the point's height, of which the first is not left of the point.
    bool odd = false; ///< True if the number of crossings is odd.

    RingWalk(Point2D point_, double startX, double startY)
        : point(point_), prevX(startX), prevY(startY), lastX(startX), onRun(startY == point_.y && startX >= point_.x) {}

    /// Continues to the next vertex.
    ///
    /// @return true if the point is on the outline; the walk ends then.
    bool visit(double cx, double cy) { return onRun ? visitOnRun(cx, cy) : visitOffRun(cx, cy); }

    /// Returns true if the number of crossings so far is odd. A run counts as if its next vertex were above the point.
    bool isOdd() const { return odd != (onRun && prevY < point.y); }

private:
    /// The first comparison is strict and the second is not, on purpose: this decides how vertices at the point's
    /// height count.
    bool straddles(double cy) const { return (prevY < point.y) != (cy <= point.y); }

    void pass(double cx, double cy) {
        prevX = cx;
        prevY = cy;
    }

    void cross() { odd = !odd; }

    bool visitOffRun(double cx, double cy) {
        if (cy == point.y && cx >= point.x) {
            onRun = true;
            lastX = cx;
            return cx == point.x;
        }
        // This includes a vertex at the point's height left of the point. It never adds a crossing, but it becomes prev.
        // So a horizontal edge from it towards greater x is not tested as outline, and a point on that edge counts as if
        // it were just below. Kept on purpose.
        if (straddles(cy)) {
            return visitStraddling(cx, cy);
        }
        pass(cx, cy);
        return false;
    }

    bool visitStraddling(double cx, double cy) {
        const double smallerX = cx < prevX ? cx : prevX;
        const double largerX = cx > prevX ? cx : prevX;
        if (smallerX > point.x) {
            cross();
        } else if (!(largerX < point.x)) {
            const double xi = crossingX({prevX, prevY}, {cx, cy}, point.y);
            if (xi == point.x) {
                return true;
            }
            if (xi > point.x) {
                cross();
            }
        }
        pass(cx, cy);
        return false;
    }

    bool visitOnRun(double cx, double cy) {
        if (cy == point.y) {
            const bool onStretch = (lastX < point.x) != (cx <= point.x);
            lastX = cx;
            return onStretch || cx == point.x;
        }
        // The run is a crossing if the vertices before and after it are on different sides of the point's height.
        if (straddles(cy)) {
            cross();
        }
        onRun = false;
        pass(cx, cy);
        return false;
    }
};

} // namespace vadelclip
