/// \file
/// Whether there is room for files where the output goes.
#pragma once

#include <string>
#include <sys/statvfs.h>
#include <vector>

namespace vadelwatch {

/// No space for further bytes. A file system that counts no blocks is never full.
bool isOutOfSpace(const struct statvfs& fileSystem);

/// No inode for a further file. Some file systems do not count them, and say that there are none at all.
bool isOutOfInodes(const struct statvfs& fileSystem);

/// Adds a line for everything about a directory that keeps files from being written there now.
void addPlace(const std::string& directory, std::vector<std::string>& lines);

} // namespace vadelwatch
