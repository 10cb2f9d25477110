#include "watch/check/line_figures.hpp"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace vadelwatch {

#ifdef __SSE2__

namespace {

/// Returns one bit for each byte of the window, the first byte in the lowest bit.
template <typename Test>
std::uint64_t bitsOf(const char* line, Test test) {
    std::uint64_t bits = 0;
    for (std::size_t at = 0; at < plainLineReach; at += sizeof(__m128i)) {
        __m128i bytes;
        std::memcpy(&bytes, line + at, sizeof bytes);
        bits |= static_cast<std::uint64_t>(static_cast<std::uint16_t>(_mm_movemask_epi8(test(bytes)))) << at;
    }
    return bits;
}

std::uint64_t bitsEqualTo(const char* line, char byte) {
    return bitsOf(line, [byte](__m128i bytes) { return _mm_cmpeq_epi8(bytes, _mm_set1_epi8(byte)); });
}

std::uint64_t digitBits(const char* line) {
    return bitsOf(line, [](__m128i bytes) {
        const __m128i values = _mm_sub_epi8(bytes, _mm_set1_epi8('0'));
        return _mm_cmpeq_epi8(_mm_min_epu8(values, _mm_set1_epi8(9)), values);
    });
}

std::uint64_t lowestBit(std::uint64_t bits) {
    return bits & (~bits + 1);
}

} // namespace

const char* endOfPlainLine(const char* line, const char* last, char separator, std::size_t maxColumns) {
    const std::uint64_t separators = bitsEqualTo(line, separator);
    const std::uint64_t first = lowestBit(separators);
    const std::uint64_t second = lowestBit(separators & ~first);
    if (second == 0) {
        return nullptr;
    }
    const std::uint64_t lineFeeds = bitsEqualTo(line, '\n');
    const std::uint64_t digits = digitBits(line);
    const std::uint64_t inNumbers = (second - 1) & ~first;
    const std::uint64_t points = bitsEqualTo(line, '.') & inNumbers;
    const std::uint64_t signs = bitsEqualTo(line, '-') & inNumbers;
    const std::uint64_t starts = 1U | (first << 1U);
    const std::uint64_t afterSigns = (signs | points) << 1U;
    // Both numbers contain only digits, points and signs. Each begins with a digit or a sign, and a digit follows every
    // sign and point.
    const bool isPlain =
        (inNumbers & ~(digits | points | signs)) == 0 && (((starts & ~signs) | afterSigns) & ~digits) == 0;
    if (!isPlain) {
        return nullptr;
    }
    const char* const beyond = line + plainLineReach;
    const char* const end =
        lineFeeds != 0
            ? line + std::countr_zero(lineFeeds)
            : static_cast<const char*>(std::memchr(beyond, '\n', static_cast<std::size_t>(last + 1 - beyond)));
    if (maxColumns != 0 && static_cast<std::size_t>(std::count(line, end, separator)) >= maxColumns) {
        return nullptr;
    }
    return end;
}

#else

const char* endOfPlainLine(const char*, const char*, char, std::size_t) {
    return nullptr;
}

#endif

} // namespace vadelwatch
