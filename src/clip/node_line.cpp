#include "clip/node_line.hpp"

#include <sstream>

namespace {

/// How many bytes are looked at to find the separator behind x, the separator included.
constexpr int separatorReach = 100;

bool skipSeparator(std::istream& stream, char separator) {
    for (int attempt = 0; attempt < separatorReach; ++attempt) {
        const int byte = stream.get();
        if (!stream.good()) {
            return false;
        }
        if (static_cast<char>(byte) == separator) {
            return true;
        }
    }
    return false;
}

/// The good state is tested here, not only fail(), so a number must not end the line. The boundary reader tests
/// fail() alone. Both on purpose: see docs/file-formats.md.
bool readCoordinate(std::istream& stream, double& coordinate) {
    stream >> coordinate;
    return stream.good();
}

} // namespace

bool readNodeLine(const std::string& line, char separator, Point2D& point) {
    std::istringstream stream(line);
    if (!readCoordinate(stream, point.x)) {
        return false;
    }
    // A blank needs no search: the next extraction skips white space by itself.
    if (separator != ' ' && !skipSeparator(stream, separator)) {
        return false;
    }
    return readCoordinate(stream, point.y);
}
