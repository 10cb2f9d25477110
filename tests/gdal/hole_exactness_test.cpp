// Joined rings against exact rational arithmetic, and against their rings one by one. VADELCLIP_HOLE_POINTS raises the number
// of points.
#include "gdal/hole_join.hpp"
#include "gdal/hole_split.hpp"

#include "boundary/contains_point.hpp"
#include "boundary/ring_walk.hpp"
#include "random_holes_support.hpp"
#include "support/boundary_support.hpp"
#include "support/workload.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>

namespace vadelclip_gdal {

namespace {

using vadelclip::BoundarySet;
using vadelclip::containsPoint;
using vadelclip::RingWalk;

int pointCount(int usual) {
    const char* const wanted = std::getenv("VADELCLIP_HOLE_POINTS");
    return wanted != nullptr ? std::atoi(wanted) : vadelclip::workload(usual);
}

/// The polygons as in a boundary file.
BoundarySet joinedSet(const std::vector<RingsOfPolygon>& polygons) {
    std::vector<Ring> rings;
    for (const RingsOfPolygon& polygon : polygons) {
        rings.push_back(joinHoles(polygon).value());
    }
    return vadelclip::setOf(rings);
}

bool isKept(BoundarySet& set, Point2D point) {
    return std::any_of(set.polygons.begin(), set.polygons.end(), [&](vadelclip::BoundaryPolygon& polygon) {
        return containsPoint(polygon, point, set.vertices);
    });
}

double neighbour(Dice& dice, double value) {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    const int steps = dice.between(-2, 2);
    for (int i = 0; i < std::abs(steps); ++i) {
        value = std::nextafter(value, steps > 0 ? infinity : -infinity);
    }
    return value;
}

/// A point where rounding decides: at or next to a corner, a cut, an edge, or the height of a corner.
Point2D awkwardPoint(Dice& dice, const Ring& joined) {
    const std::size_t i = static_cast<std::size_t>(dice.below(static_cast<int>(joined.size())));
    const Point2D from = joined[i];
    const Point2D to = joined[(i + 1) % joined.size()];
    const Point2D other = joined[static_cast<std::size_t>(dice.below(static_cast<int>(joined.size())))];
    const double share = dice.oneIn(2) ? dice.unit() : dice.below(9) / 8.0;
    Point2D point = from;
    switch (dice.below(5)) {
    case 0:
        break;
    case 1: // on the line between two corners that follow each other, cuts included
        point = {from.x + share * (to.x - from.x), from.y + share * (to.y - from.y)};
        break;
    case 2: // exactly where the walk computes the edge
        point.y = from.y + share * (to.y - from.y);
        point.x = from.y == to.y ? from.x + share * (to.x - from.x) : vadelclip::crossingX(from, to, point.y);
        break;
    case 3: // at the height of a corner
        point.x = other.x;
        break;
    default: // anywhere
        point = {from.x + share * (other.x - from.x), from.y + dice.unit() * (other.y - from.y)};
        break;
    }
    return dice.oneIn(3) ? point
                         : Point2D{neighbour(dice, point.x), dice.oneIn(2) ? point.y : neighbour(dice, point.y)};
}

/// Calls a function with the polygons and points of them, until there have been as many points as wanted.
template <typename Check>
void forManyPoints(std::uint64_t seed, int count, const Check& check) {
    Dice dice(seed);
    while (count > 0) {
        const std::vector<RingsOfPolygon> polygons = randomPolygons(dice, 20);
        BoundarySet set = joinedSet(polygons);
        for (int i = 0; i < 300; ++i, --count) {
            const std::size_t polygon = static_cast<std::size_t>(dice.below(static_cast<int>(polygons.size())));
            check(polygons, set, awkwardPoint(dice, joinHoles(polygons[polygon]).value()));
            if (testing::Test::HasFailure()) {
                return;
            }
        }
    }
}

/// The crossings of one ring, or the outline.
struct Crossings {
    bool onOutline = false;
    bool odd = false;
};

void addCrossings(Crossings& crossings, const Ring& ring, Point2D point) {
    std::size_t start = 0;
    while (ring[start].y == point.y) {
        ++start;
    }
    RingWalk walk(point, ring[start].x, ring[start].y);
    for (std::size_t i = 1; i <= ring.size() && !crossings.onOutline; ++i) {
        const Point2D corner = ring[(start + i) % ring.size()];
        crossings.onOutline = walk.visit(corner.x, corner.y);
    }
    crossings.odd ^= walk.odd;
}

/// Returns true if a horizontal edge of the joined ring that no separate ring has, a cut, goes through the point.
bool isOnCut(const Ring& joined, const std::vector<Ring>& separate, Point2D point) {
    return isOnHorizontalEdge({joined}, point) && !isOnHorizontalEdge(separate, point);
}

/// Returns the corners of a ring in the order of another one that has more, or fewer if it is not part of that.
std::size_t cornersInOrder(const Ring& part, const Ring& whole) {
    std::size_t best = 0;
    for (std::size_t start = 0; start < whole.size(); ++start) {
        std::size_t found = 0;
        for (std::size_t i = 0; i < whole.size() && found < part.size(); ++i) {
            found += samePoint(whole[(start + i) % whole.size()], part[found]) ? 1U : 0U;
        }
        best = std::max(best, found);
    }
    return best;
}

bool isPartOf(const Ring& part, const Ring& whole) {
    return cornersInOrder(part, whole) == part.size();
}

} // namespace

TEST(HoleExactness, keepsWhatRationalArithmeticFindsInside) {
    int roundedPoints = 0;
    int pointsAboveHorizontalEdges = 0;
    const int count = pointCount(15000);
    forManyPoints(1, count, [&](const std::vector<RingsOfPolygon>& polygons, BoundarySet& set, Point2D point) {
        bool expected = false;
        bool isRounded = false;
        bool isOnHorizontal = false;
        for (const RingsOfPolygon& polygon : polygons) {
            expected |= exactPlace(allRings(polygon), point) != Place::outside;
        }
        const bool kept = isKept(set, point);
        if (kept == expected) {
            return;
        }
        for (const RingsOfPolygon& polygon : polygons) {
            isRounded |= isWithinRoundingOfEdge(allRings(polygon), point);
            isOnHorizontal |= isOnHorizontalEdge(allRings(polygon), point);
        }
        // The two exceptions that any boundary file has: docs/geometry.md.
        roundedPoints += isRounded ? 1 : 0;
        pointsAboveHorizontalEdges += !isRounded && isOnHorizontal && !kept ? 1 : 0;
        EXPECT_TRUE(isRounded || (isOnHorizontal && !kept)) << std::hexfloat << point.x << ", " << point.y;
    });
    RecordProperty("points", count);
    RecordProperty("withinRoundingOfAnEdge", roundedPoints);
    RecordProperty("onAHorizontalEdge", pointsAboveHorizontalEdges);
}

TEST(HoleExactness, decidesAsTheSeparateRingsDo) {
    forManyPoints(2, pointCount(6000), [](const std::vector<RingsOfPolygon>& polygons, BoundarySet&, Point2D point) {
        for (const RingsOfPolygon& polygon : polygons) {
            const Ring joined = joinHoles(polygon).value();
            const std::vector<Ring> separate = allRings(splitHoles(joined));
            ASSERT_EQ(polygon.holes.size() + 1, separate.size());
            Crossings crossings;
            for (const Ring& ring : separate) {
                addCrossings(crossings, ring, point);
            }
            BoundarySet set = vadelclip::setOf({joined});
            const bool expected = crossings.onOutline || crossings.odd || isOnCut(joined, separate, point);
            ASSERT_EQ(expected, containsPoint(set.polygons[0], point, set.vertices))
                << std::hexfloat << point.x << ", " << point.y;
        }
    });
}

TEST(HoleExactness, splittingUndoesJoining) {
    Dice dice(3);
    for (int i = 0; i < vadelclip::workload(60); ++i) {
        for (const RingsOfPolygon& polygon : randomPolygons(dice, 20)) {
            const RingsOfPolygon read = splitHoles(joinHoles(polygon).value());
            ASSERT_EQ(polygon.holes.size(), read.holes.size()) << vadelclip::asText(joinHoles(polygon).value());
            ASSERT_TRUE(isPartOf(polygon.outer, read.outer)) << vadelclip::asText(read.outer);
            std::size_t inserted = read.outer.size() - polygon.outer.size();
            for (const Ring& hole : polygon.holes) {
                const auto same = std::find_if(read.holes.begin(), read.holes.end(),
                                               [&hole](const Ring& other) { return isPartOf(hole, other); });
                ASSERT_NE(read.holes.end(), same) << vadelclip::asText(hole);
                inserted += same->size() - hole.size();
            }
            EXPECT_LE(inserted, polygon.holes.size());
        }
    }
}

} // namespace vadelclip_gdal
