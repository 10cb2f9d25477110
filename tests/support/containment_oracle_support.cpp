#include "support/containment_oracle_support.hpp"

#include <cmath>

namespace vadelclip {

namespace oracle {

namespace {

void count(Ways& ways, Way way) {
    ++ways[static_cast<std::size_t>(way)];
}

enum class Verdict { undecided, boundary };

struct Walk {
    double x;
    double y;
    double prevX;
    double prevY;
    bool onRun;
    std::uint64_t crossings;
    double lastX; ///< x of the vertex of the previous iteration.
};

void makePrev(Walk& walk, double cx, double cy) {
    walk.prevX = cx;
    walk.prevY = cy;
}

/// Handles an edge from prev to the current vertex that crosses the height of the point.
Verdict straddlingEdge(Walk& walk, double cx, double cy, Ways& ways) {
    const double smallerX = walk.prevX < cx ? walk.prevX : cx;
    const double largerX = walk.prevX > cx ? walk.prevX : cx;
    if (smallerX > walk.x) {
        count(ways, Way::whollyRight);
        walk.crossings = walk.crossings + 1;
        makePrev(walk, cx, cy);
        return Verdict::undecided;
    }
    if (largerX < walk.x) {
        count(ways, Way::whollyLeft);
        makePrev(walk, cx, cy);
        return Verdict::undecided;
    }
    const double product = (walk.y - walk.prevY) * (cx - walk.prevX);
    const double quotient = product / (cy - walk.prevY);
    const double xi = quotient + walk.prevX;
    if (xi > walk.x) {
        count(ways, Way::crossingRight);
        walk.crossings = walk.crossings + 1;
        makePrev(walk, cx, cy);
        return Verdict::undecided;
    }
    if (xi == walk.x) {
        count(ways, Way::crossingHit);
        return Verdict::boundary;
    }
    count(ways, Way::crossingLeft);
    makePrev(walk, cx, cy);
    return Verdict::undecided;
}

/// Handles an iteration with the run flag false.
Verdict iterationOffRun(Walk& walk, double cx, double cy, Ways& ways) {
    if (cy == walk.y && cx >= walk.x) {
        walk.onRun = true;
        if (cx == walk.x) {
            count(ways, Way::vertexHit);
            return Verdict::boundary;
        }
        count(ways, Way::runBegins);
        return Verdict::undecided;
    }
    const bool prevIsBelow = walk.prevY < walk.y;
    const bool currentIsAtMost = cy <= walk.y;
    if (prevIsBelow != currentIsAtMost) {
        return straddlingEdge(walk, cx, cy, ways);
    }
    count(ways, Way::notStraddling);
    makePrev(walk, cx, cy);
    return Verdict::undecided;
}

/// Handles an iteration with the run flag true.
Verdict iterationOnRun(Walk& walk, double cx, double cy, Ways& ways) {
    if (cy == walk.y) {
        const bool lastIsLeft = walk.lastX < walk.x;
        const bool currentIsAtMost = cx <= walk.x;
        if (lastIsLeft != currentIsAtMost || cx == walk.x) {
            count(ways, Way::runHit);
            return Verdict::boundary;
        }
        count(ways, Way::runContinues);
        return Verdict::undecided;
    }
    const bool prevIsBelow = walk.prevY < walk.y;
    const bool currentIsAtMost = cy <= walk.y;
    if (prevIsBelow != currentIsAtMost) {
        count(ways, Way::runPasses);
        walk.crossings = walk.crossings + 1;
    } else {
        count(ways, Way::runTouches);
    }
    walk.onRun = false;
    makePrev(walk, cx, cy);
    return Verdict::undecided;
}

bool ringTest(const std::vector<std::int32_t>& list, Point2D point, const std::vector<BoundaryVertex>& table,
              Ways& ways) {
    const std::size_t n = list.size();
    const bool closed = list[n - 1] == list[0];
    const std::size_t m = closed ? n - 1 : n;
    const auto vertexAt = [&](std::size_t position) { return table[static_cast<std::size_t>(list[position])]; };

    std::size_t i = 0;
    while (vertexAt(i).y == point.y) {
        if (i == n - 1) {
            count(ways, Way::allAtHeight);
            return true;
        }
        i = i + 1;
    }

    Walk walk{point.x, point.y, vertexAt(i).x, vertexAt(i).y, false, 0, 0.0};
    for (std::size_t iteration = 0; iteration < m; iteration = iteration + 1) {
        const std::size_t j = i < n - 1 ? i + 1 : (closed ? 1 : 0);
        const double cx = vertexAt(j).x;
        const double cy = vertexAt(j).y;
        const Verdict verdict = walk.onRun ? iterationOnRun(walk, cx, cy, ways) : iterationOffRun(walk, cx, cy, ways);
        if (verdict == Verdict::boundary) {
            return true;
        }
        walk.lastX = cx;
        i = j;
    }
    return walk.crossings % 2 == 1;
}

/// Returns the distance from the edge between the first and the second entry of the list. No other edge counts.
double segmentDistance(Point2D a, Point2D b, Point2D point, Ways& ways) {
    const double dx = b.x - a.x;
    const double dy = b.y - a.y;
    if (dx * dx + dy * dy <= 1e-14) {
        count(ways, Way::segmentDegenerate);
        return std::hypot(point.x - a.x, point.y - a.y);
    }
    const double px = point.x - a.x;
    const double py = point.y - a.y;
    const double t = (dx * px + dy * py) / (dx * dx + dy * dy);
    if (t < 0.0) {
        count(ways, Way::segmentBefore);
        return std::hypot(px, py);
    }
    if (t > 1.0) {
        count(ways, Way::segmentAfter);
        return std::hypot(point.x - b.x, point.y - b.y);
    }
    count(ways, Way::segmentAlong);
    // This edge is longer than 1e-7, so its length needs no replacement by another value.
    const double k = 1.0 / std::hypot(dx, dy);
    const double normalX = dy * k;
    const double normalY = -(dx * k);
    return std::fabs(px * normalX + py * normalY);
}

bool boxRejects(const BoundingBox& box, Point2D point) {
    if (box.minX + (-1e-06) > point.x) {
        return true;
    }
    if (box.minY + (-1e-06) > point.y) {
        return true;
    }
    if (box.maxX + 1e-06 < point.x) {
        return true;
    }
    return box.maxY + 1e-06 < point.y;
}

bool outlineTest(const std::vector<std::int32_t>& list, Point2D point, const std::vector<BoundaryVertex>& table,
                 Ways& ways) {
    // Entries are compared as indices, not as coordinates.
    const std::size_t n = list.size();
    const std::size_t m = list[n - 1] == list[0] ? n - 1 : n;
    if (m < 2) {
        return false;
    }
    if (m > 2) {
        return ringTest(list, point, table, ways);
    }
    const BoundaryVertex& a = table[static_cast<std::size_t>(list[0])];
    const BoundaryVertex& b = table[static_cast<std::size_t>(list[1])];
    return segmentDistance({a.x, a.y}, {b.x, b.y}, point, ways) == 0.0;
}

} // namespace

bool contains(const BoundaryPolygon& polygon, Point2D point, const std::vector<BoundaryVertex>& vertexTable,
              Ways& ways) {
    if (polygon.vertexIndices.empty()) {
        return false;
    }
    if (boxRejects(polygon.boundingBox, point)) {
        return false;
    }
    if (!outlineTest(polygon.vertexIndices, point, vertexTable, ways)) {
        return false;
    }
    for (const BoundaryPolygon& child : polygon.childPolygons) {
        if (contains(child, point, vertexTable, ways)) {
            return false;
        }
    }
    return true;
}

} // namespace oracle

} // namespace vadelclip
