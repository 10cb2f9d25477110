/// \file
/// Names, sizes and files of pictures. The file of a picture is never incomplete. Unless its path is a link, it is never
/// the one of an earlier run.
#pragma once

#include "watch/map/layout.hpp"

#include <optional>
#include <string>
#include <string_view>

namespace vadelwatch {

/// Returns true if a name ends in ".png" or ".svg". Another name is refused before a run.
bool isPictureFileName(std::string_view name);

/// Returns the name of the world file that places a PNG picture in the coordinates of the data: ".pgw" in place of ".png".
/// Empty for another picture.
std::string worldFileOf(const std::string& pictureFile);

/// Reads "1200x900", from 800x600 to 4096x4096. Returns nothing for anything else.
std::optional<PictureSize> readPictureSize(const std::string& text);

/// Removes the picture of an earlier run. Leaves anything that is not a regular file, such as a FIFO or a device. Leaves
/// links and their files too: such a file may have another purpose.
void removeOldPicture(const std::string& path);

/// Writes a temporary file in the same directory and renames it. Follows links: they stay, and the file that they lead to is
/// replaced or made. Writes directly to a FIFO, to a device, and to a file in a directory where no file can be made.
///
/// @return 0 on success, otherwise an errno.
int writePictureFile(const std::string& path, const std::string& bytes);

} // namespace vadelwatch
