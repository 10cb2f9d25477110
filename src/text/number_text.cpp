#include "text/number_text.hpp"

#include <array>
#include <bit>
#include <charconv>
#include <cstdint>
#include <cstring>
#include <sstream>
#include <string>

namespace vadelclip {

namespace {

/// Any integer of this many digits fits into 64 bits.
constexpr std::size_t maxDigits = 19;

/// Powers of ten, one for each number of digits after the point. These are exact in a double.
constexpr std::array exactPowersOfTen = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,
                                         1e10, 1e11, 1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19};
static_assert(exactPowersOfTen.size() > maxDigits);

/// Integers up to here are exact in a double.
constexpr std::uint64_t largestExactInteger = std::uint64_t{1} << 53;

/// White space of the classic locale.
bool isBlank(char byte) {
    return byte == ' ' || (byte >= '\t' && byte <= '\r');
}

bool isSign(char byte) {
    return byte == '-' || byte == '+';
}

/// Returns more than 9 for a byte that is not a digit.
std::uint64_t digitValue(char byte) {
    return static_cast<unsigned char>(byte) - std::uint64_t{'0'};
}

bool isDigit(char byte) {
    return digitValue(byte) <= 9;
}

bool isExponentMark(char byte) {
    return byte == 'e' || byte == 'E';
}

/// Appends the digits of the text to a number and returns the position after them.
const char* scanDigits(const char* position, const char* last, std::uint64_t& number) {
    while (position != last && isDigit(*position)) {
        number = number * 10 + digitValue(*position);
        ++position;
    }
    return position;
}

constexpr std::uint64_t eightZeros = 0x3030303030303030; ///< '0' in each byte.

/// Returns true if eight bytes of text are digits (D. Lemire, Number Parsing at a Gigabyte per Second, 2021). The first
/// byte is the lowest. Neither operation sets the high bit of a digit. At least one of them sets the high bit of the
/// first other byte, because a carry reaches only bytes after it.
bool areEightDigits(std::uint64_t bytes) {
    return (((bytes + 0x4646464646464646) | (bytes - eightZeros)) & 0x8080808080808080) == 0;
}

/// Adds the digits in pairs, then the pairs, then the pairs of pairs.
std::uint64_t valueOfEightDigits(std::uint64_t bytes) {
    constexpr std::uint64_t mask = 0x000000FF000000FF;
    bytes -= eightZeros;
    bytes = bytes * 10 + (bytes >> 8);
    return ((bytes & mask) * ((1000000ULL << 32) + 100) + ((bytes >> 16) & mask) * ((10000ULL << 32) + 1)) >> 32;
}

/// Reads the first 1 to 8 of eight bytes of text.
///
/// @param number receives their value. It is unspecified if one of them is not a digit.
/// @return true if all are digits.
bool readDigits(const char* text, unsigned count, std::uint64_t& number) {
    std::memcpy(&number, text, sizeof number);
    const unsigned shift = 64 - 8 * count;
    number = number << shift | eightZeros % (std::uint64_t{1} << shift); // zeros in front
    if (!areEightDigits(number)) {
        return false;
    }
    number = valueOfEightDigits(number);
    return true;
}

bool canReadEightDigits(const char* position, const char* last) {
    return std::endian::native == std::endian::little && last - position >= 8;
}

/// Does the same as `scanDigits` for a number of 0, faster for six or seven digits before a point, as most projected
/// coordinates have.
const char* scanInteger(const char* position, const char* last, std::uint64_t& number) {
    if (canReadEightDigits(position, last)) {
        for (const unsigned count : {6U, 7U}) {
            std::uint64_t digits = 0;
            if (position[count] == '.' && readDigits(position, count, digits)) {
                number = digits;
                return position + count;
            }
        }
    }
    return scanDigits(position, last, number);
}

/// Does the same as `scanDigits`, faster for eight digits and more.
const char* scanFraction(const char* position, const char* last, std::uint64_t& number) {
    std::uint64_t digits = 0;
    if (canReadEightDigits(position, last) && readDigits(position, 8, digits)) {
        number = number * 100000000 + digits;
        position += 8;
    }
    return scanDigits(position, last, number);
}

NumberReading readThroughStream(std::string_view text) {
    std::istringstream stream{std::string(text)};
    NumberReading reading{0.0, 0};
    if (stream >> reading.value) {
        reading.length = stream.eof() ? text.size() : static_cast<std::size_t>(stream.tellg());
    }
    return reading;
}

/// Returns the position after the exponent at this position, or a null pointer if it has no digits: then a stream fails.
const char* skipExponent(const char* position, const char* last) {
    ++position;
    if (position != last && isSign(*position)) {
        ++position;
    }
    std::uint64_t exponent = 0;
    const char* const end = scanDigits(position, last, exponent);
    return end == position ? nullptr : end;
}

/// Reads a number that has an exponent or too many digits for an exact division.
///
/// Not inlined, because `readNumber` would be slower: it would have to save more registers.
///
/// @param digits the part of the text from the first digit or point to the end of the digits.
[[gnu::noinline]] NumberReading readLongNumber(std::string_view text, std::string_view digits, bool negative) {
    const char* const last = text.data() + text.size();
    const char* end = digits.data() + digits.size();
    if (end != last && isExponentMark(*end)) {
        end = skipExponent(end, last);
    }
    if (end == nullptr || digits.empty() || digits == ".") {
        return {0.0, 0};
    }
    double value = 0.0;
    const auto [position, error] = std::from_chars(digits.data(), end, value);
    if (error != std::errc() || position != end) {
        return readThroughStream(text);
    }
    return {negative ? -value : value, static_cast<std::size_t>(end - text.data())};
}

} // namespace

NumberReading readNumber(std::string_view text) {
    const char* const last = text.data() + text.size();
    const char* position = text.data();
    bool negative = false;
    // A number that begins with a digit, as most do, needs only this test for white space and sign.
    if (position != last && !isDigit(*position)) {
        while (position != last && isBlank(*position)) {
            ++position;
        }
        if (position != last && isSign(*position)) {
            negative = *position == '-';
            ++position;
        }
    }
    const char* const digits = position;
    std::uint64_t mantissa = 0; // all digits as one integer; wraps around beyond 19 digits
    position = scanInteger(position, last, mantissa);
    auto digitCount = static_cast<std::size_t>(position - digits);
    std::size_t fractionDigits = 0;
    if (position != last && *position == '.') {
        const char* const fraction = position + 1;
        position = scanFraction(fraction, last, mantissa);
        fractionDigits = static_cast<std::size_t>(position - fraction);
        digitCount += fractionDigits;
    }
    if (digitCount == 0 || digitCount > maxDigits || mantissa > largestExactInteger ||
        (position != last && isExponentMark(*position))) {
        return readLongNumber(text, {digits, position}, negative);
    }
    // Both operands are exact, so the one rounding of the division results in the nearest double.
    const double value = static_cast<double>(mantissa) / exactPowersOfTen[fractionDigits];
    return {negative ? -value : value, static_cast<std::size_t>(position - text.data())};
}

} // namespace vadelclip
