#include "gdal/hole_split.hpp"

#include "gdal/exact_side.hpp"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <tuple>

namespace vadelclip_gdal {

namespace {

/// The two ways through a cut, as positions of the edges in the ring.
struct CutPair {
    std::size_t in;
    std::size_t out;
};

struct HorizontalEdge {
    double y;
    double minX;
    double maxX;
    std::size_t position;
    bool leftward;
};

/// A ring that is taken out of the joined one.
struct Loop {
    Ring corners;
    double maxX;
    std::size_t parent;   ///< Number of the loop that its cut ends at.
    std::size_t attached; ///< Position of that corner in the parent.
};

std::vector<HorizontalEdge> horizontalEdges(const Ring& ring) {
    std::vector<HorizontalEdge> edges;
    for (std::size_t i = 0; i < ring.size(); ++i) {
        const Point2D from = ring[i];
        const Point2D to = ring[i + 1 == ring.size() ? 0 : i + 1];
        if (from.y == to.y) {
            edges.push_back({from.y, std::min(from.x, to.x), std::max(from.x, to.x), i, to.x <= from.x});
        }
    }
    std::sort(edges.begin(), edges.end(), [](const HorizontalEdge& a, const HorizontalEdge& b) {
        return std::tie(a.y, a.minX, a.maxX, a.position) < std::tie(b.y, b.minX, b.maxX, b.position);
    });
    return edges;
}

/// Two edges are a cut if the first leads to the left, the second back, and there are at least three corners between.
bool isCut(const HorizontalEdge& in, const HorizontalEdge& out) {
    const bool sameEnds = in.y == out.y && in.minX == out.minX && in.maxX == out.maxX;
    const bool thereAndBack = in.leftward && (!out.leftward || in.minX == in.maxX);
    return sameEnds && thereAndBack && out.position - in.position > 3;
}

std::vector<CutPair> findCutPairs(const Ring& ring) {
    const std::vector<HorizontalEdge> edges = horizontalEdges(ring);
    std::vector<CutPair> cuts;
    for (std::size_t i = 1; i < edges.size(); ++i) {
        if (isCut(edges[i - 1], edges[i])) {
            cuts.push_back({edges[i - 1].position, edges[i].position});
            ++i;
        }
    }
    std::sort(cuts.begin(), cuts.end(), [](CutPair a, CutPair b) { return a.in < b.in; });
    return cuts;
}

bool isNested(const std::vector<CutPair>& cuts) {
    std::vector<std::size_t> open;
    for (const CutPair cut : cuts) {
        while (!open.empty() && open.back() < cut.in) {
            open.pop_back();
        }
        if (!open.empty() && open.back() < cut.out) {
            return false;
        }
        open.push_back(cut.out);
    }
    return true;
}

void append(Loop& loop, Point2D corner) {
    loop.corners.push_back(corner);
    loop.maxX = std::max(loop.maxX, corner.x);
}

/// Ends a loop. Returns false if its last corner does not repeat its first one, or if a corner is further right than that.
bool close(Loop& loop) {
    const Point2D first = loop.corners.front();
    if (loop.corners.size() < 4 || !samePoint(loop.corners.back(), first) || loop.maxX > first.x) {
        return false;
    }
    loop.corners.pop_back();
    return true;
}

/// Takes the ring apart. The first loop is the outer ring. Returns nothing if a loop does not have the form of a hole.
std::optional<std::vector<Loop>> takeApart(const Ring& ring, const std::vector<CutPair>& cuts) {
    std::vector<Loop> loops = {{{}, ring.front().x, 0, 0}};
    std::vector<std::size_t> outs; // of the cuts that the walk is in
    std::size_t current = 0;
    bool isRepeated = false; // the next corner is the one at which the cut has left the parent
    auto nextCut = cuts.begin();
    for (std::size_t i = 0; i < ring.size(); ++i) {
        if (!isRepeated) {
            append(loops[current], ring[i]);
        }
        isRepeated = !outs.empty() && outs.back() == i;
        if (isRepeated) {
            if (!close(loops[current])) {
                return std::nullopt;
            }
            current = loops[current].parent;
            outs.pop_back();
        } else if (nextCut != cuts.end() && nextCut->in == i) {
            outs.push_back(nextCut++->out);
            loops.push_back({{}, ring[i + 1].x, current, loops[current].corners.size() - 1});
            current = loops.size() - 1;
        }
    }
    return loops;
}

double doubledArea(const Ring& ring) {
    double area = 0.0;
    const Point2D origin = ring.front();
    for (std::size_t i = 1; i + 1 < ring.size(); ++i) {
        area +=
            (ring[i].x - origin.x) * (ring[i + 1].y - origin.y) - (ring[i + 1].x - origin.x) * (ring[i].y - origin.y);
    }
    return area;
}

/// Returns true if the segment from a corner of a counter-clockwise ring to the target begins inside the ring.
bool beginsInside(Point2D before, Point2D corner, Point2D after, Point2D target) {
    const bool leftOfFirst = sideOf(before, corner, target) > 0;
    const bool leftOfSecond = sideOf(corner, after, target) > 0;
    return sideOf(before, corner, after) > 0 ? leftOfFirst && leftOfSecond : leftOfFirst || leftOfSecond;
}

/// Returns true if the cut of a loop ends on the side of its parent where the area is.
bool runsInside(const Loop& loop, const Loop& parent, bool parentIsHole, bool parentIsClockwise) {
    const Ring& corners = parent.corners;
    const std::size_t at = loop.attached;
    const Point2D corner = corners[at];
    Point2D before = corners[at == 0 ? corners.size() - 1 : at - 1];
    Point2D after = corners[at + 1 == corners.size() ? 0 : at + 1];
    const Point2D target = samePoint(loop.corners[0], corner) ? loop.corners[1] : loop.corners[0];
    if (parentIsClockwise != parentIsHole) {
        std::swap(before, after);
    }
    return beginsInside(before, corner, after, target);
}

bool allRunInside(const std::vector<Loop>& loops) {
    std::vector<bool> clockwise;
    clockwise.reserve(loops.size());
    for (const Loop& loop : loops) {
        clockwise.push_back(doubledArea(loop.corners) < 0.0);
    }
    for (std::size_t i = 1; i < loops.size(); ++i) {
        const std::size_t parent = loops[i].parent;
        if (!runsInside(loops[i], loops[parent], parent != 0, clockwise[parent])) {
            return false;
        }
    }
    return true;
}

} // namespace

RingsOfPolygon splitHoles(const Ring& ring) {
    const std::vector<CutPair> cuts = findCutPairs(ring);
    if (cuts.empty() || !isNested(cuts)) {
        return {ring, {}};
    }
    std::optional<std::vector<Loop>> loops = takeApart(ring, cuts);
    if (!loops || loops->front().corners.size() < 3 || !allRunInside(*loops)) {
        return {ring, {}};
    }
    RingsOfPolygon polygon{std::move(loops->front().corners), {}};
    std::for_each(loops->begin() + 1, loops->end(),
                  [&polygon](Loop& loop) { polygon.holes.push_back(std::move(loop.corners)); });
    return polygon;
}

} // namespace vadelclip_gdal
