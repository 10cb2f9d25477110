/// Memory of a clip pass: a program of its own, because it counts every allocation of the process.

#include "clip/clip_node_file.hpp"

#include "support/boundary_support.hpp"
#include "support/counting_allocator.hpp"
#include "support/file_support.hpp"

#include <gtest/gtest.h>

#include <string>

namespace vadelclip {

namespace {

/// Kept, outside and unreadable lines, with both line ends.
std::string nodeFile(int rounds) {
    std::string content = "x;y;z\n";
    for (int i = 0; i < rounds; ++i) {
        content += "5.25;6.75;1.5\n4.125;10;2\r\n382250.29;6354470.919300254;3\nno node\n\n0;0;corner\n";
    }
    return content;
}

/// Allocations of a pass over that many rounds of lines, the message layer's own apart.
long countAllocations(int rounds) {
    const TemporaryDirectory directory;
    const std::string input = directory.write("a.xyz", nodeFile(rounds));
    const std::string output = directory.pathOf("out.xyz");
    BoundarySet set = setOf({counterClockwiseSquare});
    const BoundaryIndex index(set);
    const long before = allocationCount();
    EXPECT_EQ(clipNodeFile(input, output, rounds * 6, index, 0.0, rounds * 6), rounds * 3);
    return allocationCount() - before;
}

} // namespace

TEST(ClipNodeFile, allocatesNothingPerLine) {
    // Both files are longer than the reading buffer, so a line that reaches across it has its string in either.
    EXPECT_EQ(countAllocations(5000), countAllocations(20000));
}

} // namespace vadelclip
