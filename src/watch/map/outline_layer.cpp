#include "watch/map/outline_layer.hpp"

#include <algorithm>
#include <cmath>

namespace vadelwatch {

namespace {

/// Anything smaller than this, in pixels, gets a circle around it.
constexpr double minVisibleSize = 10.0;

/// Circles around more polygons than this would hide the map.
constexpr std::size_t maxMarkedOutlines = 30;

/// Returns the mean width of a closed outline: its area divided by half of its length. 0 if it has no length.
double meanWidthOf(const std::vector<MapPosition>& outline) {
    double doubleArea = 0.0;
    double length = 0.0;
    for (std::size_t i = 0; i < outline.size(); ++i) {
        const MapPosition& next = outline[(i + 1) % outline.size()];
        const double dx = next.x - outline[i].x;
        const double dy = next.y - outline[i].y;
        doubleArea += (outline[i].x - outline[0].x) * dy - (outline[i].y - outline[0].y) * dx;
        length += std::hypot(dx, dy);
    }
    return length > 0.0 ? std::abs(doubleArea) / length : 0.0;
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

/// Returns the vertices in pixels, without those too close to the one before to be seen: an outline may have more
/// vertices than the picture has pixels.
std::vector<PixelPosition> lineInPixels(const MapView& view, const std::vector<MapPosition>& line) {
    constexpr double minStep = 0.4;
    std::vector<PixelPosition> pixels{toPixel(view, line.front())};
    for (std::size_t i = 1; i < line.size(); ++i) {
        const PixelPosition next = toPixel(view, line[i]);
        const double step = std::hypot(next.x - pixels.back().x, next.y - pixels.back().y);
        if (step >= minStep || i + 1 == line.size()) {
            pixels.push_back(next);
        }
    }
    return pixels;
}

MapPosition centreOf(const MapExtent& extent) {
    return {(extent.minX + extent.maxX) / 2.0, (extent.minY + extent.maxY) / 2.0};
}

/// Returns true if an extent is in the map and too small to be seen.
bool isSmall(const MapView& view, const MapExtent& extent) {
    return !isEmpty(extent) && longerSideOf(extent) * scaleOf(view) < minVisibleSize &&
           holds(view.shown, centreOf(extent));
}

void drawCircle(MapCanvas& canvas, PixelPosition centre, MapColour colour) {
    constexpr double radius = 15.0;
    canvas.strokeCircle(centre, radius, colour, 2.5);
}

} // namespace

MapOutlines clipOutline(const std::vector<MapPosition>& outline, const MapExtent& window) {
    MapOutlines lines;
    bool isContinued = false;
    for (std::size_t i = 0; i < outline.size(); ++i) {
        MapPosition start = outline[i];
        MapPosition end = outline[(i + 1) % outline.size()];
        const MapPosition vertex = end;
        if (!clipEdge(start, end, window)) {
            isContinued = false;
            continue;
        }
        if (!isContinued) {
            lines.push_back({start});
        }
        lines.back().push_back(end);
        // If the end of the edge was cut off, the outline leaves the window there.
        isContinued = end.x == vertex.x && end.y == vertex.y;
    }
    return lines;
}

OutlineCounts countOutlines(const MapOutlines& outlines, const MapView& view) {
    OutlineCounts counts;
    counts.all = outlines.size();
    for (const std::vector<MapPosition>& outline : outlines) {
        const auto isInside = [&view](const MapPosition& vertex) { return holds(view.shown, vertex); };
        counts.beyond += std::all_of(outline.begin(), outline.end(), isInside) ? 0U : 1U;
        counts.tooShort += outline.size() < 3 ? 1U : 0U;
        counts.small += isSmall(view, extentOf({outline})) ? 1U : 0U;
    }
    return counts;
}

double outlineWidthOf(const MapOutlines& outlines) {
    constexpr std::size_t manyVertices = 2000;
    std::size_t vertices = 0;
    for (const std::vector<MapPosition>& outline : outlines) {
        vertices += outline.size();
    }
    return vertices > manyVertices ? 1.0 : 1.4;
}

void drawOutlines(MapCanvas& canvas, const MapView& view, const MapOutlines& outlines, double lineWidth) {
    // Clipped a little outside the map, so that the cut ends are not visible.
    const MapExtent window = addMargin(view.shown);
    constexpr double maxNarrowWidth = 6.0;
    canvas.beginClip(view.plot);
    for (const std::vector<MapPosition>& outline : outlines) {
        // A polygon of one or two vertices has no width. Its line is not thinner, because nothing else of it is visible.
        const double width = meanWidthOf(outline) * scaleOf(view);
        const bool isNarrow = width > 0.0 && width < maxNarrowWidth;
        for (const std::vector<MapPosition>& line : clipOutline(outline, window)) {
            canvas.strokeLine(lineInPixels(view, line), outlineColour, isNarrow ? 0.6 * lineWidth : lineWidth,
                              isNarrow ? 0.6 : 0.8);
        }
    }
    canvas.endClip();
}

bool drawMarker(MapCanvas& canvas, const MapView& view, const MapExtent& extent, MapColour colour,
                const std::string& label) {
    if (!isSmall(view, extent)) {
        return false;
    }
    constexpr double labelDistance = 24.0;
    const PixelPosition centre = toPixel(view, centreOf(extent));
    const bool isOnLeftHalf = centre.x < view.plot.left + view.plot.width / 2.0;
    const double side = isOnLeftHalf ? 1.0 : -1.0;
    drawCircle(canvas, centre, colour);
    canvas.drawText(label, {centre.x + side * labelDistance, centre.y + 7.0},
                    {labelSize, isOnLeftHalf ? TextAnchor::left : TextAnchor::right, true, colour});
    return true;
}

bool markSmallOutlines(MapCanvas& canvas, const MapView& view, const MapOutlines& outlines,
                       const OutlineCounts& counts) {
    if (counts.small == 0 || counts.small > maxMarkedOutlines) {
        return false;
    }
    for (const std::vector<MapPosition>& outline : outlines) {
        const MapExtent extent = extentOf({outline});
        if (isSmall(view, extent)) {
            drawCircle(canvas, toPixel(view, centreOf(extent)), outlineColour);
        }
    }
    return true;
}

} // namespace vadelwatch
