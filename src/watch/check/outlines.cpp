#include "watch/check/outlines.hpp"

#include "watch/show/messages.hpp"

#include <pugixml.hpp>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <filesystem>
#include <string_view>
#include <system_error>

namespace vadelwatch {

namespace {

constexpr unsigned int parseOptions = pugi::parse_pi | pugi::parse_ws_pcdata;

/// Ignores the rest of the value after the number.
bool readCoordinate(const pugi::xml_node& point, const char* name, double& coordinate) {
    std::string_view text = point.attribute(name).value();
    text.remove_prefix(std::min(text.find_first_not_of(" \t\r\n\v\f"), text.size()));
    if (text.starts_with('+')) {
        text.remove_prefix(1);
    }
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), coordinate);
    if (error != std::errc() || std::isnan(coordinate)) {
        return false;
    }
    coordinate = std::clamp(coordinate, -largestDrawable, largestDrawable);
    return true;
}

bool readOutline(const pugi::xml_node& polygon, std::vector<MapPosition>& outline) {
    for (const pugi::xml_node& point : polygon.children("point")) {
        MapPosition vertex;
        if (!readCoordinate(point, "x", vertex.x) || !readCoordinate(point, "y", vertex.y)) {
            return false;
        }
        outline.push_back(vertex);
    }
    return true;
}

/// Narrows the part from `first` to `last` of a line, 0 to 1 over its length, to the inner side of one limit of the
/// window. `distance` is the distance of the start from the limit, positive inside; `change` is how much the distance
/// grows along the line. This is the line clipping of Liang and Barsky.
///
/// @return false if nothing is left.
bool narrow(double distance, double change, double& first, double& last) {
    if (change == 0.0) {
        return distance >= 0.0;
    }
    const double crossing = -distance / change;
    if (change > 0.0) {
        first = std::max(first, crossing);
    } else {
        last = std::min(last, crossing);
    }
    return first <= last;
}

/// Moves a position into the window. Rounding may put a crossing outside it on an edge much longer than the window.
MapPosition clampTo(const MapExtent& window, MapPosition position) {
    return {std::clamp(position.x, window.minX, window.maxX), std::clamp(position.y, window.minY, window.maxY)};
}

/// Clips one edge in place.
/// @return false if nothing of it is in the window.
bool clipEdge(MapPosition& start, MapPosition& end, const MapExtent& window) {
    const double dx = end.x - start.x;
    const double dy = end.y - start.y;
    double first = 0.0;
    double last = 1.0;
    if (!narrow(start.x - window.minX, dx, first, last) || !narrow(window.maxX - start.x, -dx, first, last) ||
        !narrow(start.y - window.minY, dy, first, last) || !narrow(window.maxY - start.y, -dy, first, last)) {
        return false;
    }
    const MapPosition origin = start;
    if (last < 1.0) {
        end = clampTo(window, {origin.x + last * dx, origin.y + last * dy});
    }
    if (first > 0.0) {
        start = clampTo(window, {origin.x + first * dx, origin.y + first * dy});
    }
    return true;
}

std::string unreadable(const std::string& boundaryFile, const std::string& reason) {
    return formatMessage("The boundary file {0} cannot be read: {1}.", boundaryFile, reason);
}

} // namespace

std::string readMapOutlines(const std::string& boundaryFile, MapOutlines& outlines) {
    std::error_code error;
    if (std::filesystem::is_directory(boundaryFile, error)) {
        // The reason of the parser would be missing memory.
        return unreadable(boundaryFile, translateMessage("it is a directory"));
    }
    pugi::xml_document document;
    const pugi::xml_parse_result result = document.load_file(boundaryFile.c_str(), parseOptions, pugi::encoding_auto);
    if (result.status != pugi::status_ok) {
        const bool missing = result.status == pugi::status_file_not_found;
        return unreadable(boundaryFile, missing ? translateMessage("File was not found") : result.description());
    }
    for (const pugi::xml_node& group : document.child("VADELSIM").child("VadeDGM").children("group")) {
        if (std::string_view(group.attribute("type").value()) != "boundaries") {
            continue;
        }
        for (const pugi::xml_node& polygon : group.children("polygon")) {
            outlines.emplace_back();
            if (!readOutline(polygon, outlines.back())) {
                return formatMessage("The boundary file {0} holds a point without coordinates.", boundaryFile);
            }
        }
    }
    return "";
}

MapExtent extentOf(const MapOutlines& outlines) {
    MapExtent extent;
    for (const std::vector<MapPosition>& outline : outlines) {
        for (const MapPosition& vertex : outline) {
            includePosition(extent, vertex);
        }
    }
    return extent;
}

MapOutlines clipOutline(const std::vector<MapPosition>& outline, const MapExtent& window) {
    MapOutlines lines;
    bool goesOn = false;
    for (std::size_t i = 0; i < outline.size(); ++i) {
        MapPosition start = outline[i];
        MapPosition end = outline[(i + 1) % outline.size()];
        const MapPosition vertex = end;
        if (!clipEdge(start, end, window)) {
            goesOn = false;
            continue;
        }
        if (!goesOn) {
            lines.push_back({start});
        }
        lines.back().push_back(end);
        // If the end of the edge was cut off, the outline leaves the window there.
        goesOn = end.x == vertex.x && end.y == vertex.y;
    }
    return lines;
}

} // namespace vadelwatch
