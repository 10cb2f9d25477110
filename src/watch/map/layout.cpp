#include "watch/map/layout.hpp"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace vadelwatch {

namespace {

constexpr double largestSizeRatio = 4.0;
constexpr double marginShare = 0.04;

MapExtent grow(const MapExtent& extent, double distance) {
    return {extent.minX - distance, extent.minY - distance, extent.maxX + distance, extent.maxY + distance};
}

double largestMagnitude(const MapExtent& extent) {
    return std::max({std::abs(extent.minX), std::abs(extent.maxX), std::abs(extent.minY), std::abs(extent.maxY)});
}

/// A double has about 16 digits. If the frame changes only those after the 12th, it has about a thousand different
/// positions across.
double smallestResolvedSize(const MapExtent& extent) {
    return std::max(largestMagnitude(extent) * 1e-12, 1e-290);
}

/// Margins of the map in pixels: for the title above, the labels of x below, the legend on the right.
constexpr double topSpace = 92.0;
constexpr double bottomSpace = 92.0;
constexpr double rightSpace = 350.0;
/// The left margin without the labels of y: the name of the axis, the ticks, and space.
constexpr double leftSpace = 72.0;

/// Limits of the height of the map. The legend needs the minimum. The maximum fits on a screen.
constexpr double minPlotHeight = 480.0;
constexpr double maxPlotHeight = 1400.0;

/// Minimum distances between two ticks and between two adjacent labels.
constexpr double tickDistance = 90.0;
constexpr double labelGap = 36.0;

/// The minimum number of ticks on the y axis.
constexpr std::size_t minTicks = 4;

double widestLabel(const std::vector<MapTick>& ticks, const LabelWidth& labelWidth) {
    double widest = 0.0;
    for (const MapTick& tick : ticks) {
        widest = std::max(widest, labelWidth(tick.label));
    }
    return widest;
}

/// Chooses the smallest step at which neither the ticks nor the labels of x are crowded. Both axes have the same step,
/// so that the grid has squares. In a flat map, where y would have too few ticks, y has smaller steps.
void chooseTicks(MapView& view, const LabelWidth& labelWidth) {
    TickStep step = stepAtLeast(tickDistance / scaleOf(view));
    view.xTicks = ticksBetween(view.shown.minX, view.shown.maxX, step);
    while (view.xTicks.size() > 1 && valueOf(step) * scaleOf(view) < widestLabel(view.xTicks, labelWidth) + labelGap) {
        step = stepAbove(step);
        view.xTicks = ticksBetween(view.shown.minX, view.shown.maxX, step);
    }
    view.yTicks = ticksBetween(view.shown.minY, view.shown.maxY, step);
    while (view.yTicks.size() < minTicks) {
        step = stepBelow(step);
        view.yTicks = ticksBetween(view.shown.minY, view.shown.maxY, step);
    }
}

} // namespace

MapExtent chooseFrame(const MapExtent& points, const MapExtent& outlines) {
    const MapExtent all = joinExtents(points, outlines);
    if (isEmpty(points) || isEmpty(outlines)) {
        return all;
    }
    const bool pointsAreSmaller = longerSideOf(points) < longerSideOf(outlines);
    const MapExtent& smaller = pointsAreSmaller ? points : outlines;
    // Extents without overlap are both shown, because the user must see how far apart they are.
    const bool apart = isEmpty(intersect(points, outlines));
    if (apart || longerSideOf(smaller) <= 0.0 || longerSideOf(all) <= largestSizeRatio * longerSideOf(smaller)) {
        return all;
    }
    return intersect(grow(smaller, longerSideOf(smaller) / 2.0), all);
}

MapExtent addMargin(const MapExtent& frame) {
    const double size = longerSideOf(frame);
    if (size > 0.0) {
        return grow(frame, std::max(size * marginShare, (smallestResolvedSize(frame) - size) / 2.0));
    }
    return grow(frame, std::max(0.5, largestMagnitude(frame) * 1e-9));
}

MapExtent fitAspect(const MapExtent& frame, double aspect) {
    const double width = std::max(widthOf(frame), heightOf(frame) / aspect);
    const double addedX = (width - widthOf(frame)) / 2.0;
    const double addedY = (width * aspect - heightOf(frame)) / 2.0;
    return {frame.minX - addedX, frame.minY - addedY, frame.maxX + addedX, frame.maxY + addedY};
}

MapView layOutMap(const MapExtent& frame, const LabelWidth& labelWidth, PictureSize size) {
    MapView view;
    view.pictureWidth = size.width;
    view.plot.top = topSpace;
    // The space for the labels of y depends on the labels, and the labels on the space. A few rounds settle it.
    double yLabelWidth = 80.0;
    for (int round = 0; round < 4; ++round) {
        view.plot.left = std::ceil(leftSpace + yLabelWidth);
        view.plot.width = size.width - rightSpace - view.plot.left;
        const double fittingHeight = view.plot.width * (heightOf(frame) / widthOf(frame));
        view.plot.height = size.height > 0 ? size.height - topSpace - bottomSpace
                                           : std::round(std::clamp(fittingHeight, minPlotHeight, maxPlotHeight));
        view.shown = fitAspect(frame, view.plot.height / view.plot.width);
        chooseTicks(view, labelWidth);
        yLabelWidth = widestLabel(view.yTicks, labelWidth);
    }
    view.pictureHeight = static_cast<int>(topSpace + view.plot.height + bottomSpace);
    return view;
}

double scaleOf(const MapView& view) {
    return view.plot.width / widthOf(view.shown);
}

PixelPosition toPixel(const MapView& view, MapPosition position) {
    return {view.plot.left + (position.x - view.shown.minX) * scaleOf(view),
            view.plot.top + (view.shown.maxY - position.y) * scaleOf(view)};
}

void drawGrid(MapCanvas& canvas, const MapView& view) {
    const MapColour faint{232, 232, 232};
    const double bottom = view.plot.top + view.plot.height;
    const double right = view.plot.left + view.plot.width;
    for (const MapTick& tick : view.xTicks) {
        const double x = toPixel(view, {tick.value, view.shown.minY}).x;
        canvas.strokeLine({{x, view.plot.top}, {x, bottom}}, faint, 1.0);
    }
    for (const MapTick& tick : view.yTicks) {
        const double y = toPixel(view, {view.shown.minX, tick.value}).y;
        canvas.strokeLine({{view.plot.left, y}, {right, y}}, faint, 1.0);
    }
}

void drawAxes(MapCanvas& canvas, const MapView& view) {
    const double bottom = view.plot.top + view.plot.height;
    for (const MapTick& tick : view.xTicks) {
        const double x = toPixel(view, {tick.value, view.shown.minY}).x;
        canvas.strokeLine({{x, bottom}, {x, bottom + 8.0}}, ink, 1.5);
        canvas.drawText(tick.label, {x, bottom + 32.0}, {labelSize, TextAnchor::middle});
    }
    for (const MapTick& tick : view.yTicks) {
        const double y = toPixel(view, {view.shown.minX, tick.value}).y;
        canvas.strokeLine({{view.plot.left - 8.0, y}, {view.plot.left, y}}, ink, 1.5);
        canvas.drawText(tick.label, {view.plot.left - 15.0, y + 7.0}, {labelSize, TextAnchor::right});
    }
    canvas.strokeRectangle(view.plot, ink, 1.5);
    canvas.drawText("x", {view.plot.left + view.plot.width / 2.0, bottom + 66.0},
                    {labelSize, TextAnchor::middle, true});
    canvas.drawText("y", {24.0, view.plot.top + view.plot.height / 2.0}, {labelSize, TextAnchor::middle, true});
}

} // namespace vadelwatch
