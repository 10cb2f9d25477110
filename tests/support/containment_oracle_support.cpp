#include "support/containment_oracle_support.hpp"

#include <cmath>

namespace vadelclip {

namespace oracle {

namespace {

void note(Ways& ways, Way way) {
    ++ways[static_cast<std::size_t>(way)];
}

enum class Verdict { goOn, boundary };

struct Walk {
    double x;
    double y;
    double prevX;
    double prevY;
    bool onRun;
    std::uint64_t crossings;
    double lastX; ///< Of the vertex visited in the previous iteration.
};

void makePrev(Walk& walk, double cx, double cy) {
    walk.prevX = cx;
    walk.prevY = cy;
}

/// The edge from prev to the current vertex straddles the height of the point.
Verdict straddlingEdge(Walk& walk, double cx, double cy, Ways& ways) {
    const double smallerX = walk.prevX < cx ? walk.prevX : cx;
    const double largerX = walk.prevX > cx ? walk.prevX : cx;
    if (smallerX > walk.x) {
        note(ways, Way::whollyRight);
        walk.crossings = walk.crossings + 1;
        makePrev(walk, cx, cy);
        return Verdict::goOn;
    }
    if (largerX < walk.x) {
        note(ways, Way::whollyLeft);
        makePrev(walk, cx, cy);
        return Verdict::goOn;
    }
    const double product = (walk.y - walk.prevY) * (cx - walk.prevX);
    const double quotient = product / (cy - walk.prevY);
    const double xi = quotient + walk.prevX;
    if (xi > walk.x) {
        note(ways, Way::crossingRight);
        walk.crossings = walk.crossings + 1;
        makePrev(walk, cx, cy);
        return Verdict::goOn;
    }
    if (xi == walk.x) {
        note(ways, Way::crossingHit);
        return Verdict::boundary;
    }
    note(ways, Way::crossingLeft);
    makePrev(walk, cx, cy);
    return Verdict::goOn;
}

/// An iteration with the run flag false.
Verdict iterationOffRun(Walk& walk, double cx, double cy, Ways& ways) {
    if (cy == walk.y && cx >= walk.x) {
        walk.onRun = true;
        if (cx == walk.x) {
            note(ways, Way::vertexHit);
            return Verdict::boundary;
        }
        note(ways, Way::runBegins);
        return Verdict::goOn;
    }
    const bool prevIsBelow = walk.prevY < walk.y;
    const bool currentIsAtMost = cy <= walk.y;
    if (prevIsBelow != currentIsAtMost) {
        return straddlingEdge(walk, cx, cy, ways);
    }
    note(ways, Way::notStraddling);
    makePrev(walk, cx, cy);
    return Verdict::goOn;
}

/// An iteration with the run flag true.
Verdict iterationOnRun(Walk& walk, double cx, double cy, Ways& ways) {
    if (cy == walk.y) {
        const bool lastIsLeft = walk.lastX < walk.x;
        const bool currentIsAtMost = cx <= walk.x;
        if (lastIsLeft != currentIsAtMost || cx == walk.x) {
            note(ways, Way::runHit);
            return Verdict::boundary;
        }
        note(ways, Way::runGoesOn);
        return Verdict::goOn;
    }
    const bool prevIsBelow = walk.prevY < walk.y;
    const bool currentIsAtMost = cy <= walk.y;
    if (prevIsBelow != currentIsAtMost) {
        note(ways, Way::runPasses);
        walk.crossings = walk.crossings + 1;
    } else {
        note(ways, Way::runTouches);
    }
    walk.onRun = false;
    makePrev(walk, cx, cy);
    return Verdict::goOn;
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
            note(ways, Way::allAtHeight);
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

/// Distance from the edge that leads from the first entry of the list to the second, the only one that counts.
double segmentDistance(Point2D a, Point2D b, Point2D point, Ways& ways) {
    const double dx = b.x - a.x;
    const double dy = b.y - a.y;
    if (dx * dx + dy * dy <= 1e-14) {
        note(ways, Way::segmentDegenerate);
        return std::hypot(point.x - a.x, point.y - a.y);
    }
    const double px = point.x - a.x;
    const double py = point.y - a.y;
    const double t = (dx * px + dy * py) / (dx * dx + dy * dy);
    if (t < 0.0) {
        note(ways, Way::segmentBefore);
        return std::hypot(px, py);
    }
    if (t > 1.0) {
        note(ways, Way::segmentBehind);
        return std::hypot(point.x - b.x, point.y - b.y);
    }
    note(ways, Way::segmentBeside);
    // An edge that is no point is longer than 1e-7, so the length needs no replacement here.
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
