#include "watch/map/text.hpp"

#include "watch/show/utf8_character.hpp"

#include <filesystem>

namespace vadelwatch {

namespace {

constexpr std::string_view replacement = "\xEF\xBF\xBD";
constexpr std::string_view ellipsis = "\xE2\x80\xA6";

} // namespace

std::string readableText(std::string_view bytes) {
    std::string text;
    while (!bytes.empty()) {
        const std::size_t length = characterLength(bytes);
        text += length == 0 ? replacement : bytes.substr(0, length);
        bytes.remove_prefix(length == 0 ? 1 : length);
    }
    return text;
}

std::string fitText(std::string text, double widest, const std::function<double(const std::string&)>& widthOfText) {
    if (widthOfText(text) <= widest) {
        return text;
    }
    while (!text.empty() && widthOfText(text + std::string(ellipsis)) > widest) {
        while (isContinuation(text.back())) {
            text.pop_back();
        }
        text.pop_back();
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
