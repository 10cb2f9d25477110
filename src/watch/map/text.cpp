#include "watch/map/text.hpp"

#include <utf8.h>

#include <filesystem>
#include <utility>

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
    // The characters before and after the ellipsis. Each time the longer part loses the one next to it.
    std::string after;
    std::swap(text, after);
    const auto length = utf8::distance(after.begin(), after.end());
    auto middle = after.begin();
    utf8::advance(middle, length / 2, after.end());
    text.assign(after.begin(), middle);
    after.erase(after.begin(), middle);
    std::string shortened(ellipsis);
    while (!text.empty() || !after.empty()) {
        if (text.size() > after.size()) {
            auto last = text.end();
            utf8::prior(last, text.begin());
            text.erase(last, text.end());
        } else {
            auto first = after.begin();
            utf8::next(first, after.end());
            after.erase(after.begin(), first);
        }
        shortened = text;
        shortened.append(ellipsis).append(after);
        if (widthOfText(shortened) <= widest) {
            break;
        }
    }
    return shortened;
}

double fittingSize(double size, double widthAtSize, double widest) {
    return widthAtSize <= widest ? size : size * widest / widthAtSize;
}

std::string lastComponent(const std::string& path) {
    const std::filesystem::path whole(path);
    return (whole.has_filename() ? whole : whole.parent_path()).filename().string();
}

} // namespace vadelwatch
