#include "watch/map/raster.hpp"

#include "watch/map/shading.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>
#include <sstream>
#include <string>

namespace vadelwatch {

namespace {

/// Row by row from the top: the number of nodes in a cell, followed by k, d or b for kept, dropped, both.
std::string describe(const MapRaster& raster) {
    std::ostringstream text;
    for (std::size_t i = 0; i < raster.cells.size(); ++i) {
        const RasterCell& cell = raster.cells[i];
        text << cell.nodes << (cell.anyKept ? (cell.anyDropped ? "b" : "k") : (cell.anyDropped ? "d" : ""));
        text << ((i + 1) % static_cast<std::size_t>(raster.width) == 0 ? "/" : " ");
    }
    return text.str();
}

/// One node in the middle of each n-th cell of a square raster, both ways.
MapRaster gridRaster(int side, int distance) {
    MapRaster raster = makeRaster(side, side, {0, 0, static_cast<double>(side), static_cast<double>(side)});
    for (int y = 0; y < side; y += distance) {
        for (int x = 0; x < side; x += distance) {
            countNode(raster, {x + 0.5, y + 0.5}, false);
        }
    }
    return raster;
}

} // namespace

TEST(MapRaster, countsNodesInTheirCells) {
    MapRaster raster = makeRaster(3, 2, {10, 20, 16, 24});
    countNode(raster, {10, 20}, false);
    countNode(raster, {11.9, 21.9}, false);
    countNode(raster, {12.1, 21.9}, true);
    countNode(raster, {13, 23}, true);
    countNode(raster, {13, 23}, false);
    countNode(raster, {16, 24}, true);
    EXPECT_EQ("0 2b 1k/2d 1k 0/", describe(raster));
    EXPECT_EQ(4U, occupiedCells(raster));
    EXPECT_EQ(0U, raster.outside);
}

TEST(MapRaster, countsNodesOutsideSeparately) {
    MapRaster raster = makeRaster(2, 2, {0, 0, 2, 2});
    for (const MapPosition position : {MapPosition{-0.001, 1}, {1, 2.001}, {1e308, 1}, {1, -1e308}, {NAN, 1}}) {
        countNode(raster, position, true);
    }
    EXPECT_EQ("0 0/0 0/", describe(raster));
    EXPECT_EQ(5U, raster.outside);
    EXPECT_EQ(0U, occupiedCells(raster));
}

TEST(MapRaster, fullCellStaysFull) {
    MapRaster raster = makeRaster(1, 1, {0, 0, 1, 1});
    raster.cells[0].nodes = std::numeric_limits<std::uint32_t>::max();
    countNode(raster, {0.5, 0.5}, true);
    EXPECT_EQ("4294967295k/", describe(raster));
}

TEST(MapRaster, spacingMatchesEvenSpread) {
    EXPECT_EQ(0.0, nodeSpacing(makeRaster(64, 64, {0, 0, 1, 1})));
    EXPECT_DOUBLE_EQ(1.0, nodeSpacing(gridRaster(64, 1)));
    EXPECT_DOUBLE_EQ(4.0, nodeSpacing(gridRaster(64, 4)));
    // Only the part that has nodes counts.
    MapRaster corner = gridRaster(16, 2);
    MapRaster large = makeRaster(160, 160, {0, 0, 160, 160});
    for (int i = 0; i < 16; ++i) {
        std::copy_n(corner.cells.begin() + i * 16, 16, large.cells.begin() + i * 160);
    }
    EXPECT_DOUBLE_EQ(2.0, nodeSpacing(large));
}

TEST(MapDensity, evenNodesHaveOneTone) {
    const MapRaster raster = gridRaster(20, 4);
    const MapTones density = measureDensity(raster);
    EXPECT_FALSE(density.uneven);
    for (std::size_t i = 0; i < raster.cells.size(); ++i) {
        EXPECT_EQ(raster.cells[i].nodes > 0 ? 0.5F : 0.0F, density.tones[i]) << i;
    }
    EXPECT_FALSE(measureDensity(makeRaster(4, 4, {0, 0, 1, 1})).uneven);
}

TEST(MapDensity, regularGridMakesNoMoire) {
    // 27 nodes over 10 pixels: 2 or 3 in each direction, 4 to 9 in a pixel.
    MapRaster raster = makeRaster(100, 100, {0, 0, 100, 100});
    for (int y = 0; y < 270; ++y) {
        for (int x = 0; x < 270; ++x) {
            countNode(raster, {(x + 0.5) / 2.7, (y + 0.5) / 2.7}, false);
        }
    }
    EXPECT_FALSE(measureDensity(raster).uneven);
}

TEST(MapDensity, tonesFollowLogarithmOfCount) {
    MapRaster raster = makeRaster(300, 10, {0, 0, 300, 10});
    for (int i = 0; i < 3000; ++i) {
        const int column = i % 300;
        raster.cells[static_cast<std::size_t>(i)].nodes = column < 100 ? 1U : (column < 200 ? 10U : 100U);
    }
    const MapTones density = measureDensity(raster);
    EXPECT_TRUE(density.uneven);
    EXPECT_NEAR(0.0, density.tones[50], 1e-6);
    EXPECT_NEAR(0.5, density.tones[150], 1e-6);
    EXPECT_NEAR(1.0, density.tones[250], 1e-6);
}

TEST(MapShading, discsLeaveNoGapsInEvenSpread) {
    for (const int distance : {1, 2, 3, 4}) {
        const MapRaster raster = gridRaster(48, distance);
        const PixelImage image =
            shadeNodes(raster, NodeShades(measureDensity(raster)), discRadius(nodeSpacing(raster)));
        for (int y = 12; y < 36; ++y) {
            for (int x = 12; x < 36; ++x) {
                EXPECT_EQ(0xFFBABABAU, image.pixels[static_cast<std::size_t>(y * 48 + x)])
                    << distance << ": " << x << " " << y;
            }
        }
    }
}

TEST(MapShading, discsLeaveNoGapsInRandomCrowd) {
    constexpr int side = 200;
    std::mt19937 random(5);
    for (const double nodesOfPixel : {2.0, 4.5, 7.0}) {
        MapRaster raster = makeRaster(side, side, {0, 0, side, side});
        for (int i = 0; i < static_cast<int>(nodesOfPixel * side * side); ++i) {
            const double x = static_cast<double>(random()) / 4294967296.0 * side;
            const double y = static_cast<double>(random()) / 4294967296.0 * side;
            countNode(raster, {x, y}, false);
        }
        ASSERT_LT(occupiedCells(raster), raster.cells.size());
        const PixelImage image =
            shadeNodes(raster, NodeShades(measureDensity(raster)), discRadius(nodeSpacing(raster)));
        EXPECT_EQ(std::vector<std::uint32_t>(raster.cells.size(), 0xFFBABABAU), image.pixels) << nodesOfPixel;
    }
}

TEST(MapShading, drawsKeptNodesOverDroppedOnes) {
    MapRaster raster = makeRaster(3, 1, {0, 0, 3, 1});
    countNode(raster, {0.5, 0.5}, true);
    countNode(raster, {0.5, 0.5}, false);
    countNode(raster, {1.5, 0.5}, false);
    const PixelImage image = shadeNodes(raster, NodeShades(measureDensity(raster)), 0.5);
    EXPECT_EQ((std::vector<std::uint32_t>{0xFF4180BAU, 0xFFBABABAU, 0U}), image.pixels);
}

TEST(MapShading, nearerNodeColoursPixel) {
    MapRaster raster = makeRaster(7, 1, {0, 0, 7, 1});
    countNode(raster, {0.5, 0.5}, true);
    countNode(raster, {4.5, 0.5}, false);
    const PixelImage image = shadeNodes(raster, NodeShades(measureDensity(raster)), 4.0);
    constexpr std::uint32_t kept = 0xFF4180BAU;
    constexpr std::uint32_t dropped = 0xFFBABABAU;
    EXPECT_EQ((std::vector<std::uint32_t>{kept, kept, kept, dropped, dropped, dropped, dropped}), image.pixels);
}

TEST(MapShading, limitsRadius) {
    EXPECT_EQ(discRadius(2.0), discRadius(0.0));
    EXPECT_EQ(discRadius(2.0), discRadius(1.01));
    EXPECT_EQ(4.0, discRadius(10.0));
    EXPECT_EQ(6.0, discRadius(16.0));
}

TEST(MapShading, discsKeepTheirSizeWhereNodesCoincide) {
    MapRaster raster = gridRaster(64, 8);
    const double radius = discRadius(nodeSpacing(raster));
    for (int i = 0; i < 5000; ++i) {
        countNode(raster, {0.5, 0.5}, true);
    }
    EXPECT_EQ(radius, discRadius(nodeSpacing(raster)));
}

TEST(MapShading, keptCellsAreSinglePixels) {
    MapRaster raster = makeRaster(3, 1, {0, 0, 3, 1});
    countNode(raster, {0.5, 0.5}, true);
    countNode(raster, {1.5, 0.5}, false);
    EXPECT_EQ((std::vector<std::uint32_t>{0xFF4180BAU, 0U, 0U}),
              shadeKeptCells(raster, NodeShades(measureDensity(raster))).pixels);
}

TEST(MapElevation, tonesFollowMeanElevationOfCells) {
    MapRaster raster = makeRaster(4, 1, {0, 0, 4, 1}, true);
    countNode(raster, {0.5, 0.5}, true, 100.0F);
    countNode(raster, {1.5, 0.5}, true, 100.0F);
    countNode(raster, {1.5, 0.5}, true, 200.0F);
    countNode(raster, {2.5, 0.5}, true, 300.0F);
    countNode(raster, {3.5, 0.5}, true);
    const MapTones elevations = measureElevations(raster);
    // The 98th percentile of three cells is the second one.
    EXPECT_EQ(100.0F, elevations.low);
    EXPECT_EQ(150.0F, elevations.high);
    EXPECT_EQ((std::vector<float>{0.0F, 1.0F, 1.0F, -1.0F}), elevations.tones);
}

TEST(MapElevation, equalElevationsHaveOneTone) {
    MapRaster raster = makeRaster(2, 1, {0, 0, 2, 1}, true);
    countNode(raster, {0.5, 0.5}, true, 7.0F);
    countNode(raster, {1.5, 0.5}, true, 7.0F);
    EXPECT_EQ((std::vector<float>{0.5F, 0.5F}), measureElevations(raster).tones);
}

TEST(MapElevation, fewWrongValuesDoNotTakeAllColours) {
    MapRaster raster = makeRaster(100, 1, {0, 0, 100, 1}, true);
    for (int i = 0; i < 100; ++i) {
        countNode(raster, {i + 0.5, 0.5}, true, i == 50 ? -9999.0F : static_cast<float>(i));
    }
    EXPECT_LE(0.0F, measureElevations(raster).low);
}

TEST(MapElevation, isEmptyWithoutElevations) {
    MapRaster raster = makeRaster(1, 1, {0, 0, 1, 1}, true);
    countNode(raster, {0.5, 0.5}, true);
    EXPECT_TRUE(measureElevations(raster).tones.empty());
    EXPECT_TRUE(measureElevations(makeRaster(1, 1, {0, 0, 1, 1})).tones.empty());
}

TEST(MapShading, elevationHasColoursOfViridis) {
    MapRaster raster = makeRaster(3, 1, {0, 0, 3, 1}, true);
    countNode(raster, {0.5, 0.5}, true, 1.0F);
    countNode(raster, {1.5, 0.5}, true, 2.0F);
    countNode(raster, {2.5, 0.5}, true);
    const MapTones density = measureDensity(raster);
    MapTones elevations = measureElevations(raster);
    elevations.tones[1] = 1.0F;
    const PixelImage image = shadeNodes(raster, {density, elevations}, 0.5);
    EXPECT_EQ((std::vector<std::uint32_t>{0xFF21908DU, 0xFFFDE725U, 0xFF3C3C3CU}), image.pixels);
}

TEST(MapRaster, elevationsIgnoreMarksOfMissingData) {
    MapRaster raster = makeRaster(100, 1, {0, 0, 100, 1}, true);
    for (int i = 0; i < 100; ++i) {
        countNode(raster, {i + 0.5, 0.5}, true, i % 10 == 0 ? -9999.0F : static_cast<float>(i));
    }
    const MapTones elevations = measureElevations(raster);
    EXPECT_EQ(2.0F, elevations.low);
    EXPECT_EQ(97.0F, elevations.high);
    EXPECT_EQ(0.0F, elevations.tones.at(50));
}

} // namespace vadelwatch
