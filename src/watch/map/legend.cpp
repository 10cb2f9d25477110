#include "watch/map/legend.hpp"

#include "watch/map/shading.hpp"
#include "watch/show/messages.hpp"

#include <algorithm>
#include <cmath>
#include <vector>

namespace vadelwatch {

namespace {

constexpr double legendGap = 44.0;
constexpr double swatchWidth = 44.0;
constexpr double barWidth = 250.0; // of the ramp, and the longest scale bar
constexpr double barHeight = 20.0;
constexpr double textIndent = swatchWidth + 14.0;
constexpr double lineHeight = 27.0;
constexpr double noteHeight = 23.0;

/// Between the legend and the right edge of the picture.
constexpr double rightMargin = 16.0;

constexpr TextStyle noteStyle{labelSize - 3.0, TextAnchor::left};

using ColourRamp = std::vector<MapColour>;

/// Returns the colours of a ramp, or only the one in its middle.
ColourRamp rampOf(ColourOfTone colour, bool isWhole) {
    ColourRamp colours;
    for (int i = 0; i <= 8; ++i) {
        colours.push_back(colour(isWhole ? static_cast<float>(i) / 8.0F : 0.5F));
    }
    return colours;
}

std::string nodesText(std::uint64_t nodes) {
    const std::string count = groupedNumber(nodes);
    return nodes == 1 ? formatMessage("{0} node", count) : formatMessage("{0} nodes", count);
}

std::string polygonsText(std::uint64_t polygons) {
    const std::string count = groupedNumber(polygons);
    return polygons == 1 ? formatMessage("{0} polygon", count) : formatMessage("{0} polygons", count);
}

std::string keptName(const NodeCounts& counts) {
    const std::uint64_t all = counts.kept + counts.dropped + counts.unreadable;
    if (all == 0) {
        return translateMessage("Kept");
    }
    return formatMessage("Kept ({0} %)",
                         shareText(100.0 * static_cast<double>(counts.kept) / static_cast<double>(all)));
}

std::string unreadableText(std::uint64_t lines) {
    const std::string count = groupedNumber(lines);
    return lines == 1 ? formatMessage("{0} line without a position", count)
                      : formatMessage("{0} lines without a position", count);
}

std::vector<std::string> notesOf(const MapLegend& legend) {
    std::vector<std::string> notes;
    const auto addIf = [&notes](bool isNeeded, const std::string& note) {
        if (isNeeded) {
            notes.push_back(note);
        }
    };
    const OutlineCounts& outlines = legend.outlines;
    addIf(legend.hasMarkers, translateMessage("Circle: smaller than 10 pixels"));
    addIf(!legend.hasMarkers && outlines.small > 0,
          formatMessage("{0} smaller than 10 pixels", polygonsText(outlines.small)));
    addIf(outlines.beyond > 0, formatMessage("{0} reaching beyond the map", polygonsText(outlines.beyond)));
    addIf(outlines.tooShort > 0, formatMessage("{0} with fewer than 3 vertices", polygonsText(outlines.tooShort)));
    addIf(legend.outside > 0, formatMessage("{0} outside the map", nodesText(legend.outside)));
    addIf(legend.counts.withoutElevation > 0,
          formatMessage("{0} kept without elevation", nodesText(legend.counts.withoutElevation)));
    addIf(legend.counts.unreadable > 0, unreadableText(legend.counts.unreadable));
    return notes;
}

/// Draws the parts of the legend one below the other.
class LegendColumn {
public:
    LegendColumn(MapCanvas& mapCanvas, const MapView& mapView)
        : canvas(mapCanvas), view(mapView), left(view.plot.left + view.plot.width + legendGap), top(view.plot.top) {}

    /// Draws colours with their name and the number of nodes in them.
    void addSwatch(const ColourRamp& colours, const std::string& name, const std::string& count) {
        canvas.fillGradient({left, top, swatchWidth, barHeight}, colours);
        addEntryText(name, count);
    }

    void addOutline(double lineWidth, const std::string& name, const std::string& count) {
        const double middle = top + barHeight / 2.0;
        canvas.strokeLine({{left, middle}, {left + swatchWidth, middle}}, outlineColour, lineWidth);
        addEntryText(name, count);
    }

    /// Draws ramps of colours, one above the other, with the numbers at both ends.
    void addRamp(const std::string& name, const std::vector<ColourRamp>& ramps, const std::string& low,
                 const std::string& high) {
        drawFitting(name, 0.0, 17.0, noteStyle);
        top += lineHeight;
        const double height = barHeight / static_cast<double>(ramps.size());
        for (const ColourRamp& ramp : ramps) {
            canvas.fillGradient({left, top, barWidth, height}, ramp);
            top += height;
        }
        canvas.drawText(low, {left, top + 20.0}, noteStyle);
        canvas.drawText(high, {left + barWidth, top + 20.0}, {noteStyle.size, TextAnchor::right});
        top += 36.0;
    }

    /// Draws lines of text in one size.
    void addNotes(const std::vector<std::string>& notes) {
        TextStyle style = noteStyle;
        for (const std::string& note : notes) {
            style.size = std::min(style.size, canvas.fittingSize(note, maxWidth(0.0), noteStyle));
        }
        for (const std::string& note : notes) {
            canvas.drawText(note, {left, top + 17.0}, style);
            top += noteHeight;
        }
    }

    /// Draws two halves, filled and empty, with the length in the unit of the data.
    void addScaleBar() {
        constexpr double height = 9.0;
        top += 20.0;
        const TickStep length = stepAtMost(barWidth / scaleOf(view));
        const double pixels = valueOf(length) * scaleOf(view);
        canvas.fillRectangle({left, top, pixels / 2.0, height}, ink);
        canvas.strokeRectangle({left, top, pixels, height}, ink, 1.5);
        canvas.drawText("0", {left, top + 34.0}, {labelSize, TextAnchor::left});
        const TextStyle style{labelSize, TextAnchor::middle};
        const std::string label = formatLength(length);
        const double lastMiddle = left + maxWidth(0.0) - canvas.textWidth(label, style) / 2.0;
        canvas.drawText(label, {std::min(left + pixels, lastMiddle), top + 34.0}, style);
        drawFitting(translateMessage("in units of the coordinates"), 0.0, 58.0, noteStyle);
    }

private:
    void addEntryText(const std::string& name, const std::string& count) {
        drawFitting(name, textIndent, 17.0, {labelSize, TextAnchor::left, true});
        drawFitting(count, textIndent, 17.0 + lineHeight, {labelSize, TextAnchor::left});
        top += 2.0 * lineHeight + 9.0;
    }

    double maxWidth(double indent) const { return view.pictureWidth - rightMargin - left - indent; }

    /// Draws a text, in a smaller size if it would not fit into the picture: counts may have many digits.
    void drawFitting(const std::string& text, double indent, double baseline, TextStyle style) {
        style.size = canvas.fittingSize(text, maxWidth(indent), style);
        canvas.drawText(text, {left + indent, top + baseline}, style);
    }

    MapCanvas& canvas;
    const MapView& view;
    double left;
    double top;
};

/// Returns the number with as many decimals as a range needs.
std::string rampNumber(float number, float range) {
    const int decimals = range > 0.0F ? std::clamp(2 - static_cast<int>(std::floor(std::log10(range))), 0, 6) : 2;
    return decimalNumber(static_cast<double>(number), decimals);
}

} // namespace

std::string titleText(const std::string& input, const std::string& boundary) {
    return formatMessage("{0} clipped to {1}", input, boundary);
}

void drawTitle(MapCanvas& canvas, const MapView& view, const MapTitle& title) {
    constexpr TextStyle style{labelSize + 6.0, TextAnchor::left, true};
    constexpr TextStyle detailStyle{labelSize - 5.0, TextAnchor::left, false, {90, 90, 90}};
    const double maxWidth = view.pictureWidth - view.plot.left - legendGap;
    const double maxNamesWidth = maxWidth - canvas.textWidth(titleText("", ""), style);
    const double inputWidth = std::max(maxNamesWidth / 2.0, maxNamesWidth - canvas.textWidth(title.boundary, style));
    const std::string input = canvas.shortened(title.input, inputWidth, style);
    const std::string boundary =
        canvas.shortened(title.boundary, maxNamesWidth - canvas.textWidth(input, style), style);
    canvas.drawText(titleText(input, boundary), {view.plot.left, view.plot.top - 46.0}, style);
    canvas.drawText(canvas.shortened(title.details, maxWidth, detailStyle), {view.plot.left, view.plot.top - 18.0},
                    detailStyle);
}

void drawLegend(MapCanvas& canvas, const MapView& view, const MapLegend& legend) {
    const ColourRamp kept =
        legend.showsElevation ? rampOf(elevationColour, true) : rampOf(keptColour, legend.showsDensity);
    const ColourRamp dropped = rampOf(droppedColour, legend.showsDensity);
    LegendColumn column(canvas, view);
    column.addSwatch(kept, keptName(legend.counts), nodesText(legend.counts.kept));
    column.addSwatch(dropped, translateMessage("Dropped"), nodesText(legend.counts.dropped));
    column.addOutline(legend.outlineWidth, translateMessage("Boundary"), polygonsText(legend.outlines.all));
    if (legend.showsElevation) {
        const float range = legend.high - legend.low;
        column.addRamp(translateMessage("Elevation of kept nodes"), {kept}, rampNumber(legend.low, range),
                       rampNumber(legend.high, range));
    } else if (legend.showsDensity) {
        const float range = std::max(legend.low, 10.0F);
        column.addRamp(translateMessage("Nodes per pixel"), {kept, dropped}, rampNumber(legend.low, range),
                       rampNumber(legend.high, range));
    }
    column.addNotes(notesOf(legend));
    column.addScaleBar();
}

void drawWarning(MapCanvas& canvas, const MapView& view, const std::string& warning) {
    constexpr double height = 52.0;
    canvas.fillRectangle({view.plot.left, view.plot.top, view.plot.width, height}, {176, 0, 32});
    TextStyle style{labelSize + 2.0, TextAnchor::middle, true, {255, 255, 255}};
    style.size = canvas.fittingSize(warning, view.plot.width - rightMargin, style);
    canvas.drawText(warning, {view.plot.left + view.plot.width / 2.0, view.plot.top + height / 2.0 + 8.0}, style);
}

} // namespace vadelwatch
