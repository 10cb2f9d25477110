#include "watch/show/utf8_character.hpp"

#include <algorithm>

namespace vadelwatch {

namespace {

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

} // namespace

bool isContinuation(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

std::size_t columnsOf(std::string_view text) {
    return static_cast<std::size_t>(
        std::count_if(text.begin(), text.end(), [](char byte) { return !isContinuation(byte); }));
}

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

} // namespace vadelwatch
