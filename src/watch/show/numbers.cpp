#include "watch/show/numbers.hpp"

#include "messages/translation.hpp"

#include <fmt/format.h>

namespace vadelwatch {

char decimalSign() {
    // The catalogue of a language has its decimal sign as the translation of the point.
    return vadelclip::translateMessage(".").front();
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

} // namespace vadelwatch
