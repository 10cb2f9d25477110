#include "gdal/exact_side.hpp"

#include <gtest/gtest.h>

#include <cmath>

namespace vadelclip_gdal {

TEST(ExactSide, knowsLeftRightAndOnTheLine) {
    EXPECT_EQ(1, sideOf({0, 0}, {10, 0}, {5, 1}));
    EXPECT_EQ(-1, sideOf({0, 0}, {10, 0}, {5, -1}));
    EXPECT_EQ(0, sideOf({0, 0}, {10, 0}, {15, 0}));
    EXPECT_EQ(0, sideOf({3, 3}, {3, 3}, {5, 1}));
}

TEST(ExactSide, seesTheLastBit) {
    // 0.1 and 0.3 as doubles: the point is a little below the line to (3, 1).
    EXPECT_EQ(-1, sideOf({0, 0}, {3, 1}, {0.30000000000000004, 0.1}));
    EXPECT_EQ(1, sideOf({0, 0}, {3, 1}, {0.3, 0.1}));
    EXPECT_EQ(0, sideOf({382000, 6354000}, {382001, 6354003}, {382000.5, 6354001.5}));
    EXPECT_EQ(-1, sideOf({382000, 6354000}, {382001, 6354003}, {std::nextafter(382000.5, 1e9), 6354001.5}));
}

TEST(ExactSide, worksAtTheLimitsOfDoubles) {
    EXPECT_EQ(1, sideOf({0, 0}, {1e-300, 0}, {0, 1e-300}));
    EXPECT_EQ(1, sideOf({-1e308, 0}, {1e308, 0}, {0, 5e-324}));
    EXPECT_EQ(-1, sideOf({-1e308, -1e308}, {1e308, 1e308}, {1, 0}));
    EXPECT_EQ(0, sideOf({0, 0}, {5e-324, 1e-323}, {0x1p1000, 0x1p1001}));
    EXPECT_EQ(-1, sideOf({-5e-324, 0}, {5e-324, 1e-323}, {5e-324, 5e-324}));
}

} // namespace vadelclip_gdal
