#include "watch/map/canvas.hpp"

#include "watch/map/shading.hpp"

#include <gtest/gtest.h>

#include <cstddef>
#include <stdexcept>
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

/// Draws adjacent kept nodes in these tones and returns the picture.
std::string discsOf(const std::vector<float>& tones) {
    MapRaster raster = makeRaster(static_cast<int>(tones.size()), 1, {0, 0, static_cast<double>(tones.size()), 1});
    for (std::size_t i = 0; i < tones.size(); ++i) {
        countNode(raster, {static_cast<double>(i) + 0.5, 0.5}, true);
    }
    MapCanvas canvas(PictureFormat::svg, 100, 100);
    MapTones density;
    density.tones = tones;
    drawDiscs(canvas, raster, NodeShades(density), 1.0, {0.0, 0.0});
    return canvas.finish();
}

} // namespace

TEST(MapCanvas, refusesTooLargeImage) {
    for (const PictureFormat format : {PictureFormat::png, PictureFormat::svg}) {
        MapCanvas canvas(format, 10, 10);
        constexpr int width = 40000; // Cairo's images end at 32767.
        const PixelImage image{width, 1, std::vector<std::uint32_t>(width)};
        EXPECT_THROW(canvas.drawImage(image, {0.0, 0.0}), std::runtime_error);
    }
}

TEST(MapCanvas, reportsTooLargePictureAtTheEnd) {
    MapCanvas canvas(PictureFormat::png, 40000, 1);
    EXPECT_THROW(canvas.finish(), std::runtime_error);
}

TEST(MapCanvas, drawsConsecutiveDiscsOfOneColourAsOneShape) {
    EXPECT_EQ(1U, countOf("<path", discsOf({0.5F, 0.5F, 0.5F})));
    EXPECT_EQ(3U, countOf("<path", discsOf({0.5F, 0.0F, 0.0F, 0.5F})));
    // Each tone differs from the one before in one component of the colour, by 1: red, green, blue.
    EXPECT_EQ(4U, countOf("<path", discsOf({0.00435F, 0.0044F, 0.0045F, 0.00545F})));
}

TEST(MapCanvas, svgHasTitleAndTextsAsText) {
    MapCanvas canvas(PictureFormat::svg, 100, 100, "a & <b>");
    canvas.drawText("c < d", {10.0, 20.0}, {15.0, TextAnchor::right, true, {255, 0, 16}});
    const std::string picture = canvas.finish();
    EXPECT_NE(std::string::npos, picture.find("<title>a &amp; &lt;b&gt;</title>"));
    EXPECT_NE(std::string::npos,
              picture.find("<text x=\"10.00\" y=\"20.00\" font-family=\"sans-serif\" font-size=\"15.00\" "
                           "font-weight=\"bold\" text-anchor=\"end\" fill=\"#ff0010\">c &lt; d</text>\n</svg>"));
}

TEST(MapCanvas, widthOfTextGrowsWithTextAndSize) {
    MapCanvas canvas(PictureFormat::png, 1, 1);
    const double width = canvas.textWidth("www", {20.0});
    EXPECT_GT(width, 30.0);
    EXPECT_NEAR(2.0 * width, canvas.textWidth("wwwwww", {20.0}), 1.0);
    EXPECT_NEAR(2.0 * width, canvas.textWidth("www", {40.0}), 4.0);
    EXPECT_LT(width, canvas.textWidth("www", {20.0, TextAnchor::left, true}));
}

TEST(MapCanvas, shortensTextInItsMiddleBetweenCharacters) {
    MapCanvas canvas(PictureFormat::png, 1, 1);
    const TextStyle style{20.0};
    const auto shortenedTo = [&](const std::string& text, const std::string& expected) {
        return canvas.shortened(text, canvas.textWidth(expected, style), style);
    };
    EXPECT_EQ("aaaaaa", shortenedTo("aaaaaa", "aaaaaa"));
    EXPECT_EQ("aa\u2026aa", shortenedTo("aaaaaaaaaa", "aa\u2026aa"));
    EXPECT_EQ("aa\u2026a", shortenedTo("aaaaaaaaaa", "aa\u2026a"));
    // Never part of a character.
    EXPECT_EQ("\u00e4\u2026\u00e4", shortenedTo("\u00e4\u00e4\u00e4\u00e4\u00e4\u00e4", "\u00e4\u2026\u00e4"));
    EXPECT_EQ("\u2026", canvas.shortened("abc", 0.0, style));
    EXPECT_EQ("", canvas.shortened("", 0.0, style));
}

TEST(MapCanvas, shrinksTooWideText) {
    MapCanvas canvas(PictureFormat::png, 1, 1);
    const double width = canvas.textWidth("wwwwww", {20.0});
    EXPECT_EQ(20.0, canvas.fittingSize("wwwwww", width, {20.0}));
    EXPECT_EQ(20.0, canvas.fittingSize("", width, {20.0}));
    EXPECT_DOUBLE_EQ(15.0, canvas.fittingSize("wwwwww", 0.75 * width, {20.0}));
}

} // namespace vadelwatch
