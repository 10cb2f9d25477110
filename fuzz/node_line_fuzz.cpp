/// \file
/// Compares `readNodeLine` with one string stream, for several extents. The input is the separator, then the line.

#include "fuzz_target.hpp"

#include "clip/node_line.hpp"
#include "support/plain_text_support.hpp"

#include <cmath>
#include <limits>
#include <vector>

namespace vadelclip {

namespace {

/// Returns one of the four separators for any byte.
char separatorFrom(std::uint8_t byte) {
    const std::string separators = "\t ,;";
    const std::size_t position = separators.find(static_cast<char>(byte));
    return separators[position == std::string::npos ? byte % separators.size() : position];
}

/// Returns a box without limits, a box of only the point, and boxes that end just before it.
std::vector<WidenedBox> extentsAround(Point2D point) {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    std::vector<WidenedBox> extents(6);
    for (WidenedBox& extent : extents) {
        extent.minX = extent.minY = -infinity;
        extent.maxX = extent.maxY = infinity;
    }
    extents[1].minX = extents[1].maxX = point.x;
    extents[1].minY = extents[1].maxY = point.y;
    extents[2].minX = std::nextafter(point.x, infinity);
    extents[3].maxX = std::nextafter(point.x, -infinity);
    extents[4].minY = std::nextafter(point.y, infinity);
    extents[5].maxY = std::nextafter(point.y, -infinity);
    return extents;
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    InputBytes input(data, size);
    const char separator = separatorFrom(input.byte());
    const std::string line = input.rest();
    Point2D expected{};
    const bool expectedRead = readNodeLinePlainly(line, separator, expected);
    for (const WidenedBox& extent : extentsAround(expected)) {
        Point2D got{};
        const bool needed = expectedRead && !extent.rejects(expected);
        requireEqual(needed, readNodeLine(line, separator, extent, got), "is read");
        if (needed) {
            requireSameBits(expected.x, got.x, "x");
            requireSameBits(expected.y, got.y, "y");
        }
    }
    return 0;
}

} // namespace vadelclip
