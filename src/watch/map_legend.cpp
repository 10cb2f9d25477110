#include "watch/map_legend.hpp"

#include "watch/map_shading.hpp"
#include "watch/map_text.hpp"

#include <algorithm>

namespace {

constexpr double legendGap = 44.0;
constexpr double swatchWidth = 44.0;
constexpr double swatchHeight = 20.0;
constexpr double textIndent = swatchWidth + 14.0;
constexpr double lineHeight = 27.0;
constexpr double entryHeight = 2.0 * lineHeight + 14.0;
constexpr double longestScaleBar = 250.0;

double legendLeft(const MapView& view) {
    return view.plot.left + view.plot.width + legendGap;
}

void drawEntryText(MapCanvas& canvas, double left, double top, const LegendEntry& entry) {
    canvas.drawText(entry.name, {left + textIndent, top + 17.0}, {labelSize, TextAnchor::left, true});
    canvas.drawText(entry.count, {left + textIndent, top + 17.0 + lineHeight}, {labelSize, TextAnchor::left, false});
}

using ColourOfTone = MapColour (*)(float);

void drawNodeEntry(MapCanvas& canvas, double left, double top, ColourOfTone colour, bool showsDensity,
                   const LegendEntry& entry) {
    const PixelRectangle swatch{left, top, swatchWidth, swatchHeight};
    canvas.fillGradient(swatch, colour(showsDensity ? 0.0F : 0.5F), colour(showsDensity ? 1.0F : 0.5F));
    drawEntryText(canvas, left, top, entry);
}

void drawOutlineEntry(MapCanvas& canvas, double left, double top, double outlineWidth, const LegendEntry& entry) {
    const double middle = top + swatchHeight / 2.0;
    canvas.strokeLine({{left, middle}, {left + swatchWidth, middle}}, outlineColour, outlineWidth);
    drawEntryText(canvas, left, top, entry);
}

/// @return where the next thing below may stand.
double drawNotes(MapCanvas& canvas, const std::vector<std::string>& notes, double left, double top) {
    for (const std::string& note : notes) {
        canvas.drawText(note, {left, top + 17.0}, {labelSize - 3.0, TextAnchor::left, false});
        top += lineHeight;
    }
    return top;
}

/// Two halves, filled and empty, with the length in the unit of the data.
void drawScaleBar(MapCanvas& canvas, const MapView& view, const LegendWords& words, double left, double top) {
    const TickStep length = stepAtMost(longestScaleBar / scaleOf(view));
    const double pixels = valueOf(length) * scaleOf(view);
    const MapColour ink{34, 34, 34};
    const PixelRectangle bar{left, top, pixels, 9.0};
    canvas.fillRectangle({left, top, pixels / 2.0, 9.0}, ink);
    canvas.strokeRectangle(bar, ink, 1.5);
    canvas.drawText("0", {left, top + 34.0}, {labelSize, TextAnchor::left, false});
    const TextStyle style{labelSize, TextAnchor::middle, false};
    const std::string label = formatLength(length, words.decimalPoint);
    const double lastMiddle = view.pictureWidth - 12.0 - canvas.textWidth(label, style) / 2.0;
    canvas.drawText(label, {std::min(left + pixels, lastMiddle), top + 34.0}, style);
    canvas.drawText(words.unit, {left, top + 34.0 + lineHeight}, {labelSize - 3.0, TextAnchor::left, false});
}

} // namespace

void drawTitle(MapCanvas& canvas, const MapView& view, const std::string& title) {
    const TextStyle style{labelSize + 6.0, TextAnchor::left, true};
    const double widest = view.pictureWidth - view.plot.left - legendGap;
    const std::string fitting =
        fitText(title, widest, [&canvas, &style](const std::string& text) { return canvas.textWidth(text, style); });
    canvas.drawText(fitting, {view.plot.left, view.plot.top - 24.0}, style);
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
        canvas.drawText(tick.label, {x, bottom + 32.0}, {labelSize, TextAnchor::middle, false});
    }
    for (const MapTick& tick : view.yTicks) {
        const double y = toPixel(view, {view.shown.minX, tick.value}).y;
        canvas.strokeLine({{view.plot.left - 8.0, y}, {view.plot.left, y}}, ink, 1.5);
        canvas.drawText(tick.label, {view.plot.left - 15.0, y + 7.0}, {labelSize, TextAnchor::right, false});
    }
    canvas.strokeRectangle(view.plot, ink, 1.5);
    canvas.drawText("x", {view.plot.left + view.plot.width / 2.0, bottom + 66.0},
                    {labelSize, TextAnchor::middle, true});
    canvas.drawText("y", {24.0, view.plot.top + view.plot.height / 2.0}, {labelSize, TextAnchor::middle, true});
}

void drawLegend(MapCanvas& canvas, const MapView& view, const LegendWords& words, double outlineWidth) {
    const double left = legendLeft(view);
    double top = view.plot.top;
    drawNodeEntry(canvas, left, top, keptColour, words.showsDensity, words.kept);
    top += entryHeight;
    drawNodeEntry(canvas, left, top, droppedColour, words.showsDensity, words.dropped);
    top += entryHeight;
    drawOutlineEntry(canvas, left, top, outlineWidth, words.boundary);
    top = drawNotes(canvas, words.notes, left, top + entryHeight);
    drawScaleBar(canvas, view, words, left, top + 24.0);
}
