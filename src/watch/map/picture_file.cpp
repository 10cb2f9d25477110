#include "watch/map/picture_file.hpp"

#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <system_error>
#include <unistd.h>

namespace vadelwatch {

namespace {

constexpr std::array endingSignals{SIGINT, SIGTERM, SIGHUP, SIGQUIT};

// Read by the signal handler, which must not allocate memory.
std::string temporaryFile;

extern "C" void endDrawing(int number) {
    if (!temporaryFile.empty()) {
        unlink(temporaryFile.c_str());
    }
    // The action is the default one again, see SA_RESETHAND.
    raise(number);
}

/// Makes an empty file in the directory of the picture.
/// @return false if no file can be made there.
bool makeTemporaryFile(const std::filesystem::path& picture) {
    temporaryFile = (picture.parent_path() / (".vadelwatch-" + std::to_string(getpid()) + ".part")).string();
    const int descriptor = open(temporaryFile.c_str(), O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC, 0666);
    if (descriptor == -1) {
        temporaryFile.clear();
        return false;
    }
    close(descriptor);
    return true;
}

int writeBytes(const std::string& path, const std::string& bytes) {
    errno = 0;
    std::ofstream output(path, std::ios::binary);
    output.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    output.close();
    return output.fail() ? (errno != 0 ? errno : EIO) : 0;
}

} // namespace

void removeOldPicture(const std::string& path) {
    std::error_code error;
    if (std::filesystem::is_regular_file(path, error)) {
        // The file itself, if the path is a link to it.
        std::filesystem::remove(std::filesystem::canonical(path, error), error);
    }
}

int writePictureFile(const std::string& path, const std::string& bytes) {
    std::error_code error;
    const std::filesystem::file_status status = std::filesystem::status(path, error);
    const bool isReplaceable =
        status.type() == std::filesystem::file_type::not_found || status.type() == std::filesystem::file_type::regular;
    if (!isReplaceable || !makeTemporaryFile(path)) {
        return writeBytes(path, bytes);
    }
    int failure = writeBytes(temporaryFile, bytes);
    if (failure == 0 && rename(temporaryFile.c_str(), path.c_str()) != 0) {
        failure = errno;
    }
    if (failure != 0) {
        unlink(temporaryFile.c_str());
    }
    temporaryFile.clear();
    return failure;
}

DrawingSignals::DrawingSignals() {
    for (const int number : endingSignals) {
        struct sigaction action {};
        if (sigaction(number, nullptr, &action) == 0 && action.sa_handler != SIG_IGN) {
            action = {};
            action.sa_handler = endDrawing;
            action.sa_flags = static_cast<int>(SA_RESETHAND | SA_NODEFER);
            sigaction(number, &action, nullptr);
        }
    }
}

DrawingSignals::~DrawingSignals() {
    for (const int number : endingSignals) {
        struct sigaction action {};
        if (sigaction(number, nullptr, &action) == 0 && action.sa_handler == endDrawing) {
            std::signal(number, SIG_DFL);
        }
    }
}

} // namespace vadelwatch
