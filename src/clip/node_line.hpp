/// \file
/// Reads one line of a node file: x, the separator, y, and at least one further byte, which is not checked.
#pragma once

#include "boundary/boundary_set.hpp"
#include "boundary/widened_box.hpp"
#include "text/number_text.hpp"

#include <cstddef>
#include <limits>
#include <string_view>

namespace vadelclip {

/// Reads x and y from a node line and compares them with an extent. If x is outside, y is not read: the line is
/// dropped whether or not y is a number.
///
/// Skips white space before each number. Accepts up to 99 other bytes between x and the separator, unless the separator
/// is a space. Reads numbers as formatted extraction in the classic locale does.
///
/// @param extent the box outside of which no point is kept.
/// @param point  receives the position; unspecified after a failure.
/// @return false for a line that does not parse, that ends right after y, or whose point is outside of the extent. Such
///         a line is dropped silently.
inline bool readNodeLine(std::string_view line, char separator, const WidenedBox& extent, Point2D& point) {
    constexpr std::size_t separatorReach = 100;
    // The boundary reader accepts a number at the end of its text. Both rules are on purpose: see docs/file-formats.md.
    const NumberReading x = readNumber(line);
    if (x.failed() || x.length == line.size() || extent.rejectsX(x.value)) {
        return false;
    }
    line.remove_prefix(x.length);
    // No search for a space: reading the next number skips white space.
    if (separator != ' ') {
        // The separator is nearly always the next byte, and a comparison costs less than a search.
        const std::size_t position = line.front() == separator ? 0 : line.substr(0, separatorReach).find(separator);
        if (position == std::string_view::npos) {
            return false;
        }
        line.remove_prefix(position + 1);
    }
    const NumberReading y = readNumber(line);
    point = {x.value, y.value};
    return !y.failed() && y.length != line.size() && !extent.rejectsY(y.value);
}

/// Does the same without an extent: every line that parses is read.
inline bool readNodeLine(std::string_view line, char separator, Point2D& point) {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    const WidenedBox everywhere(BoundingBox{-infinity, -infinity, infinity, infinity});
    return readNodeLine(line, separator, everywhere, point);
}

} // namespace vadelclip
