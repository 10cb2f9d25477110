/// \file
/// Counts of lines are 32-bit and signed and wrap around; they are computed unsigned, so that no sum overflows.
#pragma once

#include <cstdint>

namespace vadelclip {

/// Gives the low 32 bits of a count as a signed number.
constexpr std::int32_t wrapTo32(std::uint64_t count) {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(count));
}

constexpr std::int32_t addWrapping(std::int32_t a, std::int32_t b) {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) + static_cast<std::uint32_t>(b));
}

} // namespace vadelclip
