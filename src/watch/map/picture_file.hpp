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

/// Catches signals while a map is drawn. A signal removes the temporary file and ends the process by the same signal. Signals
/// that are ignored stay ignored. There may be one object at a time.
class DrawingSignals {
public:
    DrawingSignals();
    DrawingSignals(const DrawingSignals&) = delete;
    DrawingSignals& operator=(const DrawingSignals&) = delete;
    ~DrawingSignals();
};

} // namespace vadelwatch
