#include "watch/show/shown_name.hpp"

#include "watch/show/utf8_character.hpp"

#include <fmt/format.h>

namespace vadelwatch {

namespace {

/// Characters that change the direction of what follows them, by which a name can look like another one: U+061C, U+200E
/// and F, U+202A to E, U+2066 to 9.
bool turnsText(std::string_view character) {
    if (character.size() != 3) {
        return character == "\xD8\x9C";
    }
    const std::string_view block = character.substr(0, 2);
    const auto last = static_cast<unsigned char>(character[2]);
    if (block == "\xE2\x80") {
        return last == 0x8EU || last == 0x8FU || (last >= 0xAAU && last <= 0xAEU);
    }
    return block == "\xE2\x81" && last >= 0xA6U && last <= 0xA9U;
}

/// The second set of control characters, U+0080 to U+009F, which some terminals obey.
bool isInSecondSet(std::string_view character) {
    return character.size() == 2 && character[0] == '\xC2' && static_cast<unsigned char>(character[1]) < 0xA0U;
}

} // namespace

std::string shownName(std::string_view name) {
    std::string shown;
    while (!name.empty()) {
        const std::size_t length = characterLength(name);
        const std::string_view character = name.substr(0, length == 0 ? 1 : length);
        if (length == 0 || isInSecondSet(character) || turnsText(character)) {
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

} // namespace vadelwatch
