#include "boundary/index/uniform_cells.hpp"

#include "support/special_numbers.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>

namespace vadelclip {

namespace {

struct Range {
    double minimum;
    double maximum;
};

/// Ranges where cells are easy, hard, or hardly there: around zero, far from
/// it, a few doubles wide, huge, denormal.
constexpr Range ranges[] = {
    {0.0, 1.0},        {-1.0, 1.0},
    {-1e6, 1e6},       {-1e-300, 1e300},
    {1e8, 1e8 + 1e-6}, {0.0, 4.94e-320},
    {-4e307, 4e307},   {6354000.0, 6355000.0},
    {-0.1, 0.2},       {1.0, 1.0000000000000036},
    {-2.0, -1.0},      {-1.0000000000000036, -1.0},
    {-1e-307, 1e-307}, {-0x1p-1020, 0x1p-1020},
};

} // namespace

TEST(UniformCells, mapsCoordinatesBeyondRangeToOutermostCells) {
    const UniformCells cells(10.0, 20.0, 5);
    EXPECT_EQ(cells.count(), 5U);
    EXPECT_EQ(cells.cellOf(10.0), 0U);
    EXPECT_EQ(cells.cellOf(11.9), 0U);
    EXPECT_EQ(cells.cellOf(12.0), 1U);
    EXPECT_EQ(cells.cellOf(20.0), 4U);
    EXPECT_EQ(cells.cellOf(-infinity), 0U);
    EXPECT_EQ(cells.cellOf(-1e300), 0U);
    EXPECT_EQ(cells.cellOf(1e300), 4U);
    EXPECT_EQ(cells.cellOf(infinity), 4U);
}

TEST(UniformCells, hasOneCellForRangeThatCannotBeCut) {
    for (const Range range : {Range{1.0, 1.0}, {2.0, 1.0}, {-1.7e308, 1.7e308}, {0.0, 5e-324}, {0.0, infinity}}) {
        const UniformCells cells(range.minimum, range.maximum, 1000);
        EXPECT_EQ(cells.count(), 1U) << range.minimum << ' ' << range.maximum;
        EXPECT_EQ(cells.cellOf(range.minimum), 0U);
        EXPECT_EQ(cells.cellOf(infinity), 0U);
    }
    EXPECT_EQ(UniformCells().cellOf(5.0), 0U);
}

TEST(UniformCells, isMonotone) {
    std::mt19937_64 random(1);
    for (const Range range : ranges) {
        const UniformCells cells(range.minimum, range.maximum, 100);
        std::uniform_real_distribution<double> share(-0.1, 1.1);
        for (int i = 0; i < 10000; ++i) {
            const double a = range.minimum + (range.maximum - range.minimum) * share(random);
            EXPECT_LE(cells.cellOf(std::nextafter(a, -infinity)), cells.cellOf(a)) << a;
            const double b = range.minimum + (range.maximum - range.minimum) * share(random);
            EXPECT_LE(cells.cellOf(std::min(a, b)), cells.cellOf(std::max(a, b))) << a << ' ' << b;
        }
    }
}

TEST(UniformCells, knowsTheFirstDoubleOfEachCell) {
    for (const Range range : ranges) {
        for (const std::uint32_t count : {2U, 3U, 10U, 4096U}) {
            const UniformCells cells(range.minimum, range.maximum, count);
            for (std::uint32_t cell = 1; cell < cells.count(); ++cell) {
                const double first = cells.firstCoordinateOf(cell);
                ASSERT_GE(cells.cellOf(first), cell) << range.minimum << ' ' << count;
                ASSERT_LT(cells.cellOf(std::nextafter(first, -infinity)), cell) << range.minimum << ' ' << count;
            }
        }
    }
}

// So close to zero that half this range less the smallest double is rounded to half of it: the limit in the middle is
// not zero but the double before both zeros.
TEST(UniformCells, knowsALimitNextToZero) {
    const UniformCells cells(-0x1p-1020, 0x1p-1020, 16);
    ASSERT_EQ(cells.count(), 16U);
    EXPECT_EQ(cells.firstCoordinateOf(8), -std::numeric_limits<double>::denorm_min());
}

} // namespace vadelclip
