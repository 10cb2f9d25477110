/// Measures containment per point: the index over outlines of all sizes and kinds, and over many polygons, and the plain
/// test for comparison. Points are random in the square around the outline, so at least about half of them are inside.

#include "boundary/contains_point.hpp"
#include "boundary/index/boundary_index.hpp"
#include "outlines.hpp"

#include <benchmark/benchmark.h>

namespace vadelclip {

namespace {

constexpr double side = 1000.0;

/// A power of two, so that wrapping around costs almost nothing.
constexpr std::size_t pointCount = 1 << 20;
constexpr Point2D middle{side / 2.0, side / 2.0};

void askIndex(benchmark::State& state, BoundarySet set, const std::vector<Point2D>& points) {
    const BoundaryIndex index(set);
    std::size_t next = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(index.anyContains(points[next]));
        next = (next + 1) & (pointCount - 1);
    }
}

void smooth(benchmark::State& state) {
    askIndex(state, makeBoundarySet({smoothRing(static_cast<std::size_t>(state.range(0)), middle, side / 2.0)}),
             randomPoints(pointCount, side));
}

void jagged(benchmark::State& state) {
    askIndex(state, makeBoundarySet({jaggedRing(static_cast<std::size_t>(state.range(0)), middle, side / 2.0, 5)}),
             randomPoints(pointCount, side));
}

void spiky(benchmark::State& state) {
    askIndex(state, makeBoundarySet({spikyRing(static_cast<std::size_t>(state.range(0)), middle, side / 2.0, 5)}),
             randomPoints(pointCount, side));
}

void comb(benchmark::State& state) {
    askIndex(state, makeBoundarySet({combRing(static_cast<std::size_t>(state.range(0)), side)}),
             randomPoints(pointCount, side));
}

void polygons(benchmark::State& state) {
    askIndex(state, makeLattice(static_cast<std::size_t>(state.range(0)), side), randomPoints(pointCount, side));
}

/// The same with points row by row, as a terrain model lists them.
void polygonsInRows(benchmark::State& state) {
    askIndex(state, makeLattice(static_cast<std::size_t>(state.range(0)), side), gridPoints(pointCount, side));
}

/// A large ring far from the origin, without and with one vertex that is not where it should be.
void far(benchmark::State& state) {
    const Point2D corner{400000.0, 5650000.0};
    askIndex(state, makeBoundarySet({farRing(100000, side, corner, state.range(0) != 0)}),
             randomPoints(pointCount, side, corner));
}

void strips(benchmark::State& state) {
    askIndex(state, makeStrips(static_cast<std::size_t>(state.range(0)), side), randomPoints(pointCount, side));
}

void nest(benchmark::State& state) {
    askIndex(state, makeNest(static_cast<std::size_t>(state.range(0)), side), randomPoints(pointCount, side));
}

void jumping(benchmark::State& state) {
    askIndex(state, makeBoundarySet({jumpingRing(static_cast<std::size_t>(state.range(0)), side)}),
             randomPoints(pointCount, side));
}

void plainJagged(benchmark::State& state) {
    BoundarySet set = makeBoundarySet({jaggedRing(static_cast<std::size_t>(state.range(0)), middle, side / 2.0, 5)});
    const std::vector<Point2D> points = randomPoints(pointCount, side);
    std::size_t next = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(containsPoint(set.polygons.front(), points[next], set.vertices));
        next = (next + 1) & (pointCount - 1);
    }
}

void buildJagged(benchmark::State& state) {
    BoundarySet set = makeBoundarySet({jaggedRing(static_cast<std::size_t>(state.range(0)), middle, side / 2.0, 5)});
    for (auto _ : state) {
        benchmark::DoNotOptimize(BoundaryIndex(set));
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void buildSpiky(benchmark::State& state) {
    BoundarySet set = makeBoundarySet({spikyRing(static_cast<std::size_t>(state.range(0)), middle, side / 2.0, 5)});
    for (auto _ : state) {
        benchmark::DoNotOptimize(BoundaryIndex(set));
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void buildJumping(benchmark::State& state) {
    BoundarySet set = makeBoundarySet({jumpingRing(static_cast<std::size_t>(state.range(0)), side)});
    for (auto _ : state) {
        benchmark::DoNotOptimize(BoundaryIndex(set));
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void buildPolygons(benchmark::State& state) {
    BoundarySet set = makeLattice(static_cast<std::size_t>(state.range(0)), side);
    for (auto _ : state) {
        benchmark::DoNotOptimize(BoundaryIndex(set));
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

BENCHMARK(smooth)->Arg(4)->Arg(20)->Arg(100)->Arg(1000)->Arg(10000)->Arg(100000)->Arg(1000000);
BENCHMARK(jagged)->Arg(4)->Arg(20)->Arg(100)->Arg(1000)->Arg(10000)->Arg(100000)->Arg(1000000);
BENCHMARK(spiky)->Arg(1000)->Arg(10000)->Arg(100000);
BENCHMARK(comb)->Arg(1000)->Arg(10000)->Arg(100000);
BENCHMARK(polygons)->Arg(1)->Arg(100)->Arg(2000)->Arg(10000)->Arg(100000);
BENCHMARK(polygonsInRows)->Arg(1)->Arg(100)->Arg(2000)->Arg(10000)->Arg(100000);
BENCHMARK(far)->Arg(0)->Arg(1);
BENCHMARK(strips)->Arg(2000);
BENCHMARK(nest)->Arg(2000);
BENCHMARK(jumping)->Arg(1000)->Arg(1000000);
BENCHMARK(plainJagged)->Arg(4)->Arg(20)->Arg(100)->Arg(1000);
BENCHMARK(buildJagged)->Arg(1000)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMillisecond);
BENCHMARK(buildSpiky)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(buildJumping)->Arg(1000000)->Unit(benchmark::kMillisecond);
BENCHMARK(buildPolygons)->Arg(1000)->Arg(100000)->Unit(benchmark::kMillisecond);

} // namespace

} // namespace vadelclip
