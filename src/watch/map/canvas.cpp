#include "watch/map/canvas.hpp"

#include <cairo-svg.h>
#include <cairo.h>
#include <fmt/format.h>
#include <pango/pangocairo.h>
#include <utf8.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <stdexcept>
#include <utility>

namespace vadelwatch {

namespace {

cairo_status_t appendBytes(void* closure, const unsigned char* data, unsigned int length) {
    static_cast<std::string*>(closure)->append(data, data + length);
    return CAIRO_STATUS_SUCCESS;
}

cairo_surface_t* makeSurface(PictureFormat format, int width, int height, std::string& bytes) {
    if (format == PictureFormat::png) {
        return cairo_image_surface_create(CAIRO_FORMAT_RGB24, width, height);
    }
    cairo_surface_t* const surface = cairo_svg_surface_create_for_stream(appendBytes, &bytes, width, height);
    // The default unit is the point, which viewers show a third larger than the pixel.
    cairo_svg_surface_set_document_unit(surface, CAIRO_SVG_UNIT_PX);
    return surface;
}

void setColour(cairo_t* context, MapColour colour, double opacity = 1.0) {
    cairo_set_source_rgba(context, colour.red / 255.0, colour.green / 255.0, colour.blue / 255.0, opacity);
}

void addRectangle(cairo_t* context, const PixelRectangle& rectangle) {
    cairo_rectangle(context, rectangle.left, rectangle.top, rectangle.width, rectangle.height);
}

struct FreeObject {
    void operator()(void* object) const { g_object_unref(object); }
};

using TextLayout = std::unique_ptr<PangoLayout, FreeObject>;

TextLayout layOutText(cairo_t* context, const std::string& text, const TextStyle& style) {
    TextLayout layout(pango_cairo_create_layout(context));
    PangoFontDescription* const font = pango_font_description_from_string("sans-serif");
    pango_font_description_set_absolute_size(font, style.size * PANGO_SCALE);
    pango_font_description_set_weight(font, style.bold ? PANGO_WEIGHT_BOLD : PANGO_WEIGHT_NORMAL);
    pango_layout_set_font_description(layout.get(), font);
    pango_font_description_free(font);
    pango_layout_set_text(layout.get(), text.c_str(), -1);
    return layout;
}

std::string escapedForXml(const std::string& text) {
    char* const escaped = g_markup_escape_text(text.c_str(), -1);
    std::string result(escaped);
    g_free(escaped);
    return result;
}

/// Returns a text element of SVG. The drawing library would write letters as shapes, which no program can search.
std::string textElement(const std::string& text, PixelPosition baseline, const TextStyle& style) {
    constexpr std::array anchors{"start", "middle", "end"};
    return fmt::format(
        "<text x=\"{:.2f}\" y=\"{:.2f}\" font-family=\"sans-serif\" font-size=\"{:.2f}\" font-weight=\"{}\" "
        "text-anchor=\"{}\" fill=\"#{:02x}{:02x}{:02x}\">{}</text>\n",
        baseline.x, baseline.y, style.size, style.bold ? "bold" : "normal",
        anchors.at(static_cast<std::size_t>(style.anchor)), style.colour.red, style.colour.green, style.colour.blue,
        escapedForXml(text));
}

/// Inserts the title after the start tag of an SVG picture, and the texts before its end tag.
void insertTexts(std::string& bytes, const std::string& title, const std::string& texts) {
    const std::size_t end = bytes.rfind("</svg>");
    const std::size_t start = bytes.find('>', bytes.find("<svg"));
    if (end != std::string::npos && start != std::string::npos) {
        bytes.insert(end, texts);
        bytes.insert(start + 1, "\n<title>" + escapedForXml(title) + "</title>");
    }
}

void requireSuccess(cairo_status_t status) {
    if (status != CAIRO_STATUS_SUCCESS) {
        throw std::runtime_error(cairo_status_to_string(status));
    }
}

} // namespace

struct MapCanvas::Surface {
    PictureFormat format;
    /// The part of an SVG picture that has been written.
    std::string bytes;
    cairo_surface_t* target;
    cairo_t* context;
    std::string title;
    /// The text elements of an SVG picture.
    std::string texts;
};

MapCanvas::MapCanvas(PictureFormat format, int width, int height, std::string title)
    : surface(std::make_unique<Surface>(Surface{format, {}, nullptr, nullptr, std::move(title), {}})) {
    surface->target = makeSurface(format, width, height, surface->bytes);
    surface->context = cairo_create(surface->target);
    cairo_set_line_join(surface->context, CAIRO_LINE_JOIN_ROUND);
    cairo_set_line_cap(surface->context, CAIRO_LINE_CAP_ROUND);
    setColour(surface->context, {255, 255, 255});
    cairo_paint(surface->context);
}

MapCanvas::~MapCanvas() {
    cairo_destroy(surface->context);
    cairo_surface_destroy(surface->target);
}

void MapCanvas::beginClip(const PixelRectangle& rectangle) {
    cairo_save(surface->context);
    addRectangle(surface->context, rectangle);
    cairo_clip(surface->context);
}

void MapCanvas::endClip() {
    cairo_restore(surface->context);
}

void MapCanvas::fillRectangle(const PixelRectangle& rectangle, MapColour colour) {
    setColour(surface->context, colour);
    addRectangle(surface->context, rectangle);
    cairo_fill(surface->context);
}

void MapCanvas::strokeRectangle(const PixelRectangle& rectangle, MapColour colour, double lineWidth) {
    setColour(surface->context, colour);
    cairo_set_line_width(surface->context, lineWidth);
    addRectangle(surface->context, rectangle);
    cairo_stroke(surface->context);
}

void MapCanvas::fillGradient(const PixelRectangle& rectangle, const std::vector<MapColour>& colours) {
    cairo_pattern_t* const gradient =
        cairo_pattern_create_linear(rectangle.left, 0.0, rectangle.left + rectangle.width, 0.0);
    const auto last = static_cast<double>(colours.size() - 1);
    for (std::size_t i = 0; i < colours.size(); ++i) {
        cairo_pattern_add_color_stop_rgb(gradient, static_cast<double>(i) / last, colours[i].red / 255.0,
                                         colours[i].green / 255.0, colours[i].blue / 255.0);
    }
    cairo_set_source(surface->context, gradient);
    addRectangle(surface->context, rectangle);
    cairo_fill(surface->context);
    cairo_pattern_destroy(gradient);
}

void MapCanvas::strokeCircle(PixelPosition centre, double radius, MapColour colour, double lineWidth) {
    constexpr double wholeTurn = 6.283185307179586;
    setColour(surface->context, colour);
    cairo_set_line_width(surface->context, lineWidth);
    cairo_arc(surface->context, centre.x, centre.y, radius, 0.0, wholeTurn);
    cairo_stroke(surface->context);
}

void MapCanvas::strokeLine(const std::vector<PixelPosition>& line, MapColour colour, double lineWidth, double opacity) {
    for (const PixelPosition& position : line) {
        // The first call begins the line, because there is no current point.
        cairo_line_to(surface->context, position.x, position.y);
    }
    setColour(surface->context, colour, opacity);
    cairo_set_line_width(surface->context, lineWidth);
    cairo_stroke(surface->context);
}

void MapCanvas::fillDiscs(const std::vector<PixelPosition>& centres, double radius, MapColour colour) {
    // A line of length 0 with round ends takes a quarter of the space of four arcs in SVG.
    for (const PixelPosition& centre : centres) {
        cairo_move_to(surface->context, centre.x, centre.y);
        cairo_line_to(surface->context, centre.x, centre.y);
    }
    setColour(surface->context, colour);
    cairo_set_line_width(surface->context, 2.0 * radius);
    cairo_stroke(surface->context);
}

void MapCanvas::drawImage(PixelImage image, PixelPosition corner) {
    constexpr int bytesPerPixel = 4;
    cairo_surface_t* const pixels =
        cairo_image_surface_create_for_data(reinterpret_cast<unsigned char*>(image.pixels.data()), CAIRO_FORMAT_ARGB32,
                                            image.width, image.height, image.width * bytesPerPixel);
    // Not drawn after a failure, because the library leaks memory when it draws such an image.
    requireSuccess(cairo_surface_status(pixels));
    cairo_set_source_surface(surface->context, pixels, corner.x, corner.y);
    cairo_pattern_set_filter(cairo_get_source(surface->context), CAIRO_FILTER_NEAREST);
    cairo_paint(surface->context);
    setColour(surface->context, {}); // releases the image
    cairo_surface_finish(pixels);
    cairo_surface_destroy(pixels);
}

void MapCanvas::drawText(const std::string& text, PixelPosition baseline, const TextStyle& style) {
    if (surface->format == PictureFormat::svg) {
        surface->texts += textElement(text, baseline, style);
        return;
    }
    double left = baseline.x;
    if (style.anchor != TextAnchor::left) {
        left -= textWidth(text, style) * (style.anchor == TextAnchor::middle ? 0.5 : 1.0);
    }
    const TextLayout layout = layOutText(surface->context, text, style);
    const double ascent = static_cast<double>(pango_layout_get_baseline(layout.get())) / PANGO_SCALE;
    setColour(surface->context, style.colour);
    cairo_move_to(surface->context, left, baseline.y - ascent);
    pango_cairo_show_layout(surface->context, layout.get());
    cairo_new_path(surface->context);
}

double MapCanvas::textWidth(const std::string& text, const TextStyle& style) {
    const TextLayout layout = layOutText(surface->context, text, style);
    int width = 0;
    pango_layout_get_size(layout.get(), &width, nullptr);
    return static_cast<double>(width) / PANGO_SCALE;
}

std::string MapCanvas::shortened(const std::string& text, double maxWidth, const TextStyle& style) {
    const std::u32string letters = utf8::utf8to32(text);
    std::string result = text;
    for (std::size_t kept = letters.size(); kept > 0 && textWidth(result, style) > maxWidth; --kept) {
        const std::size_t after = (kept - 1) / 2;
        result = utf8::utf32to8(letters.substr(0, kept - 1 - after)) + "\u2026" +
                 utf8::utf32to8(letters.substr(letters.size() - after));
    }
    return result;
}

double MapCanvas::fittingSize(const std::string& text, double maxWidth, const TextStyle& style) {
    return style.size * std::min(1.0, maxWidth / std::max(textWidth(text, style), 1.0));
}

std::string MapCanvas::finish() {
    requireSuccess(cairo_status(surface->context));
    if (surface->format == PictureFormat::png) {
        requireSuccess(cairo_surface_write_to_png_stream(surface->target, appendBytes, &surface->bytes));
    }
    cairo_surface_finish(surface->target);
    requireSuccess(cairo_surface_status(surface->target));
    if (surface->format == PictureFormat::svg) {
        insertTexts(surface->bytes, surface->title, surface->texts);
    }
    return std::move(surface->bytes);
}

} // namespace vadelwatch
