#include "watch/check/input_report.hpp"

#include "watch/check/outlines.hpp"

#include <algorithm>
#include <map>

namespace vadelwatch {

namespace {

bool overlap(const MapExtent& first, const MapExtent& second) {
    return !isEmpty(intersect(first, second));
}

/// Returns true if only the exchanged extent overlaps the boundary. An empty extent overlaps nothing.
bool looksExchanged(const MapExtent& positions, const MapExtent& boundary) {
    const MapExtent exchanged{positions.minY, positions.minX, positions.maxY, positions.maxX};
    return !overlap(positions, boundary) && overlap(exchanged, boundary);
}

NothingKeptReason reasonOf(const NothingKept& nothing, const MapOutlines& outlines, bool areNodesRead) {
    if (outlines.empty()) {
        return NothingKeptReason::noPolygon;
    }
    const bool hasFewVertices = std::ranges::all_of(outlines, [](const auto& outline) { return outline.size() < 3; });
    if (!areNodesRead) {
        return hasFewVertices ? NothingKeptReason::fewVertices : NothingKeptReason::unknown;
    }
    if (isEmpty(nothing.nodes)) {
        return NothingKeptReason::noPosition;
    }
    if (looksExchanged(nothing.nodes, nothing.boundary)) {
        return NothingKeptReason::exchanged;
    }
    // Polygons without points have no extent.
    if (!isEmpty(nothing.boundary) && !overlap(nothing.nodes, nothing.boundary)) {
        return NothingKeptReason::noOverlap;
    }
    return hasFewVertices ? NothingKeptReason::fewVertices : NothingKeptReason::outside;
}

} // namespace

std::optional<std::uint64_t> InputFile::outside() const {
    const std::uint64_t other = kept.value_or(0) + figures.unparsable.count;
    return addsUp && other <= figures.count.nodeLines() ? std::optional(figures.count.nodeLines() - other)
                                                        : std::nullopt;
}

InputReport reportEntries(const NodeFiles& nodeFiles) {
    return {
        {}, nodeFiles.passedOver, nodeFiles.files.size() + nodeFiles.unread.size() + nodeFiles.passedOver.size(), {}};
}

InputReport reportInput(const NodeFiles& nodeFiles, const OutputCheck& check, const std::string& boundaryFile) {
    InputReport report = reportEntries(nodeFiles);
    std::map<std::string, std::optional<std::uint64_t>> kept;
    for (const OutputFile& output : check.files) {
        kept[output.name] = isCounted(output) ? std::optional(output.nodeLines) : std::nullopt;
    }
    MapOutlines outlines;
    const auto hasOutput = [&kept, &check](const NodeFile& file) {
        return check.directoryError || kept.contains(file.name);
    };
    if (check.nodeLines == 0 || !std::ranges::all_of(nodeFiles.files, hasOutput)) {
        readMapOutlines(boundaryFile, outlines);
    }
    NothingKept nothing{NothingKeptReason::outside, {}, extentOf(outlines), !nodeFiles.areRead};
    for (const NodeFile& file : nodeFiles.files) {
        const bool exchanged = !hasOutput(file) && looksExchanged(file.figures.positions, nothing.boundary);
        nothing.nodes = joinExtents(nothing.nodes, file.figures.positions);
        nothing.isSampled = nothing.isSampled || file.figures.isSampled;
        if (nodeFiles.areRead) {
            const std::optional<std::uint64_t> lines =
                hasOutput(file) ? kept[file.name] : std::optional(std::uint64_t{0});
            report.files.push_back({file.name, file.figures, lines, exchanged, check.addsUp});
        }
    }
    if (check.addsUp && check.nodeLines == 0) {
        nothing.reason = reasonOf(nothing, outlines, nodeFiles.areRead);
        report.nothingKept = nothing;
    }
    return report;
}

} // namespace vadelwatch
