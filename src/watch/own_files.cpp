#include "watch/own_files.hpp"

#include <filesystem>
#include <system_error>
#include <unistd.h>

namespace fs = std::filesystem;

bool isInputOfRun(const std::string& path, const std::string& inputDirectory, const std::string& boundaryFile) {
    std::error_code error;
    if (fs::equivalent(path, boundaryFile, error)) {
        return true;
    }
    for (const fs::directory_entry& entry : fs::directory_iterator(inputDirectory, error)) {
        std::error_code entryError;
        if (fs::equivalent(path, entry.path(), entryError)) {
            return true;
        }
    }
    return false;
}

bool isSameFile(const std::string& path, const std::string& otherPath) {
    std::error_code error;
    return fs::equivalent(path, otherPath, error) ||
           fs::weakly_canonical(fs::absolute(path)) == fs::weakly_canonical(fs::absolute(otherPath));
}

bool canBeWritten(const std::string& path) {
    // As many as the system follows.
    constexpr int mostLinks = 40;
    fs::path place = path;
    std::error_code error;
    // A file that a link names and that does not exist yet would be made where the link leads to.
    for (int links = 0; fs::is_symlink(place, error) && !fs::exists(place, error); ++links) {
        if (links == mostLinks) {
            return false;
        }
        place = place.parent_path() / fs::read_symlink(place, error);
    }
    if (fs::exists(place, error)) {
        return !fs::is_directory(place, error) && access(place.c_str(), W_OK) == 0;
    }
    const fs::path parent = place.has_parent_path() ? place.parent_path() : ".";
    return fs::is_directory(parent, error) && access(parent.c_str(), W_OK | X_OK) == 0;
}
