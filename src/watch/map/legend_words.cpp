#include "watch/map/legend_words.hpp"

namespace vadelwatch {

namespace {

/// The one text for a single thing, the other for none or more.
std::string counted(std::uint64_t count, const char* one, const char* several) {
    return filledIn(count == 1 ? one : several, {groupedNumber(count)});
}

std::string nodesText(std::uint64_t nodes, const WatchTexts& texts) {
    return counted(nodes, texts.map.node, texts.map.nodes);
}

std::string keptName(const NodeCounts& counts, const WatchTexts& texts) {
    const std::uint64_t all = counts.kept + counts.dropped + counts.unreadable;
    if (all == 0) {
        return texts.map.kept;
    }
    const double percent = 100.0 * static_cast<double>(counts.kept) / static_cast<double>(all);
    return filledIn(texts.map.keptShare, {decimalNumber(percent, 1, texts)});
}

std::vector<std::string> notesOf(const MapLegend& legend, const WatchTexts& texts) {
    std::vector<std::string> notes;
    if (legend.showsDensity) {
        notes.emplace_back(texts.map.darker);
    }
    if (legend.outside > 0) {
        notes.push_back(filledIn(texts.map.beyond, {nodesText(legend.outside, texts)}));
    }
    if (legend.counts.unreadable > 0) {
        notes.push_back(
            counted(legend.counts.unreadable, texts.map.lineWithoutPosition, texts.map.linesWithoutPosition));
    }
    return notes;
}

} // namespace

LegendWords wordsOf(const MapLegend& legend, const WatchTexts& texts) {
    LegendWords words;
    words.kept = {keptName(legend.counts, texts), nodesText(legend.counts.kept, texts)};
    words.dropped = {texts.map.dropped, nodesText(legend.counts.dropped, texts)};
    words.boundary = {texts.map.boundary, counted(legend.polygons, texts.map.polygon, texts.map.polygons)};
    words.showsDensity = legend.showsDensity;
    words.notes = notesOf(legend, texts);
    words.unit = texts.map.coordinateUnits;
    words.decimalPoint = texts.decimalPoint;
    return words;
}

} // namespace vadelwatch
