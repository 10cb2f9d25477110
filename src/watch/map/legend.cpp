#include "watch/map/legend.hpp"

#include "watch/map/canvas.hpp"
#include "watch/map/shading.hpp"
#include "watch/map/text.hpp"
#include "watch/show/messages.hpp"

#include <algorithm>
#include <cmath>

namespace vadelwatch {

namespace {

std::string nodesText(std::uint64_t nodes) {
    const std::string count = groupedNumber(nodes);
    return nodes == 1 ? formatMessage("{0} node", count) : formatMessage("{0} nodes", count);
}

std::string polygonsText(std::uint64_t polygons) {
    const std::string count = groupedNumber(polygons);
    return polygons == 1 ? formatMessage("{0} polygon", count) : formatMessage("{0} polygons", count);
}

std::string unreadableText(std::uint64_t lines) {
    const std::string count = groupedNumber(lines);
    return lines == 1 ? formatMessage("{0} line without a position", count)
                      : formatMessage("{0} lines without a position", count);
}

std::string keptName(const NodeCounts& counts) {
    const std::uint64_t all = counts.kept + counts.dropped + counts.unreadable;
    if (all == 0) {
        return translateMessage("Kept");
    }
    return formatMessage("Kept ({0} %)",
                         shareText(100.0 * static_cast<double>(counts.kept) / static_cast<double>(all)));
}

std::vector<std::string> notesOf(const MapLegend& legend) {
    std::vector<std::string> notes;
    if (legend.hasMarkers) {
        notes.push_back(translateMessage("Circle: smaller than 10 pixels"));
    } else if (legend.outlines.small > 0) {
        notes.push_back(formatMessage("{0} smaller than 10 pixels", polygonsText(legend.outlines.small)));
    }
    if (legend.outlines.beyond > 0) {
        notes.push_back(formatMessage("{0} reaching beyond the map", polygonsText(legend.outlines.beyond)));
    }
    if (legend.outlines.tooShort > 0) {
        notes.push_back(formatMessage("{0} with fewer than 3 vertices", polygonsText(legend.outlines.tooShort)));
    }
    if (legend.outside > 0) {
        notes.push_back(formatMessage("{0} outside the map", nodesText(legend.outside)));
    }
    if (legend.counts.withoutElevation > 0) {
        notes.push_back(formatMessage("{0} kept without elevation", nodesText(legend.counts.withoutElevation)));
    }
    if (legend.counts.unreadable > 0) {
        notes.push_back(unreadableText(legend.counts.unreadable));
    }
    return notes;
}

/// Returns the number with as many decimals as a range needs.
std::string rampNumber(float number, float range) {
    const int decimals = range > 0.0F ? std::clamp(2 - static_cast<int>(std::floor(std::log10(range))), 0, 6) : 2;
    return decimalNumber(static_cast<double>(number), decimals);
}

constexpr double legendGap = 44.0;
constexpr double swatchWidth = 44.0;
constexpr double swatchHeight = 20.0;
constexpr double textIndent = swatchWidth + 14.0;
constexpr double lineHeight = 27.0;
constexpr double entryHeight = 2.0 * lineHeight + 14.0;
constexpr double longestScaleBar = 250.0;

/// Between the legend and the right edge of the picture.
constexpr double rightMargin = 16.0;

constexpr TextStyle noteStyle{labelSize - 3.0, TextAnchor::left};

double legendLeft(const MapView& view) {
    return view.plot.left + view.plot.width + legendGap;
}

/// Draws a text, in a smaller size if it would not fit into the picture: counts may have many digits.
void drawFitting(MapCanvas& canvas, const MapView& view, const std::string& text, PixelPosition baseline,
                 TextStyle style) {
    const double widest = view.pictureWidth - rightMargin - baseline.x;
    style.size = fittingSize(style.size, canvas.textWidth(text, style), widest);
    canvas.drawText(text, baseline, style);
}

void drawEntryText(MapCanvas& canvas, const MapView& view, double top, const LegendEntry& entry) {
    const PixelPosition baseline{legendLeft(view) + textIndent, top + 17.0};
    drawFitting(canvas, view, entry.name, baseline, {labelSize, TextAnchor::left, true});
    drawFitting(canvas, view, entry.count, {baseline.x, baseline.y + lineHeight}, {labelSize, TextAnchor::left});
}

void drawNodeEntry(MapCanvas& canvas, const MapView& view, double top, ColourOfTone colour, bool showsDensity,
                   const LegendEntry& entry) {
    const PixelRectangle swatch{legendLeft(view), top, swatchWidth, swatchHeight};
    canvas.fillGradient(swatch, {colour(showsDensity ? 0.0F : 0.5F), colour(showsDensity ? 1.0F : 0.5F)});
    drawEntryText(canvas, view, top, entry);
}

void drawOutlineEntry(MapCanvas& canvas, const MapView& view, double top, double outlineWidth,
                      const LegendEntry& entry) {
    const double left = legendLeft(view);
    const double middle = top + swatchHeight / 2.0;
    canvas.strokeLine({{left, middle}, {left + swatchWidth, middle}}, outlineColour, outlineWidth);
    drawEntryText(canvas, view, top, entry);
}

/// @return the top of the next item.
double drawNotes(MapCanvas& canvas, const MapView& view, const std::vector<std::string>& notes, double top) {
    for (const std::string& note : notes) {
        drawFitting(canvas, view, note, {legendLeft(view), top + 17.0}, noteStyle);
        top += lineHeight;
    }
    return top;
}

std::vector<MapColour> elevationRamp() {
    std::vector<MapColour> colours;
    for (int i = 0; i <= 8; ++i) {
        colours.push_back(elevationColour(static_cast<float>(i) / 8.0F));
    }
    return colours;
}

/// Draws the colours of elevations, or those of kept over those of dropped nodes, with the numbers at both ends.
/// @return the top of the next item.
double drawRamp(MapCanvas& canvas, const MapView& view, const LegendWords& words, double top) {
    constexpr double width = 250.0;
    constexpr double height = 20.0;
    const double left = legendLeft(view);
    drawFitting(canvas, view, words.ramp, {left, top + 17.0}, noteStyle);
    const PixelRectangle bar{left, top + lineHeight, width, height};
    if (words.showsElevation) {
        canvas.fillGradient(bar, elevationRamp());
    } else {
        canvas.fillGradient({bar.left, bar.top, width, height / 2.0}, {keptColour(0.0F), keptColour(1.0F)});
        canvas.fillGradient({bar.left, bar.top + height / 2.0, width, height / 2.0},
                            {droppedColour(0.0F), droppedColour(1.0F)});
    }
    const double baseline = bar.top + height + 22.0;
    canvas.drawText(words.low, {left, baseline}, noteStyle);
    canvas.drawText(words.high, {left + width, baseline}, {noteStyle.size, TextAnchor::right});
    return baseline + 20.0;
}

/// Draws two halves, filled and empty, with the length in the unit of the data.
void drawScaleBar(MapCanvas& canvas, const MapView& view, const LegendWords& words, double top) {
    const double left = legendLeft(view);
    const TickStep length = stepAtMost(longestScaleBar / scaleOf(view));
    const double pixels = valueOf(length) * scaleOf(view);
    const MapColour ink{34, 34, 34};
    const PixelRectangle bar{left, top, pixels, 9.0};
    canvas.fillRectangle({left, top, pixels / 2.0, 9.0}, ink);
    canvas.strokeRectangle(bar, ink, 1.5);
    canvas.drawText("0", {left, top + 34.0}, {labelSize, TextAnchor::left});
    const TextStyle style{labelSize, TextAnchor::middle};
    const std::string label = formatLength(length, decimalSign());
    const double lastMiddle = view.pictureWidth - rightMargin - canvas.textWidth(label, style) / 2.0;
    canvas.drawText(label, {std::min(left + pixels, lastMiddle), top + 34.0}, style);
    drawFitting(canvas, view, words.unit, {left, top + 34.0 + lineHeight}, noteStyle);
}

} // namespace

LegendWords wordsOf(const MapLegend& legend) {
    LegendWords words;
    words.kept = {keptName(legend.counts), nodesText(legend.counts.kept)};
    words.dropped = {translateMessage("Dropped"), nodesText(legend.counts.dropped)};
    words.boundary = {translateMessage("Boundary"), polygonsText(legend.outlines.all)};
    words.showsDensity = legend.showsDensity;
    words.showsElevation = legend.showsElevation;
    if (legend.showsElevation) {
        words.ramp = translateMessage("Elevation of kept nodes");
        words.low = rampNumber(legend.low, legend.high - legend.low);
        words.high = rampNumber(legend.high, legend.high - legend.low);
    } else if (legend.showsDensity) {
        words.ramp = translateMessage("Nodes per pixel");
        words.low = rampNumber(legend.low, std::max(legend.low, 10.0F));
        words.high = rampNumber(legend.high, std::max(legend.low, 10.0F));
    }
    words.notes = notesOf(legend);
    words.unit = translateMessage("in units of the coordinates");
    return words;
}

std::string titleText(const std::string& input, const std::string& boundary) {
    return formatMessage("{0} clipped to {1}", input, boundary);
}

void drawTitle(MapCanvas& canvas, const MapView& view, const MapTitle& title) {
    const TextStyle style{labelSize + 6.0, TextAnchor::left, true};
    const TextStyle detailStyle{labelSize - 5.0, TextAnchor::left, false, {90, 90, 90}};
    const auto textWidth = [&canvas, &style](const std::string& text) { return canvas.textWidth(text, style); };
    const double widest = view.pictureWidth - view.plot.left - legendGap;
    const double widestNames = widest - textWidth(titleText("", ""));
    const double inputWidth = std::max(widestNames / 2.0, widestNames - textWidth(title.boundary));
    const std::string input = fitText(title.input, inputWidth, textWidth);
    const std::string boundary = fitText(title.boundary, widestNames - textWidth(input), textWidth);
    canvas.drawText(titleText(input, boundary), {view.plot.left, view.plot.top - 46.0}, style);
    const std::string details = fitText(title.details, widest, [&canvas, &detailStyle](const std::string& text) {
        return canvas.textWidth(text, detailStyle);
    });
    canvas.drawText(details, {view.plot.left, view.plot.top - 18.0}, detailStyle);
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
    const MapColour ink{34, 34, 34};
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

void drawLegend(MapCanvas& canvas, const MapView& view, const LegendWords& words, double outlineWidth) {
    double top = view.plot.top;
    if (words.showsElevation) {
        canvas.fillGradient({legendLeft(view), top, swatchWidth, swatchHeight}, elevationRamp());
        drawEntryText(canvas, view, top, words.kept);
    } else {
        drawNodeEntry(canvas, view, top, keptColour, words.showsDensity, words.kept);
    }
    top += entryHeight;
    drawNodeEntry(canvas, view, top, droppedColour, words.showsDensity, words.dropped);
    top += entryHeight;
    drawOutlineEntry(canvas, view, top, outlineWidth, words.boundary);
    top += entryHeight;
    if (!words.ramp.empty()) {
        top = drawRamp(canvas, view, words, top);
    }
    top = drawNotes(canvas, view, words.notes, top);
    drawScaleBar(canvas, view, words, top + 24.0);
}

void drawWarning(MapCanvas& canvas, const MapView& view, const std::string& warning) {
    constexpr double height = 52.0;
    canvas.fillRectangle({view.plot.left, view.plot.top, view.plot.width, height}, warningColour);
    TextStyle style{labelSize + 2.0, TextAnchor::middle, true, {255, 255, 255}};
    style.size = fittingSize(style.size, canvas.textWidth(warning, style), view.plot.width - rightMargin);
    canvas.drawText(warning, {view.plot.left + view.plot.width / 2.0, view.plot.top + height / 2.0 + 8.0}, style);
}

} // namespace vadelwatch
