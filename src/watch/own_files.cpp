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
    const fs::path parent = fs::path(path).parent_path();
    std::error_code error;
    return !fs::is_directory(path, error) && access(parent.empty() ? "." : parent.c_str(), W_OK) == 0;
}
