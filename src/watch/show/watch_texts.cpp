#include "watch/show/watch_texts.hpp"

#include "watch/show/shown_name.hpp"
#include "watch/show/text_tables.hpp"

#include <fmt/args.h>
#include <fmt/format.h>

#include <algorithm>
#include <string_view>

namespace vadelwatch {

namespace {

// Letters and digits of ASCII, whatever the locale.
bool isLetter(char byte) {
    return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z');
}

char lowered(char byte) {
    return byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte - 'A' + 'a') : byte;
}

/// Takes off what stands before the first of these bytes, or all.
std::string_view takeUntil(std::string_view& text, const char* ends) {
    const std::string_view part = text.substr(0, text.find_first_of(ends));
    text.remove_prefix(part.size());
    return part;
}

/// Names of character sets are compared by their letters and digits alone.
bool namesUtf8(std::string_view characterSet) {
    std::string name;
    for (const char byte : characterSet) {
        if (isLetter(byte) || (byte >= '0' && byte <= '9')) {
            name += lowered(byte);
        }
    }
    return name == "utf8";
}

/// Reads the value as the tool does: it puts ".utf8" behind it and takes the whole for the name of a locale, which is
/// language, "_" or "-" with a country, "." with a character set, "@" with a variant. What does not fit ends the reading,
/// and without a character set that has its letters there is no German: "de@euro" is English.
bool makesToolSpeakGerman(const std::string& value) {
    const std::string name = value + ".utf8";
    std::string_view rest = name;
    const std::string_view language = takeUntil(rest, "-_@.");
    if (language.size() != 2 || lowered(language[0]) != 'd' || lowered(language[1]) != 'e') {
        return false;
    }
    if (rest.starts_with('-') || rest.starts_with('_')) {
        rest.remove_prefix(1);
        const std::string_view country = takeUntil(rest, "@.");
        if (country.empty() || !std::all_of(country.begin(), country.end(), isLetter)) {
            return false;
        }
    }
    return rest.starts_with('.') && namesUtf8(takeUntil(rest, "@"));
}

} // namespace

const WatchTexts& watchTexts(const std::optional<std::string>& language) {
    return !language || makesToolSpeakGerman(*language) ? germanTexts : englishTexts;
}

std::string filledIn(const char* text, const std::vector<std::string>& values) {
    fmt::dynamic_format_arg_store<fmt::format_context> arguments;
    for (const std::string& value : values) {
        arguments.push_back(shownName(value));
    }
    return fmt::vformat(text, arguments);
}

std::string groupedNumber(std::uint64_t number) {
    std::string digits = std::to_string(number);
    for (std::size_t at = digits.size(); at > 3; at -= 3) {
        digits.insert(at - 3, 1, ' ');
    }
    return digits;
}

std::string decimalNumber(double number, int decimals, const WatchTexts& texts) {
    std::string digits = fmt::format("{:.{}f}", number, decimals);
    const std::size_t point = digits.find('.');
    if (point != std::string::npos) {
        digits[point] = texts.decimalPoint;
    }
    return digits;
}

} // namespace vadelwatch
