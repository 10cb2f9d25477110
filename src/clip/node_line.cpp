#include "clip/node_line.hpp"

#include "text/number_text.hpp"

#include <cstddef>
#include <limits>

namespace vadelclip {

namespace {

/// The separator must be among the first `separatorReach` bytes after x.
constexpr std::size_t separatorReach = 100;

/// Reads a number and removes it from the line. Fails if nothing follows the number.
///
/// The boundary reader accepts a number at the end of its text. Both rules are on purpose: see docs/file-formats.md.
bool readCoordinate(std::string_view& rest, double& coordinate) {
    const NumberReading reading = readNumber(rest);
    if (reading.failed || reading.length == rest.size()) {
        return false;
    }
    coordinate = reading.value;
    rest.remove_prefix(reading.length);
    return true;
}

bool skipSeparator(std::string_view& rest, char separator) {
    // The separator is nearly always the next byte, and a comparison costs less than a search.
    if (!rest.empty() && rest.front() == separator) {
        rest.remove_prefix(1);
        return true;
    }
    const std::size_t position = rest.substr(0, separatorReach).find(separator);
    if (position == std::string_view::npos) {
        return false;
    }
    rest.remove_prefix(position + 1);
    return true;
}

} // namespace

bool readNodeLine(std::string_view line, char separator, const WidenedBox& extent, Point2D& point) {
    if (!readCoordinate(line, point.x) || extent.rejectsX(point.x)) {
        return false;
    }
    // No search for a space: reading the next number skips white space.
    if (separator != ' ' && !skipSeparator(line, separator)) {
        return false;
    }
    return readCoordinate(line, point.y) && !extent.rejects(point);
}

bool readNodeLine(std::string_view line, char separator, Point2D& point) {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    const WidenedBox everywhere(BoundingBox{-infinity, -infinity, infinity, infinity});
    return readNodeLine(line, separator, everywhere, point);
}

} // namespace vadelclip
