/// \file
/// Which carriage returns to remove if the file streams of the platform have no text mode.
#pragma once

#include <cstddef>
#include <string_view>

namespace vadelclip {

#if defined(_WIN32)
/// The text mode of the platform has already removed one carriage return. A second one is part of the line.
inline constexpr bool platformHasTextMode = true;
#else
inline constexpr bool platformHasTextMode = false;
#endif

/// Returns the number of bytes at the end of a line that are part of its line end. The line must have ended in a line
/// feed.
inline std::size_t carriageReturnsToDrop(std::string_view line) {
    return !platformHasTextMode && !line.empty() && line.back() == '\r' ? 1 : 0;
}

} // namespace vadelclip
