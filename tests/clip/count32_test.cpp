#include "clip/count32.hpp"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>

namespace vadelclip {

namespace {

constexpr std::int32_t smallest = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t largest = std::numeric_limits<std::int32_t>::max();

} // namespace

// An overflow in a constant expression would not compile.
static_assert(wrapTo32(0x80000000) == smallest);
static_assert(addWrapping(largest, 1) == smallest);

TEST(Count32, keepsLow32BitsOfCount) {
    EXPECT_EQ(0, wrapTo32(0));
    EXPECT_EQ(1, wrapTo32(1));
    EXPECT_EQ(largest, wrapTo32(2147483647));
    EXPECT_EQ(smallest, wrapTo32(2147483648));
    EXPECT_EQ(-1, wrapTo32(4294967295));
    EXPECT_EQ(0, wrapTo32(4294967296));
    EXPECT_EQ(7, wrapTo32(3 * 4294967296 + 7));
    EXPECT_EQ(-1, wrapTo32(std::numeric_limits<std::uint64_t>::max()));
}

TEST(Count32, sumsWrapAround) {
    EXPECT_EQ(5, addWrapping(2, 3));
    EXPECT_EQ(-1, addWrapping(0, -1));
    EXPECT_EQ(-5, addWrapping(-2, -3));
    EXPECT_EQ(smallest, addWrapping(largest, 1));
    EXPECT_EQ(largest, addWrapping(smallest, -1));
    EXPECT_EQ(-2, addWrapping(largest, largest));
    EXPECT_EQ(0, addWrapping(smallest, smallest));
    EXPECT_EQ(-1, addWrapping(smallest, largest));
}

} // namespace vadelclip
