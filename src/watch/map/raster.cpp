#include "watch/map/raster.hpp"

#include <algorithm>
#include <cmath>
#include <limits>

namespace vadelwatch {

namespace {

/// The side of a block of cells. A block with a node counts as covered.
constexpr int blockSide = 16;

std::size_t indexOf(const MapRaster& raster, int column, int row) {
    return static_cast<std::size_t>(row) * static_cast<std::size_t>(raster.width) + static_cast<std::size_t>(column);
}

/// The upper limit of the raster belongs to its last cell.
int cellOf(double distance, double length, int cells) {
    return std::clamp(static_cast<int>(distance / length * cells), 0, cells - 1);
}

/// Adds up the cells of the block at this corner, which the end of the raster may cut.
double nodesOfBlock(const MapRaster& raster, int firstColumn, int firstRow) {
    double nodes = 0.0;
    for (int row = firstRow; row < std::min(firstRow + blockSide, raster.height); ++row) {
        for (int column = firstColumn; column < std::min(firstColumn + blockSide, raster.width); ++column) {
            nodes += raster.cells[indexOf(raster, column, row)].nodes;
        }
    }
    return nodes;
}

} // namespace

MapRaster makeRaster(int width, int height, const MapExtent& shown) {
    MapRaster raster;
    raster.width = width;
    raster.height = height;
    raster.shown = shown;
    raster.cells.resize(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
    return raster;
}

void countNode(MapRaster& raster, MapPosition position, bool kept) {
    const MapExtent& shown = raster.shown;
    if (!holds(shown, position)) {
        ++raster.outside;
        return;
    }
    const int column = cellOf(position.x - shown.minX, widthOf(shown), raster.width);
    const int row = cellOf(shown.maxY - position.y, heightOf(shown), raster.height);
    RasterCell& cell = raster.cells[indexOf(raster, column, row)];
    if (cell.nodes < std::numeric_limits<std::uint32_t>::max()) {
        ++cell.nodes;
    }
    cell.anyKept = cell.anyKept || kept;
    cell.anyDropped = cell.anyDropped || !kept;
}

std::size_t occupiedCells(const MapRaster& raster) {
    return static_cast<std::size_t>(
        std::count_if(raster.cells.begin(), raster.cells.end(), [](const RasterCell& cell) { return cell.nodes > 0; }));
}

double nodeSpacing(const MapRaster& raster) {
    double nodes = 0.0;
    double coveredBlocks = 0.0;
    for (int row = 0; row < raster.height; row += blockSide) {
        for (int column = 0; column < raster.width; column += blockSide) {
            const double nodesHere = nodesOfBlock(raster, column, row);
            nodes += nodesHere;
            coveredBlocks += nodesHere > 0.0 ? 1.0 : 0.0;
        }
    }
    return nodes > 0.0 ? std::sqrt(coveredBlocks * blockSide * blockSide / nodes) : 0.0;
}

} // namespace vadelwatch
