#include "watch/check/input_report.hpp"

#include <algorithm>
#include <array>
#include <map>

namespace vadelwatch {

namespace {

bool overlap(const MapExtent& first, const MapExtent& second) {
    return first.minX <= second.maxX && second.minX <= first.maxX && first.minY <= second.maxY &&
           second.minY <= first.maxY;
}

/// Returns true if only the exchanged extent overlaps the boundary. An empty extent overlaps nothing.
bool looksExchanged(const MapExtent& positions, const MapExtent& boundary) {
    const MapExtent exchanged{positions.minY, positions.minX, positions.maxY, positions.maxX};
    return !overlap(positions, boundary) && overlap(exchanged, boundary);
}

NothingKept explain(const NodeFiles& nodeFiles, const BoundaryFacts& boundary) {
    NothingKept nothing;
    for (const NodeFile& file : nodeFiles.files) {
        if (const auto figures = readLineFigures(file.path, PositionsToRead::all, false)) {
            nothing.nodes = joinExtents(nothing.nodes, figures->positions);
        }
    }
    nothing.boundary = boundary.extent;
    if (boundary.polygons == 0) {
        nothing.reason = NothingKeptReason::noPolygon;
    } else if (isEmpty(nothing.nodes)) {
        nothing.reason = NothingKeptReason::noPosition;
    } else if (boundary.mostVertices < 3) {
        nothing.reason = NothingKeptReason::fewVertices;
    } else if (looksExchanged(nothing.nodes, boundary.extent)) {
        nothing.reason = NothingKeptReason::exchanged;
    } else if (!overlap(nothing.nodes, boundary.extent)) {
        nothing.reason = NothingKeptReason::apart;
    }
    return nothing;
}

} // namespace

std::uint64_t InputFile::outside() const {
    const std::uint64_t other = kept + figures.unparsable.count;
    return figures.count.nodeLines() > other ? figures.count.nodeLines() - other : 0;
}

InputReport reportEntries(const NodeFiles& nodeFiles) {
    return {
        {}, nodeFiles.passedOver, nodeFiles.files.size() + nodeFiles.unread.size() + nodeFiles.passedOver.size(), {}};
}

InputReport reportInput(const NodeFiles& nodeFiles, const OutputCheck& check, const std::string& boundaryFile) {
    InputReport report = reportEntries(nodeFiles);
    std::map<std::string, std::uint64_t> kept;
    for (const OutputFile& output : check.files) {
        kept[output.name] = output.nodeLines;
    }
    std::optional<BoundaryFacts> boundary;
    for (const NodeFile& file : nodeFiles.files) {
        if (!boundary && !kept.contains(file.name)) {
            boundary = readBoundaryFacts(boundaryFile);
        }
        const bool exchanged = !kept.contains(file.name) && looksExchanged(file.figures.positions, boundary->extent);
        if (nodeFiles.areRead) {
            report.files.push_back({file.name, file.figures, kept[file.name], exchanged});
        }
    }
    if (check.addsUp && check.nodeLines == 0 && nodeFiles.unread.empty()) {
        report.nothingKept = explain(nodeFiles, boundary.value_or(BoundaryFacts{}));
    }
    return report;
}

const char* nameOf(PassedOver reason) {
    constexpr std::array names{"suffix",
                               "capitals in the suffix",
                               "directory",
                               "unreadable",
                               "empty first line",
                               "first line without end",
                               "header: first character",
                               "header: separator",
                               "header: columns"};
    return names.at(static_cast<std::size_t>(reason));
}

const char* nameOf(NothingKeptReason reason) {
    constexpr std::array names{
        "no polygon", "fewer than three points", "no position", "x and y exchanged", "no overlap", "outside"};
    return names.at(static_cast<std::size_t>(reason));
}

} // namespace vadelwatch
