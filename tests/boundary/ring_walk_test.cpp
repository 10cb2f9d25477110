// A walk may be made in pieces, with the same result.
#include "boundary/ring_walk.hpp"

#include "support/boundary_support.hpp"

#include <gtest/gtest.h>

#include <random>

namespace vadelclip {

namespace {

struct Outcome {
    bool onOutline = false;
    bool odd = false;
};

/// Walks along corners whose last one repeats the first. The first one is not at the point's height.
Outcome walkWhole(const Outline& corners, Point2D point) {
    RingWalk walk(point, corners[0].x, corners[0].y);
    Outcome outcome;
    for (std::size_t i = 1; i < corners.size() && !outcome.onOutline; ++i) {
        outcome.onOutline = walk.visit(corners[i].x, corners[i].y);
    }
    outcome.odd = walk.odd;
    return outcome;
}

/// The same with a new walk from each corner that is not at the point's height.
Outcome walkInPieces(const Outline& corners, Point2D point) {
    Outcome outcome;
    RingWalk walk(point, corners[0].x, corners[0].y);
    for (std::size_t i = 1; i < corners.size(); ++i) {
        outcome.onOutline = walk.visit(corners[i].x, corners[i].y) || outcome.onOutline;
        if (corners[i].y != point.y) {
            outcome.odd = outcome.odd != walk.odd;
            walk = RingWalk(point, corners[i].x, corners[i].y);
        }
    }
    return outcome;
}

/// The same without the edges that neither straddle nor touch the point's height.
Outcome walkWithoutFarEdges(const Outline& corners, Point2D point) {
    Outcome outcome;
    RingWalk walk(point, corners[0].x, corners[0].y);
    for (std::size_t i = 1; i < corners.size(); ++i) {
        const bool bothAbove = corners[i - 1].y > point.y && corners[i].y > point.y;
        const bool bothBelow = corners[i - 1].y < point.y && corners[i].y < point.y;
        if (bothAbove || bothBelow) {
            outcome.odd = outcome.odd != walk.odd;
            walk = RingWalk(point, corners[i].x, corners[i].y);
        } else {
            outcome.onOutline = walk.visit(corners[i].x, corners[i].y) || outcome.onOutline;
        }
    }
    outcome.odd = outcome.odd != walk.odd;
    return outcome;
}

class RingWalkInPieces : public testing::Test {
protected:
    std::mt19937_64 engine{97};

    double coordinate() { return static_cast<double>(engine() % 5); }

    Outline randomRing(double heightToAvoid) {
        Outline ring;
        for (std::size_t corner = 0; corner < 8; ++corner) {
            ring.push_back({coordinate(), coordinate()});
        }
        if (ring[0].y == heightToAvoid) {
            ring[0].y += 1;
        }
        ring.push_back(ring[0]);
        return ring;
    }
};

} // namespace

TEST_F(RingWalkInPieces, returnsSameResultAsWholeWalk) {
    int onOutline = 0;
    for (int round = 0; round < 20000; ++round) {
        const Point2D point{coordinate(), coordinate()};
        const Outline corners = randomRing(point.y);
        const Outcome whole = walkWhole(corners, point);
        const Outcome pieces = walkInPieces(corners, point);
        const Outcome near = walkWithoutFarEdges(corners, point);
        ASSERT_EQ(whole.onOutline, pieces.onOutline) << asText(point) << " " << asText(corners);
        ASSERT_EQ(whole.onOutline, near.onOutline) << asText(point) << " " << asText(corners);
        onOutline += whole.onOutline ? 1 : 0;
        if (!whole.onOutline) {
            ASSERT_EQ(whole.odd, pieces.odd) << asText(point) << " " << asText(corners);
            ASSERT_EQ(whole.odd, near.odd) << asText(point) << " " << asText(corners);
        }
    }
    EXPECT_GT(onOutline, 5000);
    EXPECT_LT(onOutline, 15000);
}

} // namespace vadelclip
