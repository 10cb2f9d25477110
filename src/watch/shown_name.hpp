/// \file
/// Names on disk as they are shown to people.
#pragma once

#include <string>
#include <string_view>

/// A name as it can be shown on a terminal without the terminal obeying it: control characters as their bytes in
/// hexadecimal, `\x1B`. Everything else stays, whatever its character set.
std::string shownName(std::string_view name);
