/// Compares `readNodeLine` with an extent with a plain way: reads both numbers, then compares the point with the extent.

#include "clip/node_line.hpp"

#include "support/plain_text_support.hpp"
#include "support/special_numbers.hpp"
#include "support/workload.hpp"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

namespace vadelclip {

namespace {

WidenedBox boxOf(double minX, double minY, double maxX, double maxY) {
    WidenedBox extent;
    extent.minX = minX;
    extent.minY = minY;
    extent.maxX = maxX;
    extent.maxY = maxY;
    return extent;
}

/// Returns extents. Numbers of a few digits are inside, outside and exactly on them.
std::vector<WidenedBox> awkwardExtents() {
    return {boxOf(-infinity, -infinity, infinity, infinity),
            boxOf(infinity, infinity, -infinity, -infinity),
            boxOf(notANumber, notANumber, notANumber, notANumber),
            boxOf(-3.0, -3.0, 12.5, 12.5),
            boxOf(12.5, -infinity, 12.5, infinity),
            boxOf(-infinity, 7.0, infinity, 7.0),
            boxOf(-infinity, notANumber, 0.0, 1.0),
            boxOf(std::nextafter(12.5, 13.0), 0.0, 1e300, 1e300),
            boxOf(-1e300, 0.0, std::nextafter(12.5, 12.0), 1e300),
            boxOf(-0.0, 0.0, 0.0, -0.0)};
}

testing::AssertionResult extentAgrees(const std::string& line, char separator, const WidenedBox& extent) {
    Point2D expected{};
    const bool needed = readNodeLinePlainly(line, separator, expected) && !extent.rejects(expected);
    Point2D got{};
    const bool read = readNodeLine(line, separator, extent, got);
    if (needed != read) {
        return testing::AssertionFailure() << testing::PrintToString(line) << (read ? " is read" : " is dropped");
    }
    const bool same = !needed || (std::bit_cast<std::uint64_t>(expected.x) == std::bit_cast<std::uint64_t>(got.x) &&
                                  std::bit_cast<std::uint64_t>(expected.y) == std::bit_cast<std::uint64_t>(got.y));
    return same ? testing::AssertionSuccess() : testing::AssertionFailure() << testing::PrintToString(line);
}

/// Good and broken numbers, inside and outside of the extents.
const std::vector<std::string>& goodAndBrokenNumbers() {
    static const std::vector<std::string> texts = {"12.5",
                                                   "7",
                                                   "-0",
                                                   "+12.50",
                                                   "382250.29",
                                                   "-3.000000000000001",
                                                   "12.500000000000001",
                                                   "1e2",
                                                   "1e-2",
                                                   "1.5e",
                                                   "1e+",
                                                   "e5",
                                                   "-",
                                                   "",
                                                   "12,5",
                                                   "12.5.5",
                                                   "nan",
                                                   "inf",
                                                   "1e999"};
    return texts;
}

} // namespace

TEST(NodeLineExtent, keepsPointExactlyOnIt) {
    const WidenedBox extent = boxOf(12.5, 7.0, 13.5, 8.0);
    Point2D point{};
    for (const char* const line : {"12.5;7;0", "13.5;7;0", "12.5;8;0", "13.5;8;0", "13;7.5;0"}) {
        EXPECT_TRUE(readNodeLine(line, ';', extent, point)) << line;
    }
    for (const char* const line : {"12.499999999999998;7;0", "13.500000000000002;7;0", "12.5;6.999999999999999;0",
                                   "12.5;8.000000000000002;0", "0;0;0"}) {
        EXPECT_FALSE(readNodeLine(line, ';', extent, point)) << line;
    }
}

TEST(NodeLineExtent, agreesOnLinesCutAtEveryByte) {
    for (const char separator : {';', ',', '\t', ' '}) {
        for (const std::string& x : goodAndBrokenNumbers()) {
            for (const std::string& y : goodAndBrokenNumbers()) {
                const std::string line = x + separator + y + separator + "3";
                for (std::size_t length = 0; length <= line.size(); ++length) {
                    for (const WidenedBox& extent : awkwardExtents()) {
                        ASSERT_TRUE(extentAgrees(line.substr(0, length), separator, extent));
                    }
                }
            }
        }
    }
}

TEST(NodeLineExtent, agreesOnWhiteSpaceAndSeparatorsBetween) {
    std::mt19937 random(1);
    static const std::string bytes = std::string(" \t\v\f\r\n;;,,x") + '\0';
    const auto between = [&random] {
        std::string text;
        const bool isLong = random() % 8 == 0;
        for (std::size_t size = isLong ? 95 + random() % 10 : random() % 4; size > 0; --size) {
            text += isLong ? ' ' : bytes[random() % bytes.size()];
        }
        return text;
    };
    const auto number = [&random] { return goodAndBrokenNumbers()[random() % goodAndBrokenNumbers().size()]; };
    const std::vector<WidenedBox> boxes = awkwardExtents();
    for (int round = 0; round < workload(300000); ++round) {
        const char separator = "\t ,;"[random() % 4];
        const std::string line =
            between() + number() + between() + separator + between() + number() + between() + number();
        ASSERT_TRUE(extentAgrees(line, separator, boxes[random() % boxes.size()]));
    }
}

} // namespace vadelclip
