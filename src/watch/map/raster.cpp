#include "watch/map/raster.hpp"

#include <algorithm>
#include <cmath>
#include <cstddef>
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

/// The average of a cell includes this many cells on each of its sides.
constexpr int reach = 2;
constexpr float evenTone = 0.5F;

/// Tones differ if the ratio of the 98th to the 2nd percentile is at least this.
constexpr float unevenRatio = 4.0F;

/// Returns the mean of the cells with nodes around a cell, the cell included.
float averageAround(const MapRaster& raster, int column, int row) {
    float nodes = 0.0F;
    float cells = 0.0F;
    for (int y = std::max(0, row - reach); y <= std::min(raster.height - 1, row + reach); ++y) {
        const RasterCell* const cellsOfRow = raster.cells.data() + static_cast<std::ptrdiff_t>(y) * raster.width;
        for (int x = std::max(0, column - reach); x <= std::min(raster.width - 1, column + reach); ++x) {
            nodes += static_cast<float>(cellsOfRow[x].nodes);
            cells += cellsOfRow[x].nodes > 0 ? 1.0F : 0.0F;
        }
    }
    return nodes / cells;
}

std::vector<float> averageCounts(const MapRaster& raster) {
    std::vector<float> averages;
    averages.reserve(raster.cells.size());
    for (int row = 0; row < raster.height; ++row) {
        for (int column = 0; column < raster.width; ++column) {
            const bool hasNodes = raster.cells[indexOf(raster, column, row)].nodes > 0;
            averages.push_back(hasNodes ? averageAround(raster, column, row) : 0.0F);
        }
    }
    return averages;
}

/// @param sample not empty; is reordered.
float percentile(std::vector<float>& sample, double share) {
    const auto place = static_cast<std::ptrdiff_t>(share * static_cast<double>(sample.size() - 1));
    std::nth_element(sample.begin(), sample.begin() + place, sample.end());
    return sample[static_cast<std::size_t>(place)];
}

/// Logarithmic, so that ten times the density is the same difference in tone everywhere.
float toneOf(float average, float low, float high) {
    return std::clamp(std::log(average / low) / std::log(high / low), 0.0F, 1.0F);
}

} // namespace

MapRaster makeRaster(int width, int height, const MapExtent& shown, bool showsElevation) {
    const std::size_t cells = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
    return {width, height, shown, std::vector<RasterCell>(cells),
            std::vector<CellElevation>(showsElevation ? cells : 0)};
}

void countNode(MapRaster& raster, MapPosition position, bool kept, float elevation) {
    const MapExtent& shown = raster.shown;
    if (!holds(shown, position)) {
        ++raster.outside;
        return;
    }
    const int column = cellOf(position.x - shown.minX, widthOf(shown), raster.width);
    const int row = cellOf(shown.maxY - position.y, heightOf(shown), raster.height);
    const std::size_t index = indexOf(raster, column, row);
    RasterCell& cell = raster.cells[index];
    cell.nodes += cell.nodes < std::numeric_limits<std::uint32_t>::max() ? 1U : 0U;
    cell.anyKept = cell.anyKept || kept;
    cell.anyDropped = cell.anyDropped || !kept;
    if (!raster.elevations.empty() && !std::isnan(elevation)) {
        CellElevation& mean = raster.elevations[index];
        ++mean.nodes;
        mean.mean += (elevation - mean.mean) / static_cast<float>(mean.nodes);
    }
}

std::size_t occupiedCells(const MapRaster& raster) {
    return static_cast<std::size_t>(
        std::count_if(raster.cells.begin(), raster.cells.end(), [](const RasterCell& cell) { return cell.nodes > 0; }));
}

double nodeSpacing(const MapRaster& raster) {
    const auto side = static_cast<std::size_t>(blockSide);
    const std::size_t blocksPerRow = static_cast<std::size_t>(raster.width) / side + 1;
    std::vector<bool> isCovered(blocksPerRow * (static_cast<std::size_t>(raster.height) / side + 1));
    double occupied = 0.0;
    for (int row = 0; row < raster.height; ++row) {
        for (int column = 0; column < raster.width; ++column) {
            if (raster.cells[indexOf(raster, column, row)].nodes > 0) {
                isCovered[static_cast<std::size_t>(row) / side * blocksPerRow +
                          static_cast<std::size_t>(column) / side] = true;
                occupied += 1.0;
            }
        }
    }
    const auto blocks = static_cast<double>(std::ranges::count(isCovered, true));
    return occupied > 0.0 ? std::sqrt(blocks * blockSide * blockSide / occupied) : 0.0;
}

MapTones measureDensity(const MapRaster& raster) {
    MapTones density;
    density.tones = averageCounts(raster);
    std::vector<float> sample;
    std::ranges::copy_if(density.tones, std::back_inserter(sample), [](float average) { return average > 0.0F; });
    if (sample.empty()) {
        return density;
    }
    density.low = percentile(sample, 0.02);
    density.high = percentile(sample, 0.98);
    density.uneven = density.high >= unevenRatio * density.low;
    for (float& tone : density.tones) {
        if (tone > 0.0F) {
            tone = density.uneven ? toneOf(tone, density.low, density.high) : evenTone;
        }
    }
    return density;
}

MapTones measureElevations(const MapRaster& raster) {
    MapTones elevations;
    std::vector<float> sample;
    for (const CellElevation& cell : raster.elevations) {
        if (cell.nodes > 0) {
            sample.push_back(cell.mean);
        }
    }
    if (sample.empty()) {
        return elevations;
    }
    // Values such as -9999 for "no data" would take most colours, so the percentiles are computed without them.
    const float lower = percentile(sample, 0.25);
    const float upper = percentile(sample, 0.75);
    const float fence = 3.0F * (upper - lower);
    if (fence > 0.0F) {
        std::erase_if(sample, [=](float mean) { return mean < lower - fence || mean > upper + fence; });
    }
    elevations.low = percentile(sample, 0.02);
    elevations.high = percentile(sample, 0.98);
    const float range = elevations.high - elevations.low;
    for (const CellElevation& cell : raster.elevations) {
        const float tone = range > 0.0F ? std::clamp((cell.mean - elevations.low) / range, 0.0F, 1.0F) : evenTone;
        elevations.tones.push_back(cell.nodes > 0 ? tone : -1.0F);
    }
    return elevations;
}

} // namespace vadelwatch
