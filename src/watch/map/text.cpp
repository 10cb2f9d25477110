#include "watch/map/text.hpp"

#include <utf8.h>

#include <filesystem>

namespace vadelwatch {

namespace {

constexpr std::string_view replacement = "\xEF\xBF\xBD";
constexpr std::string_view ellipsis = "\xE2\x80\xA6";

} // namespace

std::string readableText(std::string_view bytes) {
    std::string text;
    for (const char byte : utf8::replace_invalid(bytes)) {
        const bool isControl = static_cast<unsigned char>(byte) < 0x20U || byte == '\x7F';
        text += isControl ? replacement : std::string_view(&byte, 1);
    }
    return text;
}

std::string fitText(std::string text, double widest, const std::function<double(const std::string&)>& widthOfText) {
    if (widthOfText(text) <= widest) {
        return text;
    }
    while (!text.empty() && widthOfText(text + std::string(ellipsis)) > widest) {
        auto lastCharacter = text.end();
        utf8::prior(lastCharacter, text.begin());
        text.erase(lastCharacter, text.end());
    }
    return text + std::string(ellipsis);
}

double fittingSize(double size, double widthAtSize, double widest) {
    return widthAtSize <= widest ? size : size * widest / widthAtSize;
}

std::string lastComponent(const std::string& path) {
    const std::filesystem::path whole(path);
    return (whole.has_filename() ? whole : whole.parent_path()).filename().string();
}

} // namespace vadelwatch
