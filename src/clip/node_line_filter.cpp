#include "clip/node_line_filter.hpp"

#include "clip/node_line.hpp"

namespace vadelclip {

void NodeLineFilter::readAhead() {
    std::array<Point2D, BoundaryIndex::maxPoints> points;
    std::size_t count = 0; // of lines in the extent of the boundary
    std::int64_t number = end;
    input.nextLine();
    do {
        if (readNodeLine(input.line(), separator, boundary.extent(), points[count])) {
            kept[count] = {number, input.lineWithLineFeed()};
            ++count;
        }
        ++number;
    } while (count < points.size() && input.takeBufferedLine());
    end = number;

    std::array<bool, BoundaryIndex::maxPoints> contained;
    boundary.findContained(std::span(points).first(count), contained);
    std::size_t keptCount = 0;
    for (std::size_t i = 0; i < count; ++i) {
        if (contained[i]) {
            kept[keptCount] = kept[i];
            ++keptCount;
        }
    }
    kept[keptCount] = noLine;
    next = 0;
}

} // namespace vadelclip
