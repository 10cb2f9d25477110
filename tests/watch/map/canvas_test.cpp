#include "watch/map/canvas.hpp"

#include "watch/map/shading.hpp"

#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <vector>

namespace vadelwatch {

namespace {

std::size_t countOf(const std::string& part, const std::string& text) {
    std::size_t count = 0;
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + part.size())) {
        ++count;
    }
    return count;
}

/// Kept nodes side by side, in these tones, as they are drawn.
std::string discsOf(const std::vector<float>& tones) {
    MapRaster raster = makeRaster(static_cast<int>(tones.size()), 1, {0, 0, static_cast<double>(tones.size()), 1});
    for (std::size_t i = 0; i < tones.size(); ++i) {
        countNode(raster, {static_cast<double>(i) + 0.5, 0.5}, true);
    }
    MapCanvas canvas(PictureFormat::svg, 100, 100);
    MapDensity density;
    density.tones = tones;
    drawDiscs(canvas, raster, density, 1.0, {0.0, 0.0});
    std::string picture;
    EXPECT_EQ("", canvas.finish(picture));
    return picture;
}

} // namespace

TEST(MapCanvas, anImageThatIsTooLargeIsSaidAtTheEnd) {
    for (const PictureFormat format : {PictureFormat::png, PictureFormat::svg}) {
        MapCanvas canvas(format, 10, 10);
        constexpr int width = 40000; // Cairo's images end at 32767.
        canvas.drawImage({width, 1, std::vector<std::uint32_t>(width)}, {0.0, 0.0});
        std::string picture;
        EXPECT_NE("", canvas.finish(picture));
    }
}

TEST(MapCanvas, aPictureThatIsTooLargeIsSaidAtTheEnd) {
    MapCanvas canvas(PictureFormat::png, 40000, 1);
    std::string picture;
    EXPECT_NE("", canvas.finish(picture));
}

TEST(MapCanvas, discsOfOneColourThatFollowOneAnotherAreOneShape) {
    EXPECT_EQ(1U, countOf("<path", discsOf({0.5F, 0.5F, 0.5F})));
    EXPECT_EQ(3U, countOf("<path", discsOf({0.5F, 0.0F, 0.0F, 0.5F})));
    // From each tone to the next another part of the colour changes, by one: red, green, blue.
    EXPECT_EQ(4U, countOf("<path", discsOf({0.00435F, 0.0044F, 0.0045F, 0.00545F})));
}

} // namespace vadelwatch
