#include "boundary/huge_pages.hpp"

#include <gtest/gtest.h>

#include <cstddef>
#include <numeric>
#include <string>
#include <vector>

namespace vadelclip {

TEST(HugePages, doNotChangeContentOfBlock) {
    std::vector<char> block(3 * hugePageSize, 'a');
    for (const std::size_t size : {std::size_t{0}, std::size_t{100}, hugePageSize, 3 * hugePageSize - 1}) {
        preferHugePages(block.data() + 1, size);
    }
    EXPECT_EQ(block, std::vector<char>(3 * hugePageSize, 'a'));
    preferHugePages(nullptr, 0);
}

TEST(HugePages, reserveLargeKeepsElements) {
    std::vector<std::string> elements{"first", "second, which is too long for its own memory"};
    const std::vector<std::string> expected = elements;
    reserveLarge(elements, 100000);
    EXPECT_EQ(elements, expected);
    EXPECT_EQ(elements.capacity(), 100000U);
}

TEST(HugePages, appendLargeDoublesRoom) {
    std::vector<int> elements;
    std::size_t growths = 0;
    for (int i = 0; i < 1000000; ++i) {
        growths += elements.size() == elements.capacity() ? 1U : 0U;
        appendLarge(elements, i);
    }
    std::vector<int> expected(1000000);
    std::iota(expected.begin(), expected.end(), 0);
    EXPECT_EQ(elements, expected);
    EXPECT_EQ(growths, 21U);
}

} // namespace vadelclip
