#include "watch/map/picture_file.hpp"

#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <regex>
#include <system_error>
#include <unistd.h>

namespace vadelwatch {

namespace {

/// Makes an empty file in the directory of the picture.
/// @return its path, or an empty string if no file can be made there.
std::string makeTemporaryFile(const std::filesystem::path& picture) {
    std::string path = (picture.parent_path() / (".vadelwatch-" + std::to_string(getpid()) + ".part")).string();
    const int descriptor = open(path.c_str(), O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC, 0666);
    if (descriptor == -1) {
        return "";
    }
    close(descriptor);
    return path;
}

int writeBytes(const std::string& path, const std::string& bytes) {
    errno = 0;
    std::ofstream output(path, std::ios::binary);
    output.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    output.close();
    return output.fail() ? (errno != 0 ? errno : EIO) : 0;
}

} // namespace

bool isPictureFileName(std::string_view name) {
    return name.ends_with(".png") || name.ends_with(".svg");
}

std::string worldFileOf(const std::string& pictureFile) {
    constexpr std::string_view suffix = ".png";
    return pictureFile.ends_with(suffix) ? pictureFile.substr(0, pictureFile.size() - suffix.size()) + ".pgw" : "";
}

std::optional<PictureSize> readPictureSize(const std::string& text) {
    std::smatch parts;
    if (!std::regex_match(text, parts, std::regex("([0-9]{3,4})x([0-9]{3,4})"))) {
        return std::nullopt;
    }
    const PictureSize size{std::stoi(parts[1]), std::stoi(parts[2])};
    const bool isInRange = size.width >= 800 && size.width <= 4096 && size.height >= 600 && size.height <= 4096;
    return isInRange ? std::optional(size) : std::nullopt;
}

void removeOldPicture(const std::string& path) {
    std::error_code error;
    if (std::filesystem::is_regular_file(std::filesystem::symlink_status(path, error))) {
        std::filesystem::remove(path, error);
    }
}

int writePictureFile(const std::string& path, const std::string& bytes) {
    std::error_code error;
    const std::filesystem::file_status status = std::filesystem::status(path, error);
    const bool isReplaceable =
        status.type() == std::filesystem::file_type::not_found || status.type() == std::filesystem::file_type::regular;
    // A circle of links is not replaceable, so this ends.
    std::filesystem::path target = path;
    while (isReplaceable && std::filesystem::is_symlink(target, error)) {
        target = target.parent_path() / std::filesystem::read_symlink(target, error);
    }
    const std::string temporaryFile = isReplaceable ? makeTemporaryFile(target) : "";
    if (temporaryFile.empty()) {
        return writeBytes(path, bytes);
    }
    int failure = writeBytes(temporaryFile, bytes);
    if (failure == 0 && rename(temporaryFile.c_str(), target.c_str()) != 0) {
        failure = errno;
    }
    if (failure != 0) {
        unlink(temporaryFile.c_str());
    }
    return failure;
}

} // namespace vadelwatch
