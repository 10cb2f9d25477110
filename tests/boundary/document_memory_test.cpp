#include "boundary/document_memory.hpp"

#include <gtest/gtest.h>
#include <pugixml.hpp>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <random>
#include <utility>
#include <vector>

namespace vadelclip {

// Sizes around those of a page of pugixml and of a huge page. Each block has its own byte everywhere.
TEST(DocumentMemory, keepsBlocksApartInAnyOrderOfReleases) {
    const DocumentMemory memory;
    const auto allocate = pugi::get_memory_allocation_function();
    const auto release = pugi::get_memory_deallocation_function();
    std::mt19937 random(1);
    std::vector<std::pair<unsigned char*, std::size_t>> blocks;
    const auto releaseBlock = [&](std::size_t number) {
        const auto [block, size] = blocks[number];
        const std::vector<unsigned char> expected(size, block[0]);
        EXPECT_EQ(0, std::memcmp(block, expected.data(), size));
        release(block);
        blocks.erase(blocks.begin() + static_cast<std::ptrdiff_t>(number));
    };
    for (int i = 0; i < 2000; ++i) {
        const std::size_t sizes[] = {1, 16, 4000, 32808, 32808, 32808, 2097000 + random() % 300, 3000000};
        const std::size_t size = sizes[random() % 8];
        auto* const block = static_cast<unsigned char*>(allocate(size));
        ASSERT_NE(block, nullptr);
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(block) % alignof(std::max_align_t), 0U);
        std::memset(block, i % 251, size);
        blocks.emplace_back(block, size);
        while (blocks.size() > random() % 40) {
            releaseBlock(random() % blocks.size());
        }
    }
    while (!blocks.empty()) {
        releaseBlock(blocks.size() - 1);
    }
}

TEST(DocumentMemory, returnsNullIfThereIsNoMemory) {
    const DocumentMemory memory;
    EXPECT_EQ(pugi::get_memory_allocation_function()(PTRDIFF_MAX), nullptr);
}

TEST(DocumentMemory, restoresFunctionsOfLibrary) {
    const auto allocate = pugi::get_memory_allocation_function();
    const auto release = pugi::get_memory_deallocation_function();
    {
        const DocumentMemory memory;
        EXPECT_NE(pugi::get_memory_allocation_function(), allocate);
    }
    EXPECT_EQ(pugi::get_memory_allocation_function(), allocate);
    EXPECT_EQ(pugi::get_memory_deallocation_function(), release);
}

} // namespace vadelclip
