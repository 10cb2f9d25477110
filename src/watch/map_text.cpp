#include "watch/map_text.hpp"

#include <filesystem>

namespace {

constexpr std::string_view replacement = "\xEF\xBF\xBD";
constexpr std::string_view ellipsis = "\xE2\x80\xA6";

bool isContinuation(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

/// How many bytes the character at the front takes, by its first byte; 0 for a byte that begins none.
std::size_t announcedLength(unsigned char first) {
    if (first >= 0x20U && first < 0x7FU) {
        return 1;
    }
    if (first >= 0xC2U && first < 0xE0U) {
        return 2;
    }
    if (first >= 0xE0U && first < 0xF0U) {
        return 3;
    }
    return first >= 0xF0U && first < 0xF5U ? 4 : 0;
}

/// Overlong forms, surrogates and what lies beyond U+10FFFF show in the second byte.
bool isSecondByteAllowed(unsigned char first, unsigned char second) {
    switch (first) {
    case 0xE0:
        return second >= 0xA0U;
    case 0xED:
        return second < 0xA0U;
    case 0xF0:
        return second >= 0x90U;
    case 0xF4:
        return second < 0x90U;
    default:
        return true;
    }
}

/// 0 if no valid character stands at the front.
std::size_t characterLength(std::string_view bytes) {
    const auto first = static_cast<unsigned char>(bytes.front());
    const std::size_t length = announcedLength(first);
    if (length == 0 || length > bytes.size()) {
        return 0;
    }
    for (std::size_t i = 1; i < length; ++i) {
        if (!isContinuation(bytes[i])) {
            return 0;
        }
    }
    return length == 1 || isSecondByteAllowed(first, static_cast<unsigned char>(bytes[1])) ? length : 0;
}

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

std::string lastComponent(const std::string& path) {
    const std::filesystem::path whole(path);
    return (whole.has_filename() ? whole : whole.parent_path()).filename().string();
}
