/// \file
/// Writes the file of a picture so that its name never has part of a picture or an old one.
#pragma once

#include <string>

namespace vadelwatch {

/// Removes the picture of an earlier run. Leaves anything that is not a regular file, such as a FIFO or a device.
void removeOldPicture(const std::string& path);

/// Writes a temporary file in the same directory and renames it. Writes directly to a FIFO, to a device, and to a file in a
/// directory where no file can be made.
///
/// @return 0 on success, otherwise an errno.
int writePictureFile(const std::string& path, const std::string& bytes);

} // namespace vadelwatch
