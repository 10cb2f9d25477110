/// \file
/// The file that a name means when it is written or deleted.
#pragma once

#include <string>

namespace vadelclip_gdal {

/// Returns the absolute name after all symbolic links, so that a rename replaces the file and leaves the link. A path
/// of GDAL's virtual file systems, such as /vsimem/area.xml, is returned unchanged.
///
/// Reports anything but a regular file or a name that is free through CPLError, and returns an empty string: a rename
/// would replace a device.
std::string findTarget(const std::string& path);

} // namespace vadelclip_gdal
