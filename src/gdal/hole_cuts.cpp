#include "gdal/hole_cuts.hpp"

#include "boundary/ring_walk.hpp"
#include "gdal/exact_side.hpp"

#include <algorithm>
#include <limits>
#include <numeric>

namespace vadelclip_gdal {

namespace {

constexpr std::size_t noRing = std::numeric_limits<std::size_t>::max();

/// A cut that has not been found yet.
struct Search {
    HoleCut cut;
    Point2D start;    ///< The corner where the cut begins.
    std::size_t rank; ///< Position among the holes, from right to left.
};

/// All searches, from the lowest to the highest start, and the rank of each ring.
struct Searches {
    std::vector<Search> byHeight;
    std::vector<std::size_t> ranks; ///< By ring. The outer ring has rank 0.
};

std::size_t rightmostCorner(const Ring& ring) {
    const auto isLess = [](Point2D a, Point2D b) { return a.x != b.x ? a.x < b.x : a.y > b.y; };
    return static_cast<std::size_t>(std::max_element(ring.begin(), ring.end(), isLess) - ring.begin());
}

Searches searchesOf(const std::vector<Ring>& rings) {
    Searches searches;
    for (std::size_t hole = 1; hole < rings.size(); ++hole) {
        const std::size_t corner = rightmostCorner(rings[hole]);
        const Point2D start = rings[hole][corner];
        searches.byHeight.push_back({{hole, corner, noRing, 0, false, {}}, start, 0});
    }
    std::stable_sort(searches.byHeight.begin(), searches.byHeight.end(),
                     [](const Search& a, const Search& b) { return a.start.x > b.start.x; });
    searches.ranks.assign(rings.size(), 0);
    for (std::size_t i = 0; i < searches.byHeight.size(); ++i) {
        searches.byHeight[i].rank = i + 1;
        searches.ranks[searches.byHeight[i].cut.hole] = i + 1;
    }
    std::sort(searches.byHeight.begin(), searches.byHeight.end(),
              [](const Search& a, const Search& b) { return a.start.y < b.start.y; });
    return searches;
}

/// Keeps the nearer end. Of equally near ones a corner, then the ring that is joined first.
void offer(Search& search, const std::vector<std::size_t>& ranks, const HoleCut& candidate) {
    HoleCut& best = search.cut;
    const auto key = [&ranks](const HoleCut& cut) { return std::pair(cut.atCorner ? 0 : 1, ranks[cut.ring]); };
    if (best.ring == noRing || candidate.end.x < best.end.x ||
        (candidate.end.x == best.end.x && key(candidate) < key(best))) {
        best = candidate;
    }
}

void offerCorner(Search& search, const std::vector<std::size_t>& ranks, std::size_t ring, std::size_t corner,
                 Point2D position) {
    if (position.x >= search.start.x) {
        offer(search, ranks, {search.cut.hole, search.cut.corner, ring, corner, true, position});
    }
}

/// For an edge that begins at the height of the cut. A cut along it would have no inside.
void offerHorizontalEdge(Search& search, const std::vector<std::size_t>& ranks, std::size_t ring, std::size_t edge,
                         Point2D from, Point2D to) {
    const Point2D start = search.start;
    if (to.y == start.y && std::min(from.x, to.x) < start.x && start.x < std::max(from.x, to.x)) {
        offer(search, ranks, {search.cut.hole, search.cut.corner, ring, edge, false, start});
    }
}

/// For an edge with one end above and the other one below the height of the cut.
void offerEdge(Search& search, const std::vector<std::size_t>& ranks, std::size_t ring, std::size_t edge, Point2D from,
               Point2D to) {
    const Point2D start = search.start;
    if (std::max(from.x, to.x) < start.x) {
        return;
    }
    // Left of an upward edge is left of the crossing.
    const int side = from.y < to.y ? sideOf(from, to, start) : -sideOf(from, to, start);
    if (side < 0) {
        return;
    }
    // A hole that touches the edge is joined without a cut. Otherwise the end is where the containment test finds the
    // edge: that test uses the crossing only between the ends of the edge. Rounding may not put it left of the start.
    const double crossing = std::min(std::max(from.x, to.x), vadelclip::crossingX(from, to, start.y));
    const double x = side == 0 ? start.x : std::max(start.x, crossing);
    offer(search, ranks, {search.cut.hole, search.cut.corner, ring, edge, false, {x, start.y}});
}

/// Offers an edge and its first corner to each search whose cut they can end.
void offerToAll(Searches& searches, const std::vector<Ring>& rings, std::size_t ring, std::size_t edge) {
    const Point2D from = rings[ring][edge];
    const Point2D to = rings[ring][(edge + 1) % rings[ring].size()];
    const auto [low, high] = std::minmax(from.y, to.y);
    auto search = std::lower_bound(searches.byHeight.begin(), searches.byHeight.end(), low,
                                   [](const Search& each, double y) { return each.start.y < y; });
    for (; search != searches.byHeight.end() && search->start.y <= high; ++search) {
        if (search->rank <= searches.ranks[ring]) {
            continue; // the hole itself, or one that is joined later
        }
        if (from.y == search->start.y) {
            offerCorner(*search, searches.ranks, ring, edge, from);
            offerHorizontalEdge(*search, searches.ranks, ring, edge, from, to);
        } else if (to.y != search->start.y) {
            offerEdge(*search, searches.ranks, ring, edge, from, to);
        }
    }
}

} // namespace

std::optional<std::vector<HoleCut>> findCuts(const std::vector<Ring>& rings) {
    Searches searches = searchesOf(rings);
    for (std::size_t ring = 0; ring < rings.size(); ++ring) {
        for (std::size_t edge = 0; edge < rings[ring].size(); ++edge) {
            offerToAll(searches, rings, ring, edge);
        }
    }
    std::vector<HoleCut> cuts(searches.byHeight.size());
    for (const Search& search : searches.byHeight) {
        if (search.cut.ring == noRing) {
            return std::nullopt;
        }
        cuts[search.rank - 1] = search.cut;
    }
    return cuts;
}

} // namespace vadelclip_gdal
