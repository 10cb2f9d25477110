#include "watch/check/own_files.hpp"

#include "clip/input_selection.hpp"

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace vadelwatch {

namespace fs = std::filesystem;

namespace {

/// Returns the errno of `stat`, 0 for a file that exists.
int whyAbsent(const fs::path& path) {
    struct stat status {};
    return stat(path.c_str(), &status) == 0 ? 0 : errno;
}

int whyNotPermitted(const fs::path& path, int mode) {
    return access(path.c_str(), mode) == 0 ? 0 : errno;
}

/// Returns the path where a file would be made: follows links that lead to a missing file. `stat` fails with ELOOP for
/// a circle of links, which ends the loop.
fs::path placeOf(const std::string& path) {
    fs::path place = path;
    std::error_code error;
    while (whyAbsent(place) == ENOENT && fs::is_symlink(place, error)) {
        place = place.parent_path() / fs::read_symlink(place, error);
    }
    return place;
}

/// Returns a path that can be compared, also if some part of it cannot be read.
fs::path comparable(const std::string& path) {
    std::error_code error;
    const fs::path absolute = fs::absolute(placeOf(path), error);
    const fs::path canonical = fs::weakly_canonical(absolute, error);
    return error ? absolute.lexically_normal() : canonical;
}

/// Returns true if a new file at this path would have the place and the suffix of a node file.
bool wouldBeNodeFile(const std::string& path, const std::string& inputDirectory) {
    const fs::path place = comparable(path);
    return vadelclip::hasNodeFileSuffix(place.native()) && place.parent_path() == comparable(inputDirectory);
}

} // namespace

bool isInputOfRun(const std::string& path, const std::string& inputDirectory, const std::string& boundaryFile) {
    if (isSameFile(path, boundaryFile) || isSameFile(path, inputDirectory) || wouldBeNodeFile(path, inputDirectory)) {
        return true;
    }
    std::error_code error;
    for (const fs::directory_entry& entry : fs::directory_iterator(inputDirectory, error)) {
        std::error_code entryError;
        if (fs::equivalent(path, entry.path(), entryError)) {
            return true;
        }
    }
    return false;
}

bool isSameFile(const std::string& first, const std::string& second) {
    std::error_code error;
    return fs::equivalent(first, second, error) || comparable(first) == comparable(second);
}

bool isWithin(const std::string& path, const std::string& directory) {
    const fs::path inner = comparable(path);
    const fs::path outer = comparable(directory);
    return std::mismatch(outer.begin(), outer.end(), inner.begin(), inner.end()).first == outer.end();
}

int whyUnwritable(const std::string& path) {
    const fs::path place = placeOf(path);
    std::error_code error;
    if (whyAbsent(place) != ENOENT) {
        return fs::is_directory(place, error) ? EISDIR : whyNotPermitted(place, W_OK);
    }
    const fs::path directory = place.has_parent_path() ? place.parent_path() : ".";
    if (directory.lexically_normal() == ".") {
        // `access` succeeds for a working directory that has been removed.
        static_cast<void>(fs::current_path(error));
    }
    return error ? error.value() : whyNotPermitted(directory, W_OK | X_OK);
}

} // namespace vadelwatch
