/// \file
/// A picture to draw on: lines, discs, texts and images, in pixels from the top left corner, y downwards.
/// Only this part of the map uses the drawing library.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace vadelwatch {

enum class PictureFormat { png, svg };

struct PixelPosition {
    double x = 0.0;
    double y = 0.0;
};

struct PixelRectangle {
    double left = 0.0;
    double top = 0.0;
    double width = 0.0;
    double height = 0.0;
};

/// A colour, each component from 0 to 255.
struct MapColour {
    std::uint8_t red = 0;
    std::uint8_t green = 0;
    std::uint8_t blue = 0;

    bool operator==(const MapColour&) const = default;
};

/// An image: rows from top to bottom, each pixel as 0xAARRGGBB with the colours multiplied by the opacity.
struct PixelImage {
    int width = 0;
    int height = 0;
    std::vector<std::uint32_t> pixels;
};

enum class TextAnchor { left, middle, right };

struct TextStyle {
    double size = 20.0;
    TextAnchor anchor = TextAnchor::left;
    bool bold = false;
    MapColour colour{34, 34, 34};
};

class MapCanvas {
public:
    /// Makes a white picture. An SVG picture has one user unit for each pixel.
    /// @param title valid UTF-8: the title element of an SVG picture. Not drawn.
    MapCanvas(PictureFormat format, int width, int height, std::string title = {});
    MapCanvas(const MapCanvas&) = delete;
    MapCanvas& operator=(const MapCanvas&) = delete;
    ~MapCanvas();

    /// Limits all drawing to a rectangle, until the next call of `endClip`.
    void beginClip(const PixelRectangle& rectangle);
    void endClip();

    void fillRectangle(const PixelRectangle& rectangle, MapColour colour);
    void strokeRectangle(const PixelRectangle& rectangle, MapColour colour, double lineWidth);

    /// Fills a rectangle with colours that change evenly from its left to its right side.
    /// @param colours at least two.
    void fillGradient(const PixelRectangle& rectangle, const std::vector<MapColour>& colours);

    /// Draws a line with round joins and ends, so a line of length 0 is a dot.
    void strokeLine(const std::vector<PixelPosition>& line, MapColour colour, double lineWidth, double opacity = 1.0);

    void strokeCircle(PixelPosition centre, double radius, MapColour colour, double lineWidth);

    /// Fills discs of one radius and colour, as one shape.
    void fillDiscs(const std::vector<PixelPosition>& centres, double radius, MapColour colour);

    /// Draws an image with its top left corner at a position, pixel by pixel.
    /// @throws std::runtime_error if the drawing library refuses the image.
    void drawImage(PixelImage image, PixelPosition corner);

    /// Draws a text over everything else of an SVG picture, as a text element in the sans-serif font of the viewer. In a PNG
    /// picture, characters that the font does not have are drawn in another font.
    ///
    /// @param text     valid UTF-8 in one line; see `shownName`.
    /// @param baseline position of the anchor on the baseline of the letters.
    void drawText(const std::string& text, PixelPosition baseline, const TextStyle& style);

    /// Returns the width in the font of this system. Ignores the anchor.
    double textWidth(const std::string& text, const TextStyle& style);

    /// Returns the text, shortened in its middle if it is wider than this.
    std::string shortened(const std::string& text, double maxWidth, const TextStyle& style);

    /// Returns the size of the style, or a smaller one at which the text is at most this wide.
    double fittingSize(const std::string& text, double maxWidth, const TextStyle& style);

    /// Ends the drawing; nothing may be drawn afterwards.
    /// @return the content of the picture file.
    /// @throws std::runtime_error with the reason of the drawing library for a failure.
    std::string finish();

private:
    struct Surface;
    std::unique_ptr<Surface> surface;
};

} // namespace vadelwatch
