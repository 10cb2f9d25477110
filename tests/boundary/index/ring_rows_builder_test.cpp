/// How rings are cut. No answer depends on it, but the work for each point and
/// the memory do: docs/performance.md.
#include "boundary/index/ring_rows_builder.hpp"

#include "support/boundary_support.hpp"
#include "support/toothed_outline.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace vadelclip {

namespace {

constexpr float infiniteFloat = std::numeric_limits<float>::infinity();

struct Cut {
    RingRows all;
    RingInRows ring;
};

Cut cut(const Outline& ring, double fewestRows = 16.0) {
    Cut result{};
    result.ring = RingRowsBuilder(result.all, fewestRows).add(ring, 0.0).value();
    return result;
}

std::uint32_t rowCount(const Outline& ring, double fewestRows = 16.0) {
    return cut(ring, fewestRows).ring.rows.count();
}

/// The chains of a row without columns.
std::vector<RingChain> chainsOfRow(const Cut& cut, std::uint32_t row) {
    const ChainList& list = cut.all.rows[cut.ring.firstRow + row];
    EXPECT_EQ(list.countAndFlags % 4, 0U) << "it has columns";
    return {cut.all.chains.begin() + list.first, cut.all.chains.begin() + list.first + list.count()};
}

const Outline square{{0.0, 0.0}, {16.0, 0.0}, {16.0, 16.0}, {0.0, 16.0}};

/// As many stacks of vertices side by side, up and down in turn: each height
/// meets one edge of each.
Outline stacks(int count, int verticesEach) {
    Outline ring;
    for (int stack = 0; stack < count; ++stack) {
        for (int i = 0; i < verticesEach; ++i) {
            ring.push_back({stack * 1.0, 1000.0 + (stack % 2 == 0 ? i : verticesEach - 1 - i)});
        }
    }
    return ring;
}

/// To and fro between two corners: every edge meets every height and every x.
Outline toAndFro(int edges) {
    Outline ring;
    for (int i = 0; i < edges; ++i) {
        ring.push_back({i % 2 * 100.0 - 50.0, i % 2 * 100.0 - 50.0});
    }
    return ring;
}

/// To and fro over the whole width, while y goes up and down in steps of a part
/// of the height.
Outline climbing(int edges, int steps) {
    Outline ring;
    for (int i = 0; i < edges; ++i) {
        const int step = i % (2 * steps);
        ring.push_back({i % 2 * 100.0, (step <= steps ? step : 2 * steps - step) * 1.0});
    }
    return ring;
}

} // namespace

TEST(RingRowsBuilder, cutsHalfAsManyRowsAsThereAreVerticesWithinItsLimits) {
    EXPECT_EQ(rowCount(square, 16.0), 16U);
    EXPECT_EQ(rowCount(square, 128.0), 128U);
    EXPECT_EQ(rowCount({{0.0, 0.0}, {1e-6, 0.0}, {1e-6, 1e-6}, {0.0, 1e-6}}, 16.0), 16U);
    EXPECT_EQ(rowCount(stacks(2, 15), 16.0), 16U);
    EXPECT_EQ(rowCount(stacks(2, 17), 16.0), 17U);
    EXPECT_EQ(rowCount(stacks(2, 500), 128.0), 500U);
    EXPECT_EQ(rowCount(stacks(2, 8191)), 8191U);
    EXPECT_EQ(rowCount(stacks(2, 8193)), 8192U);
    EXPECT_EQ(rowCount(stacks(2, 20000)), 8192U);
}

TEST(RingRowsBuilder, cutsTheWholeHeightWhateverTheFirstVertex) {
    for (std::size_t first = 0; first < square.size(); ++first) {
        const UniformCells rows = cut(startingAt(square, first)).ring.rows;
        EXPECT_EQ(rows.origin, 0.0) << first;
        EXPECT_EQ(rows.count(), 16U) << first;
        EXPECT_EQ(rows.cellOf(15.5), 15U) << first;
    }
}

TEST(RingRowsBuilder, cutsFewerRowsWhereChainsWouldBeMoreThanTwoForEachVertex) {
    EXPECT_EQ(rowCount(stacks(4, 200)), 400U);
    EXPECT_EQ(rowCount(stacks(6, 200)), 400U);
    EXPECT_EQ(rowCount(stacks(8, 200)), 400U);
    EXPECT_EQ(rowCount(stacks(8, 4)), 8U);
    EXPECT_EQ(rowCount(teeth(100, 0.0)), 4U);
    EXPECT_EQ(rowCount(toAndFro(14)), 2U);
}

TEST(RingRowsBuilder, mergesChainsWhereManyEdgesMeetEveryHeightAndEveryX) {
    struct Example {
        Outline ring;
        std::uint32_t rows;
        std::uint32_t longestChain;
    };
    const Example examples[] = {
        {toAndFro(14), 2, 0},       {toAndFro(16), 4, 2},          {toAndFro(400), 20, 10},
        {toAndFro(40000), 128, 64}, {climbing(3200, 20), 126, 12},
    };
    for (const Example& example : examples) {
        const Cut result = cut(example.ring);
        EXPECT_EQ(result.ring.rows.count(), example.rows) << example.ring.size();
        // The outermost rows hold vertices, where chains do not end.
        std::uint32_t longest = 0;
        for (std::uint32_t row = 1; row + 1 < example.rows; ++row) {
            for (const RingChain& chain : chainsOfRow(result, row)) {
                longest = std::max(longest, chain.edgeCount());
            }
        }
        EXPECT_EQ(longest, example.longestChain) << example.ring.size();
    }
    EXPECT_EQ(chainsOfRow(cut(toAndFro(400)), 10).size(), 40U);
}

TEST(RingRowsBuilder, mergesNothingInTheRingBehindOneThatIsMerged) {
    Cut result{};
    RingRowsBuilder builder(result.all, 16.0);
    EXPECT_EQ(builder.add(toAndFro(400), 0.0).value().rows.count(), 20U);
    result.ring = builder.add(teeth(4, 0.0), 0.0).value();
    EXPECT_EQ(chainsOfRow(result, 1).size(), 8U);
}

TEST(RingRowsBuilder, givesAChainTheExactRangeOfItsEdgeInTheRow) {
    const Cut result = cut({{0.0, 0.0}, {16.0, 16.0}, {0.0, 16.0}});
    for (std::uint32_t row = 1; row < 15; ++row) {
        std::vector<RingChain> chains = chainsOfRow(result, row);
        ASSERT_EQ(chains.size(), 2U);
        std::ranges::sort(chains, {}, &RingChain::minX);
        EXPECT_EQ(chains[0].minX, 0.0F);
        EXPECT_EQ(chains[0].maxX, 0.0F);
        EXPECT_EQ(chains[1].minX, static_cast<float>(row));
        EXPECT_EQ(chains[1].maxX, static_cast<float>(row + 1));
    }
}

TEST(RingRowsBuilder, roundsRangesOutwardsToTheNextFloat) {
    for (const double x : {0.1, -0.1, 1e-3, 123456.789, -1e-50, 1e-50}) {
        const Cut result = cut({{x, 0.0}, {1e6, 8.0}, {x, 16.0}});
        const RingChain chain = chainsOfRow(result, 3)[1];
        EXPECT_LE(static_cast<double>(chain.minX), x);
        EXPECT_GE(static_cast<double>(chain.maxX), x);
        EXPECT_EQ(std::nextafter(chain.minX, infiniteFloat), chain.maxX) << x;
    }
    const RingChain exact = chainsOfRow(cut({{0.5, 0.0}, {1e6, 8.0}, {0.5, 16.0}}), 3)[1];
    EXPECT_EQ(exact.minX, 0.5F);
    EXPECT_EQ(exact.maxX, 0.5F);
    const float largest = std::numeric_limits<float>::max();
    const RingChain right = chainsOfRow(cut({{1e300, 0.0}, {0.0, 8.0}, {1e300, 16.0}}), 3)[1];
    EXPECT_EQ(right.minX, largest);
    EXPECT_EQ(right.maxX, infiniteFloat);
    const RingChain left = chainsOfRow(cut({{-1e300, 0.0}, {0.0, 8.0}, {-1e300, 16.0}}), 3)[1];
    EXPECT_EQ(left.minX, -infiniteFloat);
    EXPECT_EQ(left.maxX, -largest);
}

} // namespace vadelclip
