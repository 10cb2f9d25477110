#include "watch/map/shading.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <limits>

namespace vadelwatch {

namespace {

struct LayerPixel {
    float opacity = 0.0F;
    float tone = 0.0F;
    /// Square of the distance to the nearest centre of a disc that covers part of the pixel.
    int distance = std::numeric_limits<int>::max();
};

/// One layer of discs. Each pixel has the largest opacity and the nearest tone of the discs that cover part of it.
using NodeLayer = std::vector<LayerPixel>;

/// The covered part of each pixel in a small square around the centre of a disc.
struct DiscMask {
    int reach = 0;
    std::vector<float> coverage;
};

DiscMask makeMask(double radius) {
    DiscMask mask;
    mask.reach = radius < 1.0 ? 0 : static_cast<int>(std::ceil(radius));
    for (int y = -mask.reach; y <= mask.reach; ++y) {
        for (int x = -mask.reach; x <= mask.reach; ++x) {
            const double distance = std::hypot(x, y);
            mask.coverage.push_back(static_cast<float>(std::clamp(radius + 0.5 - distance, 0.0, 1.0)));
        }
    }
    if (mask.reach == 0) {
        mask.coverage.front() = 1.0F;
    }
    return mask;
}

void stampDisc(NodeLayer& layer, const MapRaster& raster, const DiscMask& mask, std::ptrdiff_t cell, float tone) {
    const auto column = static_cast<int>(cell % raster.width);
    const auto row = static_cast<int>(cell / raster.width);
    std::size_t place = 0;
    for (int y = row - mask.reach; y <= row + mask.reach; ++y) {
        for (int x = column - mask.reach; x <= column + mask.reach; ++x) {
            const float coverage = mask.coverage[place++];
            if (coverage == 0.0F || y < 0 || y >= raster.height || x < 0 || x >= raster.width) {
                continue;
            }
            LayerPixel& pixel = layer[static_cast<std::size_t>(y) * static_cast<std::size_t>(raster.width) +
                                      static_cast<std::size_t>(x)];
            pixel.opacity = std::max(pixel.opacity, coverage);
            const int distance = (x - column) * (x - column) + (y - row) * (y - row);
            if (distance < pixel.distance) {
                pixel.distance = distance;
                pixel.tone = tone;
            }
        }
    }
}

NodeLayer makeLayer(const MapRaster& raster, std::span<const float> tones, const DiscMask& mask,
                    bool RasterCell::*belongs) {
    NodeLayer layer(raster.cells.size());
    for (std::size_t cell = 0; cell < raster.cells.size(); ++cell) {
        if (raster.cells[cell].*belongs) {
            stampDisc(layer, raster, mask, static_cast<std::ptrdiff_t>(cell), tones[cell]);
        }
    }
    return layer;
}

MapColour mix(MapColour from, MapColour to, float share) {
    const auto part = [share](std::uint8_t a, std::uint8_t b) {
        return static_cast<std::uint8_t>(
            std::lround(static_cast<float>(a) * (1.0F - share) + static_cast<float>(b) * share));
    };
    return {part(from.red, to.red), part(from.green, to.green), part(from.blue, to.blue)};
}

/// Blends a colour over a pixel whose colours are multiplied by its opacity.
void blend(std::uint32_t& pixel, MapColour colour, float opacity) {
    const auto part = [&pixel, opacity](unsigned int shift, int above) {
        const auto below = static_cast<float>((pixel >> shift) & 0xFFU);
        return static_cast<std::uint32_t>(std::lround(below * (1.0F - opacity) + static_cast<float>(above) * opacity))
               << shift;
    };
    pixel = part(24, 255) | part(16, colour.red) | part(8, colour.green) | part(0, colour.blue);
}

/// Draws consecutive discs of the same colour together.
void drawLayerDiscs(MapCanvas& canvas, const MapRaster& raster, std::span<const float> tones, double radius,
                    PixelPosition corner, bool RasterCell::*belongs, ColourOfTone colourOfTone) {
    std::vector<PixelPosition> centres;
    MapColour colour;
    for (std::size_t cell = 0; cell < raster.cells.size(); ++cell) {
        if (!(raster.cells[cell].*belongs)) {
            continue;
        }
        const MapColour next = colourOfTone(tones[cell]);
        if (next != colour) {
            canvas.fillDiscs(centres, radius, colour);
            centres.clear();
        }
        colour = next;
        const std::size_t row = cell / static_cast<std::size_t>(raster.width);
        const std::size_t column = cell % static_cast<std::size_t>(raster.width);
        centres.push_back({corner.x + static_cast<double>(column) + 0.5, corner.y + static_cast<double>(row) + 0.5});
    }
    canvas.fillDiscs(centres, radius, colour);
}

} // namespace

MapColour keptColour(float tone) {
    return mix({122, 184, 232}, {8, 72, 140}, tone);
}

MapColour droppedColour(float tone) {
    return mix({222, 222, 222}, {150, 150, 150}, tone);
}

MapColour elevationColour(float tone) {
    // Every 32nd colour of viridis, which is perceptually uniform and safe for the colour-blind: by Nathaniel Smith, Stefan van
    // der Walt and Eric Firing for matplotlib, CC0.
    constexpr std::array<MapColour, 9> viridis{{{68, 1, 84},
                                                {71, 44, 122},
                                                {59, 81, 139},
                                                {44, 113, 142},
                                                {33, 144, 141},
                                                {39, 173, 129},
                                                {92, 200, 99},
                                                {170, 220, 50},
                                                {253, 231, 37}}};
    if (tone < 0.0F) {
        return {60, 60, 60};
    }
    const float place = tone * (viridis.size() - 1);
    const std::size_t below = std::min(static_cast<std::size_t>(place), viridis.size() - 2);
    return mix(viridis[below], viridis[below + 1], place - static_cast<float>(below));
}

double discRadius(double nodeSpacing) {
    // At least the eight pixels around a node, because crowded nodes at random positions leave some pixels empty: a share of
    // e^-n for n nodes per pixel.
    const double spacing = std::max(std::ceil(nodeSpacing), 2.0);
    // Discs around the corners of a square cover it if their radius is at least half its diagonal. Centres are whole
    // pixels, so at a spacing of 3.1 some are 4 apart.
    constexpr double halfDiagonal = 0.7072;
    constexpr double softEdge = 0.5;
    const double largest = nodeSpacing < 12.0 ? 4.0 : 6.0;
    return std::min(spacing * halfDiagonal + softEdge, largest);
}

PixelImage shadeNodes(const MapRaster& raster, const NodeShades& shades, double radius) {
    PixelImage image{raster.width, raster.height, std::vector<std::uint32_t>(raster.cells.size())};
    const DiscMask mask = makeMask(radius);
    const NodeLayer dropped = makeLayer(raster, shades.dropped, mask, &RasterCell::anyDropped);
    const NodeLayer kept = makeLayer(raster, shades.kept, mask, &RasterCell::anyKept);
    for (std::size_t i = 0; i < image.pixels.size(); ++i) {
        // Kept nodes are on top, unless a dropped one is nearer. Otherwise the discs, which are larger than the area of
        // their nodes, would show the colour of kept ones on the other side of the outline.
        if (dropped[i].distance < kept[i].distance) {
            blend(image.pixels[i], shades.colourOfKept(kept[i].tone), kept[i].opacity);
            blend(image.pixels[i], droppedColour(dropped[i].tone), dropped[i].opacity);
        } else {
            blend(image.pixels[i], droppedColour(dropped[i].tone), dropped[i].opacity);
            blend(image.pixels[i], shades.colourOfKept(kept[i].tone), kept[i].opacity);
        }
    }
    return image;
}

PixelImage shadeKeptCells(const MapRaster& raster, const NodeShades& shades) {
    PixelImage image{raster.width, raster.height, std::vector<std::uint32_t>(raster.cells.size())};
    for (std::size_t i = 0; i < image.pixels.size(); ++i) {
        if (raster.cells[i].anyKept) {
            blend(image.pixels[i], shades.colourOfKept(shades.kept[i]), 1.0F);
        }
    }
    return image;
}

void drawDiscs(MapCanvas& canvas, const MapRaster& raster, const NodeShades& shades, double radius,
               PixelPosition corner) {
    drawLayerDiscs(canvas, raster, shades.dropped, radius, corner, &RasterCell::anyDropped, droppedColour);
    drawLayerDiscs(canvas, raster, shades.kept, radius, corner, &RasterCell::anyKept, shades.colourOfKept);
}

} // namespace vadelwatch
