#include "watch/shown_name.hpp"

#include "watch/utf8_character.hpp"

#include <fmt/format.h>

namespace {

/// The second set of control characters, U+0080 to U+009F: some terminals obey them, in UTF-8 or as single bytes.
bool isInSecondSet(char byte) {
    const auto number = static_cast<unsigned char>(byte);
    return number >= 0x80U && number < 0xA0U;
}

/// @param character one of UTF-8, or a single byte that is none.
bool isControl(std::string_view character) {
    const auto first = static_cast<unsigned char>(character.front());
    if (character.size() == 1) {
        return first < 0x20U || first == 0x7FU || isInSecondSet(character.front());
    }
    return first == 0xC2U && isInSecondSet(character.back());
}

} // namespace

std::string shownName(std::string_view name) {
    std::string shown;
    while (!name.empty()) {
        const std::size_t length = characterLength(name);
        const std::string_view character = name.substr(0, length == 0 ? 1 : length);
        if (isControl(character)) {
            for (const char byte : character) {
                shown += fmt::format("\\x{:02X}", static_cast<unsigned char>(byte));
            }
        } else {
            shown += character;
        }
        name.remove_prefix(character.size());
    }
    return shown;
}
