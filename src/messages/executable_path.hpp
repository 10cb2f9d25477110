/// \file
/// Where the running executable lies; its catalogues lie beside it.
#pragma once

#include <boost/filesystem/path.hpp>

namespace vadelclip {

/// Gives the full path of the running executable, links resolved as far as the platform does it.
///
/// @return the empty path if the platform does not tell.
boost::filesystem::path executablePath();

} // namespace vadelclip
