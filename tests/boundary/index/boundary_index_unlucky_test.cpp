/// Compares the index with `containsPoint` on boundaries that are hard for an index.

#include "boundary/index/boundary_index.hpp"

#include "support/boundary_support.hpp"
#include "support/index_comparison_support.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

namespace vadelclip {

TEST(BoundaryIndexUnlucky, agreesOnManyPolygons) {
    Random random(7);
    for (const double spread : {1.0, 50.0, 3000.0}) {
        std::vector<Outline> rings;
        for (int i = 0; i < 3000; ++i) {
            const Point2D centre{uniform(random, -spread, spread), uniform(random, -spread, spread)};
            rings.push_back(star(random, 3 + pick(random, 10), centre, 0.3, 1.0));
        }
        rings.push_back(star(random, 50, {1e6, 1e6}, 1.0, 2.0));
        rings.push_back(star(random, 50, {0.0, 0.0}, 1.0, spread));
        compareIndex(setOf(rings), random, rounds(20000));
    }
}

TEST(BoundaryIndexUnlucky, agreesNextToStrayVertices) {
    Random random(11);
    for (int round = 0; round < rounds(300); ++round) {
        // All edges except two are in one cell of the first grid, and in grids inside this cell.
        for (const Point2D stray : {Point2D{1e6, 1e6}, {-1e9, 0.0}, {0.0, 1e7}, {1e300, -1e300}, {1.7e308, 1.7e308}}) {
            Outline ring = randomWalk(random, 100 + pick(random, 900), pick(random, 2) * 3);
            ring.insert(ring.begin() + static_cast<std::ptrdiff_t>(pick(random, ring.size())), stray);
            compareIndex(setOf({ring}), random, 300);
        }
    }
}

TEST(BoundaryIndexUnlucky, agreesOnClustersOfAllScales) {
    Random random(12);
    for (int round = 0; round < rounds(100); ++round) {
        std::vector<Outline> rings;
        Outline all;
        for (const double scale : {1.0, 1e-3, 1e-6}) {
            const Outline ring =
                moved(randomWalk(random, 200 + pick(random, 200), pick(random, 2) * 3), scale, {1.0, 2.0});
            all.insert(all.end(), ring.begin(), ring.end());
            rings.push_back(ring);
        }
        compareIndex(setOf(rings), random, 1000);
        compareIndex(setOf({all}), random, 1000);
    }
}

TEST(BoundaryIndexUnlucky, agreesOnStripsNestsAndJumps) {
    Random random(13);
    for (int round = 0; round < 4; ++round) {
        std::vector<Outline> strips;
        std::vector<Outline> nest;
        Outline jumping;
        for (int i = 1; i <= 300; ++i) {
            const double left = uniform(random, 0.0, 1000.0);
            const double right = uniform(random, 0.0, 1000.0);
            strips.push_back({{0.0, left}, {1000.0, right}, {1000.0, right + 0.5}, {0.0, left + 0.5}});
            nest.push_back(star(random, 64, {0.0, 0.0}, i - 0.3, i + 0.3));
            jumping.push_back({i % 2 * 900.0 + uniform(random, 0.0, 100.0), i * 3.0});
        }
        compareIndex(setOf(strips), random, rounds(20000));
        compareIndex(setOf(nest), random, rounds(10000));
        compareIndex(setOf({jumping}), random, rounds(20000));
    }
}

TEST(BoundaryIndexUnlucky, agreesOnTanglesTooLargeForMemory) {
    Random random(16);
    compareIndex(setOf({randomRing(random, 300000, 1.0)}), random, rounds(400));
}

TEST(BoundaryIndexUnlucky, agreesOnManyThinPolygons) {
    Random random(14);
    for (const double scale : {1.0, 1e-7, 1e6, 1e300, 1e-310}) {
        for (int round = 0; round < rounds(60); ++round) {
            std::vector<Outline> outlines;
            for (std::size_t i = 0; i < 100; ++i) {
                Outline segment = pick(random, 2) == 0 ? gridRing(random, 2, 12, scale) : randomRing(random, 2, scale);
                if (pick(random, 3) == 0) {
                    segment.push_back({uniform(random, -1.0, 1.0) * scale, segment[1].y});
                    segment[0].y = segment[1].y;
                }
                outlines.push_back(segment);
            }
            compareIndex(setOf(outlines), random, 1000);
        }
    }
}

// With all rounds these have the sizes at which a simpler index was slow or large.
TEST(BoundaryIndexUnlucky, agreesOnLargeBoundaries) {
    Random random(17);
    const int size = rounds(1000000);
    Outline stray = moved(randomWalk(random, static_cast<std::size_t>(size / 10), 0), 1.0, {400000.0, 5650000.0});
    stray.front() = {0.0, 0.0};
    Outline jumping;
    Outline sideways;
    for (int i = 0; i < size; ++i) {
        const double side = i % 2 * 900.0 + uniform(random, 0.0, 100.0);
        jumping.push_back({side, uniform(random, 0.0, 1000.0)});
        sideways.push_back({i * 1.0, side});
    }
    std::vector<Outline> strips;
    std::vector<Outline> nest;
    for (int i = 1; i <= size / 500; ++i) {
        const double left = uniform(random, 0.0, 1000.0);
        const double right = uniform(random, 0.0, 1000.0);
        strips.push_back({{0.0, left}, {1000.0, right}, {1000.0, right + 0.1}, {0.0, left + 0.1}});
        nest.push_back(star(random, 64, {0.0, 0.0}, i, i));
    }
    std::vector<Outline> lattice;
    for (int i = 0; i < size / 10; ++i) {
        lattice.push_back(star(random, 20, {i % 300 * 3.0, i / 300 * 3.0}, 0.5, 1.5));
    }
    compareIndex(setOf({stray}), random, rounds(2000));
    compareIndex(setOf({jumping}), random, rounds(400));
    compareIndex(setOf({sideways}), random, rounds(400));
    compareIndex(setOf(strips), random, rounds(20000));
    compareIndex(setOf(nest), random, rounds(20000));
    compareIndex(setOf(lattice), random, rounds(2000));
}

} // namespace vadelclip
