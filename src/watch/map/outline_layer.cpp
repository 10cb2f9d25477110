#include "watch/map/outline_layer.hpp"

#include <algorithm>
#include <cmath>

namespace vadelwatch {

namespace {

/// Circles around more polygons than this would hide the map.
constexpr std::size_t maxMarkedOutlines = 30;

constexpr double outlineOpacity = 0.8;

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

/// Returns true if an extent has a part in the map that is too small to be seen.
bool isSmall(const MapView& view, const MapExtent& extent) {
    if (isEmpty(extent) || std::max(widthOf(extent), heightOf(extent)) * scaleOf(view) >= minVisibleSize) {
        return false;
    }
    return holds(view.shown, {(extent.minX + extent.maxX) / 2.0, (extent.minY + extent.maxY) / 2.0});
}

PixelPosition centreOf(const MapView& view, const MapExtent& extent) {
    return toPixel(view, {(extent.minX + extent.maxX) / 2.0, (extent.minY + extent.maxY) / 2.0});
}

void drawCircle(MapCanvas& canvas, PixelPosition centre, MapColour colour) {
    constexpr double radius = 15.0;
    canvas.strokeCircle(centre, radius, colour, 2.5);
}

} // namespace

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
    canvas.beginClip(view.plot);
    for (const std::vector<MapPosition>& outline : outlines) {
        for (const std::vector<MapPosition>& line : clipOutline(outline, window)) {
            canvas.strokeLine(lineInPixels(view, line), outlineColour, lineWidth, outlineOpacity);
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
    const PixelPosition centre = centreOf(view, extent);
    const bool isOnLeftHalf = centre.x < view.plot.left + view.plot.width / 2.0;
    const double side = isOnLeftHalf ? 1.0 : -1.0;
    drawCircle(canvas, centre, colour);
    canvas.drawText(label, {centre.x + side * labelDistance, centre.y + 7.0},
                    {labelSize, isOnLeftHalf ? TextAnchor::left : TextAnchor::right, true, colour});
    return true;
}

bool markSmallOutlines(MapCanvas& canvas, const MapView& view, const MapOutlines& outlines) {
    std::vector<PixelPosition> centres;
    for (const std::vector<MapPosition>& outline : outlines) {
        const MapExtent extent = extentOf({outline});
        if (isSmall(view, extent)) {
            centres.push_back(centreOf(view, extent));
        }
    }
    if (centres.empty() || centres.size() > maxMarkedOutlines) {
        return false;
    }
    for (const PixelPosition& centre : centres) {
        drawCircle(canvas, centre, outlineColour);
    }
    return true;
}

} // namespace vadelwatch
