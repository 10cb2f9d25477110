/// \file
/// The path of the running executable. Its catalogues are in the same directory.
#pragma once

#include <string>

namespace vadelclip {

/// Returns the full path of the running executable, with links resolved as far as the platform does it.
///
/// @return an empty string if the platform does not provide the path.
std::string executablePath();

} // namespace vadelclip
