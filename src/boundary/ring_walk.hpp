/// \file
/// The walk along a ring (or a piece of one) past one point: counts the crossings right of the point and finds out
/// whether the point lies on the outline.
#pragma once

#include "boundary/boundary_set.hpp"

namespace vadelclip {

/// Gives the x at which the edge from `prev` to `current` meets the height `y`. The order of the operations is part
/// of the result, and so is the direction of the edge.
///
/// For a given edge each operation is monotone in y, rounding included, and so is the result.
inline double crossingX(Point2D prev, Point2D current, double y) {
    return ((y - prev.y) * (current.x - prev.x)) / (current.y - prev.y) + prev.x;
}

/// State of a walk. It starts at a vertex whose y differs from the point's, and is handed every vertex after that one
/// in ring order.
///
/// Having passed a vertex whose y differs from the point's, the walk knows nothing but that vertex and the crossings
/// so far.
struct RingWalk {
    Point2D point;
    double prevX; ///< The last vertex that counts as passed. Vertices of a run are not.
    double prevY;
    double lastX = 0.0; ///< While `onRun`: x of the vertex before, whatever it was.
    bool onRun = false; ///< Among vertices at the point's height that began at or right of the point.
    bool odd = false;   ///< Whether the number of crossings so far is odd.

    RingWalk(Point2D point_, double startX, double startY) : point(point_), prevX(startX), prevY(startY) {}

    /// Goes on to the next vertex.
    ///
    /// @return true if the point is on the outline here; the walk is over then.
    bool visit(double cx, double cy) { return onRun ? visitOnRun(cx, cy) : visitOffRun(cx, cy); }

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
        // A vertex at the point's height left of the point comes here too. It never adds a crossing, but it becomes
        // prev: a horizontal edge that goes on from it towards greater x is therefore not seen as outline, and a
        // point on it is decided as if it lay just below. Kept as it stands.
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
        // The run passes through the point's height if the vertices before and behind it lie on different sides.
        if (straddles(cy)) {
            cross();
        }
        onRun = false;
        pass(cx, cy);
        return false;
    }
};

} // namespace vadelclip
