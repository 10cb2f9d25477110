/// \file
/// Names on disk as they are shown to people.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace vadelwatch {

/// A name as it can be shown on a terminal without the terminal obeying it or its letters changing places: control
/// characters, those that turn the direction of text, and bytes that are not UTF-8 as their bytes in hexadecimal, `\x1B`.
/// Everything else stays.
std::string shownName(std::string_view name);

/// Returns the number of columns of a text in UTF-8 on a terminal. Every character counts as one column.
std::size_t columnsOf(std::string_view text);

} // namespace vadelwatch
