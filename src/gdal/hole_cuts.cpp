#include "gdal/hole_cuts.hpp"

#include "boundary/ring_walk.hpp"
#include "gdal/exact_side.hpp"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <limits>
#include <tuple>
#include <utility>

namespace vadelclip_gdal {

namespace {

constexpr std::size_t noRing = std::numeric_limits<std::size_t>::max();

/// A cut that has not been found yet.
struct Search {
    HoleCut cut;
    Point2D start;    ///< The corner where the cut begins.
    std::size_t rank; ///< Position among the holes, from right to left.
};

/// The searches at one height, from left to right.
struct Height {
    double y;
    std::vector<Search> searches;
};

struct Searches {
    std::vector<Height> heights;    ///< From the lowest to the highest.
    std::vector<std::size_t> ranks; ///< By ring. The outer ring has rank 0.
};

std::size_t rightmostCorner(const Ring& ring) {
    const auto isLess = [](Point2D a, Point2D b) { return a.x != b.x ? a.x < b.x : a.y > b.y; };
    return static_cast<std::size_t>(std::max_element(ring.begin(), ring.end(), isLess) - ring.begin());
}

std::vector<Search> searchesFromRight(const std::vector<Ring>& rings) {
    std::vector<Search> searches;
    for (std::size_t hole = 1; hole < rings.size(); ++hole) {
        const std::size_t corner = rightmostCorner(rings[hole]);
        searches.push_back({{hole, corner, noRing, 0, false, {}}, rings[hole][corner], 0});
    }
    std::stable_sort(searches.begin(), searches.end(),
                     [](const Search& a, const Search& b) { return a.start.x > b.start.x; });
    for (std::size_t i = 0; i < searches.size(); ++i) {
        searches[i].rank = i + 1;
    }
    return searches;
}

Searches searchesOf(const std::vector<Ring>& rings) {
    std::vector<Search> all = searchesFromRight(rings);
    Searches searches{{}, std::vector<std::size_t>(rings.size(), 0)};
    for (const Search& search : all) {
        searches.ranks[search.cut.hole] = search.rank;
    }
    std::sort(all.begin(), all.end(), [](const Search& a, const Search& b) {
        return std::tie(a.start.y, a.start.x, a.rank) < std::tie(b.start.y, b.start.x, b.rank);
    });
    for (const Search& search : all) {
        if (searches.heights.empty() || searches.heights.back().y != search.start.y) {
            searches.heights.push_back({search.start.y, {}});
        }
        searches.heights.back().searches.push_back(search);
    }
    return searches;
}

/// Keeps the nearer end. If both are equally near, prefers a corner, then the ring that is joined first.
void offer(Search& search, const std::vector<std::size_t>& ranks, const HoleCut& candidate) {
    HoleCut& best = search.cut;
    const auto key = [&ranks](const HoleCut& cut) { return std::pair(cut.atCorner ? 0 : 1, ranks[cut.ring]); };
    if (best.ring == noRing || candidate.end.x < best.end.x ||
        (candidate.end.x == best.end.x && key(candidate) < key(best))) {
        best = candidate;
    }
}

/// An edge and the ring it belongs to.
struct Edge {
    std::size_t ring;
    std::size_t number;
    Point2D from;
    Point2D to;
};

/// Returns the cut of a search that ends at an edge or its first corner, or nothing if the edge is not right of the search.
/// The edge does not end at the height of the search, unless it is horizontal.
std::optional<HoleCut> cutAt(const Search& search, const Edge& edge) {
    const Point2D start = search.start;
    const auto [minX, maxX] = std::minmax(edge.from.x, edge.to.x);
    HoleCut cut{search.cut.hole, search.cut.corner, edge.ring, edge.number, false, start};
    if (edge.from.y == start.y) {
        // A hole that touches a horizontal edge is joined without a cut: a cut along the edge would have no inside.
        if (edge.to.y == start.y && minX < start.x && start.x < maxX) {
            return cut;
        }
        cut.atCorner = true;
        cut.end = edge.from;
        return edge.from.x >= start.x ? std::optional(cut) : std::nullopt;
    }
    if (maxX < start.x) {
        return std::nullopt;
    }
    // A point left of an upward edge is left of the crossing.
    const int side = sideOf(edge.from, edge.to, start) * (edge.from.y < edge.to.y ? 1 : -1);
    if (side > 0) {
        // The end is where the containment test finds the edge: that test uses the crossing only between the ends of the
        // edge. Rounding may not put it left of the start.
        cut.end.x = std::max(start.x, std::min(maxX, vadelclip::crossingX(edge.from, edge.to, start.y)));
    }
    return side >= 0 ? std::optional(cut) : std::nullopt;
}

/// Returns an x that is not left of the edge at this height.
double rightOf(const Edge& edge, double y) {
    const double maxX = std::max(edge.from.x, edge.to.x);
    if (edge.from.y == y) {
        return edge.to.y == y ? maxX : edge.from.x;
    }
    const double rounding = 0x1p-45 * std::max(std::abs(edge.from.x), std::abs(edge.to.x));
    const double crossing = vadelclip::crossingX(edge.from, edge.to, y) + rounding;
    return crossing < maxX ? crossing : maxX; // the crossing may have overflowed
}

/// Offers an edge to the nearest search left of it. Searches further left meet the hole of that search first. Skips
/// searches of the hole that has the edge, and of holes that are joined before that hole.
void offerAt(Height& height, const std::vector<std::size_t>& ranks, const Edge& edge) {
    const auto after = std::upper_bound(height.searches.begin(), height.searches.end(), rightOf(edge, height.y),
                                        [](double x, const Search& search) { return x < search.start.x; });
    std::optional<double> nearest;
    for (auto search = std::make_reverse_iterator(after);
         search != height.searches.rend() && (!nearest || *nearest == search->start.x); ++search) {
        if (search->rank <= ranks[edge.ring]) {
            continue;
        }
        const std::optional<HoleCut> cut = cutAt(*search, edge);
        if (cut) {
            offer(*search, ranks, *cut);
            nearest = search->start.x;
        }
    }
}

void offerToAll(Searches& searches, const Edge& edge) {
    const auto [low, high] = std::minmax(edge.from.y, edge.to.y);
    auto height = std::lower_bound(searches.heights.begin(), searches.heights.end(), low,
                                   [](const Height& each, double y) { return each.y < y; });
    for (; height != searches.heights.end() && height->y <= high; ++height) {
        // The last corner belongs to the next edge.
        if (edge.to.y != height->y || edge.from.y == edge.to.y) {
            offerAt(*height, searches.ranks, edge);
        }
    }
}

} // namespace

std::optional<std::vector<HoleCut>> findCuts(const std::vector<Ring>& rings) {
    Searches searches = searchesOf(rings);
    for (std::size_t ring = 0; ring < rings.size(); ++ring) {
        const Ring& corners = rings[ring];
        for (std::size_t i = 0; i < corners.size(); ++i) {
            offerToAll(searches, {ring, i, corners[i], corners[(i + 1) % corners.size()]});
        }
    }
    std::vector<HoleCut> cuts(rings.size() - 1);
    for (const Height& height : searches.heights) {
        for (const Search& search : height.searches) {
            if (search.cut.ring == noRing) {
                return std::nullopt;
            }
            cuts[search.rank - 1] = search.cut;
        }
    }
    return cuts;
}

} // namespace vadelclip_gdal
