/// Which rows get columns, and how many. No answer depends on it, but the work for each point does: docs/performance.md.
#include "boundary/index/ring_rows_builder.hpp"

#include "support/boundary_support.hpp"
#include "support/toothed_outline.hpp"

#include <gtest/gtest.h>

namespace vadelclip {

namespace {

/// The same, upright, each side with a bump to the right at a height of 5 to 6.
Outline bumpedTeeth(int count, double bump) {
    Outline ring;
    for (int tooth = 0; tooth < count; ++tooth) {
        const double x = 2.0 * tooth;
        ring.insert(ring.end(), {{x, 0.0}, {x, 5.0}, {x + bump, 5.5}, {x, 6.0}, {x, 16.0}});
        ring.insert(ring.end(),
                    {{x + 1.0, 16.0}, {x + 1.0, 6.0}, {x + 1.0 + bump, 5.5}, {x + 1.0, 5.0}, {x + 1.0, 0.0}});
    }
    return ring;
}

/// The number of columns at this height, 0 for a row without.
std::uint32_t columnsAt(const Outline& ring, double y) {
    RingRows all;
    const RingInRows cut = RingRowsBuilder(all, 16.0).add(ring, 0.0).value();
    const ChainList row = all.rows[cut.firstRow + cut.rows.cellOf(y)];
    return (row.countAndFlags & ChainList::hasColumns) == 0 ? 0 : all.columns[row.first].cells.count();
}

} // namespace

TEST(RingRowsBuilderColumns, areForRowsOfMoreThanEightChains) {
    EXPECT_EQ(columnsAt(teeth(4, 0.0), 6.0), 0U);
    EXPECT_EQ(columnsAt(teeth(5, 0.0), 6.0), 10U);
    EXPECT_EQ(columnsAt(teeth(6, 0.0), 6.0), 12U);
}

TEST(RingRowsBuilderColumns, areHalvedUntilTheyListNoMoreThanFourEntriesForEachChain) {
    for (const auto& [lean, columns] :
         {std::pair{0.0, 200U}, {8.0, 200U}, {11.0, 200U}, {14.0, 100U}, {22.0, 100U}, {28.0, 50U}}) {
        EXPECT_EQ(columnsAt(teeth(100, lean), 6.0), columns) << lean;
    }
}

TEST(RingRowsBuilderColumns, areLeftOutWhereTheyWouldListMoreThanHalfOfAllChains) {
    for (const auto& [bump, columns] :
         {std::pair{0.0, 10U}, {1.0, 10U}, {2.0, 10U}, {3.0, 10U}, {4.0, 10U}, {5.0, 0U}, {9.0, 0U}, {40.0, 0U}}) {
        EXPECT_EQ(columnsAt(bumpedTeeth(5, bump), 5.5), columns) << bump;
        EXPECT_EQ(columnsAt(bumpedTeeth(5, bump), 12.0), 10U) << bump;
    }
}

TEST(RingRowsBuilderColumns, listEachChainOnceWhereChainsAreUpright) {
    RingRows all;
    const RingInRows cut = RingRowsBuilder(all, 16.0).add(teeth(5, 0.0), 0.0).value();
    const ChainColumns& columns = all.columns[all.rows[cut.firstRow + 1].first];
    for (std::uint32_t column = 0; column < 10; ++column) {
        const ChainList list = all.columnLists[columns.firstList + column];
        EXPECT_EQ(list.count(), 1U) << column;
        EXPECT_EQ(all.chains[list.first].minX, static_cast<float>(column));
        EXPECT_EQ(list.countAndFlags % 4, column % 2 == 0 ? ChainList::oddRight : 0U) << column;
    }
}

} // namespace vadelclip
