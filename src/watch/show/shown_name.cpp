#include "watch/show/shown_name.hpp"

#include <fmt/format.h>
#include <utf8.h>

namespace vadelwatch {

namespace {

/// Control characters, the second set U+0080 to U+009F included: some terminals obey it.
bool isControl(char32_t character) {
    return character < 0x20U || (character >= 0x7FU && character < 0xA0U);
}

/// Characters that change the direction of the text after them, so that one name can look like another.
bool turnsText(char32_t character) {
    return character == 0x061CU || character == 0x200EU || character == 0x200FU ||
           (character >= 0x202AU && character <= 0x202EU) || (character >= 0x2066U && character <= 0x2069U);
}

std::string inHexadecimal(const char* bytes, const char* end) {
    std::string text;
    for (; bytes != end; ++bytes) {
        text += fmt::format("\\x{:02X}", static_cast<unsigned char>(*bytes));
    }
    return text;
}

/// @param bytes valid UTF-8.
void appendShown(std::string& shown, const char* bytes, const char* end) {
    while (bytes != end) {
        const char* const character = bytes;
        const char32_t number = utf8::unchecked::next(bytes);
        if (isControl(number) || turnsText(number)) {
            shown += inHexadecimal(character, bytes);
        } else {
            shown.append(character, bytes);
        }
    }
}

} // namespace

std::string shownName(std::string_view name) {
    std::string shown;
    const char* bytes = name.data();
    const char* const end = bytes + name.size();
    while (bytes != end) {
        const char* const invalid = utf8::find_invalid(bytes, end);
        appendShown(shown, bytes, invalid);
        bytes = invalid;
        if (bytes != end) {
            shown += inHexadecimal(bytes, bytes + 1);
            ++bytes;
        }
    }
    return shown;
}

std::size_t columnsOf(std::string_view text) {
    const std::string valid = utf8::replace_invalid(text);
    return static_cast<std::size_t>(utf8::distance(valid.begin(), valid.end()));
}

} // namespace vadelwatch
