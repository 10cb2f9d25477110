/// \file
/// Arithmetic of line counts: signed 32-bit integers that wrap around. It is unsigned inside, because signed overflow
/// is undefined.
#pragma once

#include <cstdint>

namespace vadelclip {

/// Returns the low 32 bits of a count as a signed number.
constexpr std::int32_t wrapTo32(std::uint64_t count) {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(count));
}

constexpr std::int32_t addWrapping(std::int32_t a, std::int32_t b) {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) + static_cast<std::uint32_t>(b));
}

} // namespace vadelclip
