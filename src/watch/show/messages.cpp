#include "watch/show/messages.hpp"

#include <fmt/format.h>
#include <utf8.h>

#include <algorithm>

namespace vadelwatch {

std::size_t columnsOf(std::string_view text) {
    const std::string valid = utf8::replace_invalid(text);
    return static_cast<std::size_t>(utf8::distance(valid.begin(), valid.end()));
}

char decimalSign() {
    // The catalogue of a language has its decimal sign as the translation of the point.
    return translateMessage(".").front();
}

std::string withGroups(std::string number) {
    const std::size_t firstDigit = number.starts_with('-') ? 1 : 0;
    for (std::size_t at = std::min(number.find(decimalSign()), number.size()); at > firstDigit + 3; at -= 3) {
        number.insert(at - 3, 1, ' ');
    }
    return number;
}

std::string groupedNumber(std::uint64_t number) {
    return withGroups(std::to_string(number));
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
