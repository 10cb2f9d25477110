#include "watch/show/messages.hpp"

#include "messages/message_catalogues.hpp"

#include <boost/locale/info.hpp>
#include <fmt/format.h>
#include <utf8.h>

#include <exception>
#include <locale>

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

} // namespace

void setUpMessages(const std::optional<std::string>& language) {
    // Exactly "en", as in the tool.
    if (language == "en") {
        return;
    }
    try {
        vadelclip::setUpCatalogue(language.value_or("de"), "vadelwatch");
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
    const char* at = name.data();
    const char* const end = at + name.size();
    while (at != end) {
        const char* const character = at;
        bool isSafe = false;
        try {
            const char32_t number = utf8::next(at, end);
            isSafe = !isControl(number) && !turnsText(number);
        } catch (const utf8::exception&) {
            ++at;
        }
        if (isSafe) {
            shown.append(character, at);
            continue;
        }
        for (const char* byte = character; byte != at; ++byte) {
            shown += fmt::format("\\x{:02X}", static_cast<unsigned char>(*byte));
        }
    }
    return shown;
}

std::size_t columnsOf(std::string_view text) {
    const std::string valid = utf8::replace_invalid(text);
    return static_cast<std::size_t>(utf8::distance(valid.begin(), valid.end()));
}

char decimalSign() {
    // The catalogue of a language has its decimal sign as the translation of the point.
    return translateMessage(".").front();
}

std::string groupedNumber(std::uint64_t number) {
    std::string digits = std::to_string(number);
    for (std::size_t at = digits.size(); at > 3; at -= 3) {
        digits.insert(at - 3, 1, ' ');
    }
    return digits;
}

std::string decimalNumber(double number, int decimals) {
    std::string digits = fmt::format("{:.{}f}", number, decimals);
    const std::size_t point = digits.find('.');
    if (point != std::string::npos) {
        digits[point] = decimalSign();
    }
    return digits;
}

std::string shareText(double percent) {
    if (percent > 0.0 && percent < 0.1) {
        return fmt::format("<{}", decimalNumber(0.1, 1));
    }
    return percent > 99.9 && percent < 100.0 ? fmt::format(">{}", decimalNumber(99.9, 1)) : decimalNumber(percent, 1);
}

} // namespace vadelwatch
