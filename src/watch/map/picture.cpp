#include "watch/map/picture.hpp"

#include "watch/check/outlines.hpp"
#include "watch/map/canvas.hpp"
#include "watch/map/layout.hpp"
#include "watch/map/legend.hpp"
#include "watch/map/outline_layer.hpp"
#include "watch/map/picture_file.hpp"
#include "watch/map/points.hpp"
#include "watch/map/raster.hpp"
#include "watch/map/shading.hpp"
#include "watch/show/messages.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <cstring>
#include <filesystem>

namespace vadelwatch {

namespace {

/// Up to this many cells with nodes are drawn as separate discs, more of them as one image.
constexpr std::size_t maxDiscs = 3000;

/// Up to this many nodes stay in memory between the search for their extent and the count for each pixel. More of them
/// are read a second time: 24 bytes for each would soon be more than the rest of the process.
constexpr std::size_t maxNodesInMemory = 1'000'000;

/// The data of the map.
struct MapContent {
    MapOutlines outlines;
    NodeCounts counts;
    MapExtent kept;
    MapExtent dropped;
    std::vector<MapNode> nodes; ///< Empty unless all are in memory.
    bool hasAllNodes = true;
    std::uint64_t visits = 0; ///< Nodes read in all passes.
};

/// Counts the visit of a node. Shows the percentage from time to time, up to 90: drawing takes the rest of the time.
void noteVisit(const MapRequest& request, MapContent& content) {
    constexpr std::uint64_t visitsBetween = 1 << 16;
    if (++content.visits % visitsBetween == 0 && request.nodes > 0 && request.showPercent) {
        const double passes = request.nodes > maxNodesInMemory ? 2.0 : 1.0;
        const double share = static_cast<double>(content.visits) / (passes * static_cast<double>(request.nodes));
        request.showPercent(90.0 * std::min(1.0, share));
    }
}

/// Reads the outlines, counts the nodes and finds their extent.
std::string readContent(const MapRequest& request, MapContent& content) {
    std::string error = readMapOutlines(request.boundaryFile, content.outlines);
    if (!error.empty()) {
        return error;
    }
    if (!request.nodeFiles.isListed) {
        return formatMessage("The input directory {0} cannot be read.", request.inputDirectory);
    }
    return visitNodes(
        request.nodeFiles.files, request.outputDirectory, content.counts,
        [&request, &content](const MapNode& node) {
            noteVisit(request, content);
            includePosition(node.kept ? content.kept : content.dropped, node.position);
            if (content.nodes.size() == maxNodesInMemory) {
                content.hasAllNodes = false;
                content.nodes = {};
            }
            if (content.hasAllNodes) {
                content.nodes.push_back(node);
            }
        },
        request.showsElevation);
}

/// Shows all nodes if none was kept, because the user then wants to see where they are.
MapExtent frameOf(const MapContent& content) {
    const MapExtent outlines = extentOf(content.outlines);
    const MapExtent points = joinExtents(content.kept, content.dropped);
    return content.counts.kept == 0 ? joinExtents(points, outlines) : chooseFrame(points, outlines);
}

MapView layOut(const MapExtent& frame, PictureSize size) {
    MapCanvas scratch(PictureFormat::png, 1, 1);
    const auto labelWidth = [&scratch](const std::string& label) {
        return scratch.textWidth(label, {labelSize, TextAnchor::left});
    };
    return layOutMap(addMargin(frame), labelWidth, size);
}

/// Counts the nodes of each pixel.
std::string countNodes(const MapRequest& request, MapContent& content, MapRaster& raster) {
    const auto count = [&raster](const MapNode& node) { countNode(raster, node.position, node.kept, node.elevation); };
    if (content.hasAllNodes) {
        std::for_each(content.nodes.begin(), content.nodes.end(), count);
        return "";
    }
    const auto readAndCount = [&](const MapNode& node) {
        noteVisit(request, content);
        count(node);
    };
    NodeCounts counts;
    return visitNodes(request.nodeFiles.files, request.outputDirectory, counts, readAndCount, request.showsElevation);
}

void drawNodes(MapCanvas& canvas, const MapView& view, const MapRaster& raster, const NodeShades& shades) {
    const double radius = discRadius(nodeSpacing(raster));
    const PixelPosition corner{view.plot.left, view.plot.top};
    canvas.beginClip(view.plot);
    if (occupiedCells(raster) <= maxDiscs) {
        drawDiscs(canvas, raster, shades, radius, corner);
    } else {
        canvas.drawImage(shadeNodes(raster, shades, radius), corner);
    }
    canvas.endClip();
}

/// Draws circles around groups of nodes and outlines that are too small to be seen.
/// @return true if there is any.
bool drawMarkers(MapCanvas& canvas, const MapView& view, const MapContent& content, const OutlineCounts& counts) {
    constexpr MapColour dropped{110, 110, 110}; // darker than the nodes, so that its label is readable
    bool any = drawMarker(canvas, view, content.dropped, dropped, translateMessage("Dropped"));
    any = drawMarker(canvas, view, content.kept, keptColour(1.0F), translateMessage("Kept")) || any;
    // A circle around the whole boundary replaces those around its polygons.
    return drawMarker(canvas, view, extentOf(content.outlines), outlineColour, translateMessage("Boundary")) ||
           markSmallOutlines(canvas, view, content.outlines, counts) || any;
}

/// Returns the last component of a path, also if a separator follows it.
std::string lastComponent(const std::string& path) {
    const std::filesystem::path whole(path);
    return shownName((whole.has_filename() ? whole : whole.parent_path()).filename().native());
}

MapTitle titleOf(const MapRequest& request) {
    return {lastComponent(request.inputDirectory), lastComponent(request.boundaryFile),
            formatMessage("Input {0}, output {1}, boundary {2}, {3}", request.inputDirectory, request.outputDirectory,
                          request.boundaryFile, request.date)};
}

/// Returns the six lines of a world file: size of a pixel, rotation, and position of the middle of the top left pixel.
std::string worldFileText(const MapView& view) {
    const double unit = 1.0 / scaleOf(view);
    return fmt::format("{}\n0\n0\n{}\n{}\n{}\n", unit, -unit, view.shown.minX + (0.5 - view.plot.left) * unit,
                       view.shown.maxY - (0.5 - view.plot.top) * unit);
}

void drawPicture(MapCanvas& canvas, const MapRequest& request, const MapView& view, const MapContent& content,
                 const MapRaster& raster) {
    const MapTones density = measureDensity(raster);
    const MapTones elevations = measureElevations(raster);
    const bool showsElevation = !elevations.tones.empty();
    const MapTones& shown = showsElevation ? elevations : density;
    const NodeShades shades = showsElevation ? NodeShades(density, elevations) : NodeShades(density);
    drawTitle(canvas, view, titleOf(request));
    drawGrid(canvas, view);
    drawNodes(canvas, view, raster, shades);
    const double outlineWidth = outlineWidthOf(content.outlines);
    drawOutlines(canvas, view, content.outlines, outlineWidth);
    if (occupiedCells(raster) > maxDiscs) {
        canvas.drawImage(shadeKeptCells(raster, shades), {view.plot.left, view.plot.top});
    }
    const OutlineCounts outlines = countOutlines(content.outlines, view);
    const bool hasMarkers = drawMarkers(canvas, view, content, outlines);
    drawAxes(canvas, view);
    drawLegend(canvas, view,
               {content.counts, raster.outside, outlines, density.uneven, hasMarkers, showsElevation, shown.low,
                shown.high, outlineWidth});
    if (!request.warning.empty()) {
        drawWarning(canvas, view, request.warning);
    }
}

} // namespace

std::string drawMap(const MapRequest& request) {
    const std::string worldFile = worldFileOf(request.pictureFile);
    removeOldPicture(request.pictureFile);
    removeOldPicture(worldFile);
    MapContent content;
    std::string error = readContent(request, content);
    if (!error.empty()) {
        return error;
    }
    const MapExtent frame = frameOf(content);
    if (isEmpty(frame)) {
        return translateMessage("There is nothing to draw: no node has a position and the boundary has no vertex.");
    }
    const MapView view = layOut(frame, request.size);
    MapRaster raster = makeRaster(static_cast<int>(view.plot.width), static_cast<int>(view.plot.height), view.shown,
                                  request.showsElevation);
    error = countNodes(request, content, raster);
    if (!error.empty()) {
        return error;
    }
    const MapTitle title = titleOf(request);
    const PictureFormat format = request.pictureFile.ends_with(".svg") ? PictureFormat::svg : PictureFormat::png;
    MapCanvas canvas(format, view.pictureWidth, view.pictureHeight, titleText(title.input, title.boundary));
    drawPicture(canvas, request, view, content, raster);
    if (const int failure = writePictureFile(request.pictureFile, canvas.finish())) {
        return formatMessage("The map {0} cannot be written: {1}.", request.pictureFile, std::strerror(failure));
    }
    const int failure = worldFile.empty() ? 0 : writePictureFile(worldFile, worldFileText(view));
    return failure == 0 ? ""
                        : formatMessage("The world file {0} of the map cannot be written: {1}.", worldFile,
                                        std::strerror(failure));
}

} // namespace vadelwatch
