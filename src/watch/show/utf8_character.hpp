/// \file
/// Characters in names on disk, which may hold any bytes.
#pragma once

#include <cstddef>
#include <string_view>

namespace vadelwatch {

/// Whether a byte goes on with a character and does not begin one.
bool isContinuation(char byte);

/// Columns that a text takes on a terminal.
///
/// @param text valid UTF-8, each character of it one column wide.
std::size_t columnsOf(std::string_view text);

/// How many bytes the character at the front takes.
///
/// @param bytes not empty.
/// @return 0 if no valid character of UTF-8 stands there, and for the control characters of one byte.
std::size_t characterLength(std::string_view bytes);

} // namespace vadelwatch
