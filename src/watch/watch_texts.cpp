#include "watch/watch_texts.hpp"

#include "watch/shown_name.hpp"
#include "watch/text_tables.hpp"

#include <fmt/args.h>
#include <fmt/format.h>

#include <cctype>

const WatchTexts& watchTexts(const std::optional<std::string>& language) {
    if (!language) {
        return germanTexts;
    }
    const std::string folder = language->substr(0, 2);
    const bool named = folder == "de" || folder == "DE" || folder == "De" || folder == "dE";
    const bool ends = language->size() <= 2 || std::isalnum(static_cast<unsigned char>((*language)[2])) == 0;
    return named && ends ? germanTexts : englishTexts;
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
