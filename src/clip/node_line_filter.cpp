#include "clip/node_line_filter.hpp"

#include "clip/node_line.hpp"

#include <span>

namespace vadelclip {

void NodeLineFilter::readAhead() {
    if (failure) {
        std::rethrow_exception(failure);
    }
    std::size_t count = 0;
    std::int64_t number = end;
    input.nextLine();
    try {
        do {
            if (readNodeLine(input.line(), separator, boundary.extent(), points[count])) {
                lines[count] = {number, input.lineWithLineFeed()};
                ++count;
            }
            ++number;
        } while (count < maxLines && input.takeBufferedLine());
    } catch (...) {
        if (number == end) {
            throw;
        }
        failure = std::current_exception();
    }
    end = number;
    lines[count] = noLine;
    next = 0;
    boundary.findCells(std::span(points).first(count), cells);
}

} // namespace vadelclip
