#include "gdal/hole_join.hpp"

#include "gdal/hole_cuts.hpp"

#include <algorithm>
#include <cstddef>
#include <tuple>

namespace vadelclip_gdal {

namespace {

/// The cuts that end at one ring, in the direction of the ring.
using CutsOfRing = std::vector<HoleCut>;

Ring withoutRepeats(const Ring& ring) {
    Ring result;
    for (const Point2D corner : ring) {
        if (result.empty() || !samePoint(result.back(), corner)) {
            result.push_back(corner);
        }
    }
    while (result.size() > 1 && samePoint(result.front(), result.back())) {
        result.pop_back();
    }
    return result;
}

std::vector<CutsOfRing> sortedByRing(const std::vector<Ring>& rings, const std::vector<HoleCut>& cuts) {
    std::vector<CutsOfRing> result(rings.size());
    for (const HoleCut& cut : cuts) {
        result[cut.ring].push_back(cut);
    }
    for (std::size_t ring = 0; ring < rings.size(); ++ring) {
        const Ring& corners = rings[ring];
        const auto key = [&corners](const HoleCut& cut) {
            const Point2D from = corners[cut.edge];
            const Point2D to = corners[(cut.edge + 1) % corners.size()];
            // A corner is before all points of its edge.
            return std::tuple(cut.edge, !cut.atCorner, to.y < from.y ? -cut.end.y : cut.end.y,
                              to.x < from.x ? -cut.end.x : cut.end.x);
        };
        std::stable_sort(result[ring].begin(), result[ring].end(),
                         [&key](const HoleCut& a, const HoleCut& b) { return key(a) < key(b); });
    }
    return result;
}

/// The state of the walk along one ring. The walk round a hole begins and ends at the corner of its cut.
struct RingVisit {
    std::size_t ring;
    std::size_t firstCorner;
    std::size_t visited; ///< Corners of the ring so far.
    std::size_t nextCut; ///< Of those that end at this ring.
    Point2D returnTo;    ///< The other end of the cut.
};

/// Walks along all rings. Keeps the rings that it is on in a list, because holes may be nested in a chain of any length.
class JoinedWalk {
public:
    JoinedWalk(const std::vector<Ring>& rings_, const std::vector<HoleCut>& cuts)
        : rings(rings_), cutsOfRings(sortedByRing(rings_, cuts)) {}

    Ring walk() {
        visits.push_back({0, 0, 0, 0, {}});
        while (!visits.empty()) {
            step();
        }
        return std::move(joined);
    }

private:
    void step() {
        RingVisit& visit = visits.back();
        const Ring& ring = rings[visit.ring];
        if (visit.visited > 0 && enterHole(visit, (visit.firstCorner + visit.visited - 1) % ring.size())) {
            return;
        }
        if (visit.visited < ring.size()) {
            const std::size_t corner = (visit.firstCorner + visit.visited++) % ring.size();
            visit.nextCut = firstCutFrom(visit.ring, corner);
            joined.push_back(ring[corner]);
            return;
        }
        if (visits.size() > 1) {
            joined.push_back(ring[visit.firstCorner]);
            joined.push_back(visit.returnTo);
        }
        visits.pop_back();
    }

    std::size_t firstCutFrom(std::size_t ring, std::size_t corner) const {
        const CutsOfRing& cuts = cutsOfRings[ring];
        return static_cast<std::size_t>(
            std::lower_bound(cuts.begin(), cuts.end(), corner,
                             [](const HoleCut& cut, std::size_t edge) { return cut.edge < edge; }) -
            cuts.begin());
    }

    /// Enters the next hole whose cut ends at this corner or at the edge after it. Returns false if there is none.
    bool enterHole(RingVisit& visit, std::size_t corner) {
        const CutsOfRing& cuts = cutsOfRings[visit.ring];
        if (visit.nextCut == cuts.size() || cuts[visit.nextCut].edge != corner) {
            return false;
        }
        const HoleCut& cut = cuts[visit.nextCut++];
        if (!samePoint(joined.back(), cut.end)) {
            joined.push_back(cut.end);
        }
        visits.push_back({cut.hole, cut.corner, 0, 0, cut.end}); // invalidates `visit`
        return true;
    }

    const std::vector<Ring>& rings;
    std::vector<CutsOfRing> cutsOfRings;
    std::vector<RingVisit> visits;
    Ring joined;
};

} // namespace

std::optional<Ring> joinHoles(const RingsOfPolygon& polygon) {
    if (polygon.holes.empty()) {
        return polygon.outer;
    }
    std::vector<Ring> rings = {withoutRepeats(polygon.outer)};
    std::transform(polygon.holes.begin(), polygon.holes.end(), std::back_inserter(rings), withoutRepeats);
    if (std::any_of(rings.begin(), rings.end(), [](const Ring& ring) { return ring.size() < 3; })) {
        return std::nullopt;
    }
    const std::optional<std::vector<HoleCut>> cuts = findCuts(rings);
    if (!cuts) {
        return std::nullopt;
    }
    return JoinedWalk(rings, *cuts).walk();
}

} // namespace vadelclip_gdal
