/// \file
/// Where the running executable lies; its catalogues lie beside it.
#pragma once

#include <string>

namespace vadelclip {

/// Gives the full path of the running executable, links resolved as far as the platform does it.
///
/// @return an empty string if the platform does not provide the path.
std::string executablePath();

} // namespace vadelclip
