#include "boundary/index/uniform_cells.hpp"

#include <algorithm>
#include <bit>
#include <limits>
#include <numeric>

namespace vadelclip {

namespace {

/// Returns an integer for a double. The integers of neighbouring doubles differ by 1. The two zeros are neighbours too.
std::int64_t rankOf(double value) {
    const auto bits = std::bit_cast<std::int64_t>(value);
    return bits < 0 ? std::numeric_limits<std::int64_t>::min() - bits - 1 : bits;
}

double valueAt(std::int64_t rank) {
    return std::bit_cast<double>(rank < 0 ? std::numeric_limits<std::int64_t>::min() - rank - 1 : rank);
}

} // namespace

double UniformCells::firstCoordinateOf(std::uint32_t cell) const {
    const auto belongs = [this, cell](std::int64_t rank) { return cellOf(valueAt(rank)) >= cell; };
    std::int64_t outside = rankOf(origin);
    std::int64_t inside = rankOf(std::numeric_limits<double>::max());
    // The quotient is a few doubles off at most, unless it is close to zero.
    constexpr std::int64_t reach = 8;
    const std::int64_t guess = rankOf(origin + cell / scale);
    if (!belongs(guess - reach)) {
        outside = std::max(outside, guess - reach);
    }
    if (belongs(guess + reach)) {
        inside = std::min(inside, guess + reach);
    }
    while (outside < inside - 1) {
        const std::int64_t middle = std::midpoint(outside, inside);
        (belongs(middle) ? inside : outside) = middle;
    }
    return valueAt(inside);
}

} // namespace vadelclip
