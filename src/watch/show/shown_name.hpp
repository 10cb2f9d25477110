/// \file
/// Names on disk as they are shown to people.
#pragma once

#include <string>
#include <string_view>

namespace vadelwatch {

/// A name as it can be shown on a terminal without the terminal obeying it or its letters changing places: control
/// characters, those that turn the direction of text, and bytes that are not UTF-8 as their bytes in hexadecimal, `\x1B`.
/// Everything else stays.
std::string shownName(std::string_view name);

} // namespace vadelwatch
