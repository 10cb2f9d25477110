#include "clip/node_line_filter.hpp"

#include "clip/node_line.hpp"
#include "support/boundary_support.hpp"
#include "support/file_support.hpp"
#include "support/workload.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <random>
#include <string>
#include <thread>
#include <vector>

namespace vadelclip {

namespace {

using Lines = std::vector<std::string>;

/// Returns what the filter returns for each line.
Lines filtered(const std::string& path, const BoundaryIndex& boundary, std::size_t count) {
    LineReader input(path);
    NodeLineFilter filter(input, ';', boundary);
    Lines lines;
    while (lines.size() < count) {
        lines.emplace_back(filter.lineIfKept(static_cast<std::int64_t>(lines.size())));
    }
    return lines;
}

/// Returns the same, one line after the other.
Lines plain(const std::string& path, const BoundaryIndex& boundary, std::size_t count) {
    LineReader input(path);
    Lines lines;
    while (lines.size() < count) {
        Point2D point{};
        const bool isKept = readNodeLine(input.nextLine(), ';', point) && boundary.anyContains(point);
        lines.emplace_back(isKept ? input.lineWithLineFeed() : "");
    }
    return lines;
}

/// Returns a file that is sometimes longer than the buffer of the reader, with runs of lines that are kept or not.
std::string randomFile(std::mt19937& random) {
    const auto below = [&random](unsigned int limit) { return static_cast<unsigned int>(random()) % limit; };
    const unsigned int longest = below(2) == 0 ? 20 : 9000;
    std::string content;
    for (unsigned int runs = below(30); runs > 0; --runs) {
        const std::string position = below(2) == 0 ? "5;5" : below(2) == 0 ? "50;5" : "5;50";
        for (unsigned int lines = below(40); lines > 0; --lines) {
            content += position + ';' + std::string(below(longest), 'z') + (below(3) == 0 ? "\r\n" : "\n");
        }
    }
    return below(2) == 0 ? content + "5;5;unterminated" : content;
}

} // namespace

TEST(NodeLineFilter, keepsSameLinesAsReadingThemOneByOne) {
    const TemporaryDirectory directory;
    BoundarySet set = setOf({{{0, 0}, {10, 0}, {10, 10}, {0, 10}}, {{49, 49}, {60, 49}, {60, 60}}});
    const BoundaryIndex boundary(set);
    std::mt19937 random(1);
    for (int round = 0; round < workload(1000); ++round) {
        const std::string content = randomFile(random);
        const std::string path = directory.write("a.xyz", content);
        const auto count = static_cast<std::size_t>(std::count(content.begin(), content.end(), '\n')) + 3;
        ASSERT_EQ(filtered(path, boundary, count), plain(path, boundary, count));
    }
}

TEST(NodeLineFilter, returnsLineOfPipeAsSoonAsItArrives) {
    const TemporaryDirectory directory;
    BoundarySet set = setOf({{{0, 0}, {10, 0}, {10, 10}, {0, 10}}});
    const BoundaryIndex boundary(set);
    std::atomic<int> linesSeen = 0;
    const auto waitForLine = [&linesSeen](int count) {
        while (linesSeen < count) {
            std::this_thread::yield();
        }
    };
    const ServedFile file(directory.pathOf("a.xyz"), {{"5;5;1\n6;6;2\n7;7", [&] { waitForLine(2); }, ";3\n50;5;4\n",
                                                       [&] { waitForLine(4); }, "8;8;5\n"}});
    LineReader input(directory.pathOf("a.xyz"));
    NodeLineFilter filter(input, ';', boundary);
    for (const char* const expected : {"5;5;1\n", "6;6;2\n", "7;7;3\n", "", "8;8;5\n", ""}) {
        EXPECT_EQ(filter.lineIfKept(linesSeen), expected);
        ++linesSeen;
    }
}

} // namespace vadelclip
