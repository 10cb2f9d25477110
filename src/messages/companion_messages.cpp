#include "messages/companion_messages.hpp"

#include "messages/message_catalogues.hpp"

#include <boost/locale/info.hpp>
#include <fmt/format.h>
#include <utf8.h>

#include <algorithm>
#include <exception>
#include <locale>

namespace vadelclip {

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

std::string inHexadecimal(const char* begin, const char* end) {
    std::string text;
    for (; begin != end; ++begin) {
        text += fmt::format("\\x{:02X}", static_cast<unsigned char>(*begin));
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

void setUpCompanionMessages(const std::optional<std::string>& language, const std::string& domain) {
    // Exactly "en", as in the tool.
    if (language == "en") {
        return;
    }
    try {
        setUpCatalogue(language.value_or("de"), domain);
        // "de.latin1@x" names another character set, but all our output is UTF-8.
        if (!std::use_facet<boost::locale::info>(std::locale()).utf8()) {
            std::locale::global(std::locale::classic());
        }
    } catch (const std::exception&) {
        // The classic locale stays: a run must not fail because of the language of its messages.
    }
}

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

std::optional<std::string> toolLanguage(std::optional<std::string> language) {
    if (language && language->find('@') == std::string::npos) {
        language->resize(std::min(language->find('.'), language->size()));
    }
    return language;
}

} // namespace vadelclip
