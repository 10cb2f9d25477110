// Compares the containment test with a second, independent implementation, on random rings and on points where rounding
// and vertices at the point's height decide.
#include "boundary/contains_point.hpp"

#include "support/boundary_support.hpp"
#include "support/containment_oracle_support.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

namespace vadelclip {

namespace {

/// Random choices, the same ones with every standard library.
class Dice {
public:
    explicit Dice(std::uint64_t seed) : engine(seed) {}

    int below(int count) { return static_cast<int>(engine() % static_cast<std::uint64_t>(count)); }
    int between(int least, int greatest) { return least + below(greatest - least + 1); }
    bool oneIn(int count) { return below(count) == 0; }
    double unit() { return static_cast<double>(engine() >> 11) * 0x1p-53; }

private:
    std::mt19937_64 engine;
};

/// Where coordinates come from.
struct Terrain {
    double scale;
    double offset;
    int width; ///< Whole steps of the grid; 0 for any number between 0 and 1.

    double coordinate(Dice& dice) const {
        return offset + scale * (width == 0 ? dice.unit() : static_cast<double>(dice.below(width)));
    }
};

constexpr Terrain terrains[] = {
    {1.0, 0.0, 4},         // nearly every point shares its height with a vertex
    {1.0, -3.0, 7},        //
    {0.1, 0.0, 12},        // decimals that are no binary fractions
    {0.01, 6372412.3, 60}, // metres and centimetres of a projected frame
    {1e-7, 0.0, 3},        // around the shortest segment
    {1.0, 0.0, 0},         // all bits of the numbers in use
    {1e-300, 0.0, 5},      // products underflow
    {0x1p-1074, 0.0, 6},   //
    {1e150, 0.0, 5},       // products come near to overflowing
    {1e200, -2e200, 5},    // products overflow
};

Outline randomOutline(Dice& dice, const Terrain& terrain, int cornerCount) {
    const bool flat = dice.oneIn(12);
    const double height = terrain.coordinate(dice);
    Outline outline;
    for (int corner = 0; corner < cornerCount; ++corner) {
        if (corner > 0 && dice.oneIn(8)) {
            outline.push_back(outline[static_cast<std::size_t>(dice.below(corner))]); // a corner once more
        } else {
            const double x = terrain.coordinate(dice);
            outline.push_back({x, flat || dice.oneIn(4) ? height : terrain.coordinate(dice)});
        }
    }
    return outline;
}

BoundaryPolygon randomPolygon(Dice& dice, const Terrain& terrain, std::vector<BoundaryVertex>& table, int depth) {
    const int cornerCount = dice.oneIn(6) ? dice.between(1, 2) : dice.between(3, 9);
    const Closing closing = allClosings[dice.below(3)];
    BoundaryPolygon polygon = makePolygon(table, randomOutline(dice, terrain, cornerCount), closing);
    const int childCount = depth > 0 && dice.oneIn(4) ? dice.between(1, 3) : 0;
    for (int child = 0; child < childCount; ++child) {
        polygon.childPolygons.push_back(randomPolygon(dice, terrain, table, depth - 1));
    }
    return polygon;
}

double neighbour(double value, int steps) {
    const double target = steps < 0 ? -std::numeric_limits<double>::max() : std::numeric_limits<double>::max();
    for (int step = 0; step < std::abs(steps); ++step) {
        value = std::nextafter(value, target);
    }
    return value;
}

const BoundaryVertex& randomVertex(Dice& dice, const std::vector<BoundaryVertex>& table) {
    return table[static_cast<std::size_t>(dice.below(static_cast<int>(table.size())))];
}

/// Returns a difficult point: at a vertex, at the height of a vertex, on an edge, or on a double next to one of these.
Point2D randomPoint(Dice& dice, const Terrain& terrain, const std::vector<BoundaryVertex>& table) {
    const BoundaryVertex& a = randomVertex(dice, table);
    const BoundaryVertex& b = &a == &table.back() ? table.front() : *(&a + 1);
    Point2D point{terrain.coordinate(dice), terrain.coordinate(dice)};
    switch (dice.below(5)) {
    case 0:
        point = {a.x, a.y};
        break;
    case 1:
        point = {randomVertex(dice, table).x, a.y};
        break;
    case 2:
        point.y = a.y;
        break;
    case 3: {
        const double part = dice.between(0, 8) / 8.0;
        point = {a.x + (b.x - a.x) * part, a.y + (b.y - a.y) * part};
        break;
    }
    default:
        break;
    }
    if (dice.oneIn(3)) {
        point.x = neighbour(point.x, dice.between(-3, 3));
    }
    if (dice.oneIn(6)) {
        point.y = neighbour(point.y, dice.between(-1, 1));
    }
    return point;
}

struct Tally {
    int inside = 0;
    int outside = 0;
    oracle::Ways ways{};
};

void compareOnePolygon(Dice& dice, const Terrain& terrain, Tally& tally) {
    std::vector<BoundaryVertex> table;
    BoundaryPolygon polygon = randomPolygon(dice, terrain, table, 2);
    const BoundaryPolygon original = polygon;
    for (int question = 0; question < 10; ++question) {
        const Point2D point = randomPoint(dice, terrain, table);
        const bool expected = oracle::contains(original, point, table, tally.ways);
        ASSERT_EQ(expected, containsPoint(polygon, point, table)) << asText(point) << "\n"
                                                                  << asText(BoundarySet{{original}, table});
        ++(expected ? tally.inside : tally.outside);
    }
}

} // namespace

TEST(ContainsPointAtRandom, agreesWithIndependentImplementation) {
    Dice dice(20240229);
    Tally tally;
    for (const Terrain& terrain : terrains) {
        for (int polygon = 0; polygon < 3000 && !HasFatalFailure(); ++polygon) {
            compareOnePolygon(dice, terrain, tally);
        }
    }
    // The comparison is useful only if it has taken every way.
    EXPECT_EQ(300000, tally.inside + tally.outside);
    EXPECT_GT(tally.inside, 75000);
    EXPECT_GT(tally.outside, 75000);
    for (std::size_t way = 0; way < oracle::wayCount; ++way) {
        EXPECT_GT(tally.ways[way], 150u) << "way " << way;
    }
}

} // namespace vadelclip
