#include "watch/map/legend_words.hpp"

#include "watch/show/messages.hpp"

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
    const double percent = 100.0 * static_cast<double>(counts.kept) / static_cast<double>(all);
    return formatMessage("Kept ({0} %)", decimalNumber(percent, 1));
}

std::vector<std::string> notesOf(const MapLegend& legend) {
    std::vector<std::string> notes;
    if (legend.showsDensity) {
        notes.push_back(translateMessage("Darker: more nodes in one place"));
    }
    if (legend.outside > 0) {
        notes.push_back(formatMessage("{0} outside the map", nodesText(legend.outside)));
    }
    if (legend.counts.unreadable > 0) {
        notes.push_back(unreadableText(legend.counts.unreadable));
    }
    return notes;
}

} // namespace

LegendWords wordsOf(const MapLegend& legend) {
    LegendWords words;
    words.kept = {keptName(legend.counts), nodesText(legend.counts.kept)};
    words.dropped = {translateMessage("Dropped"), nodesText(legend.counts.dropped)};
    words.boundary = {translateMessage("Boundary"), polygonsText(legend.polygons)};
    words.showsDensity = legend.showsDensity;
    words.notes = notesOf(legend);
    words.unit = translateMessage("in units of the coordinates");
    return words;
}

} // namespace vadelwatch
