#include "watch/check/output_place.hpp"

#include "watch/show/messages.hpp"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace vadelwatch {

bool isOutOfSpace(const struct statvfs& fileSystem) {
    return fileSystem.f_blocks > 0 && fileSystem.f_bavail == 0;
}

bool isOutOfInodes(const struct statvfs& fileSystem) {
    return fileSystem.f_files > 0 && (fileSystem.f_favail == 0 || fileSystem.f_ffree == 0);
}

void addPlace(const std::string& directory, std::vector<std::string>& lines) {
    struct statvfs fileSystem {};
    struct stat status {};
    if (stat(directory.c_str(), &status) != 0 || !S_ISDIR(status.st_mode) ||
        statvfs(directory.c_str(), &fileSystem) != 0) {
        return;
    }
    if (isOutOfSpace(fileSystem)) {
        lines.push_back(formatMessage("No space is left on the file system of {0}.", directory));
    }
    if (isOutOfInodes(fileSystem)) {
        lines.push_back(
            formatMessage("No inode is left on the file system of {0}, so no file can be made there.", directory));
    }
    // With the rights that files are made with, which need not be those of the user who logged in.
    if (faccessat(AT_FDCWD, directory.c_str(), W_OK | X_OK, AT_EACCESS) != 0) {
        lines.push_back(formatMessage("No file can be made in {0}: {1}", directory, std::strerror(errno)));
    }
}

} // namespace vadelwatch
