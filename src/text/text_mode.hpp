/// \file
/// What has to be done about carriage returns where the platform's streams have no text mode of their own.
#pragma once

#include <cstddef>
#include <string_view>

namespace vadelclip {

#if defined(_WIN32)
/// The platform's text mode has removed the carriage return already; a second one before the line feed stays.
inline constexpr bool platformHasTextMode = true;
#else
inline constexpr bool platformHasTextMode = false;
#endif

/// Tells how many bytes at the end of a line belong to its line end. Only for a line that ended in a line feed.
inline std::size_t carriageReturnsToDrop(std::string_view line) {
    return !platformHasTextMode && !line.empty() && line.back() == '\r' ? 1 : 0;
}

} // namespace vadelclip
