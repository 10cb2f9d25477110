#include "shard/open_file.hpp"

#include "process/child_process.hpp"
#include "shard/interruption.hpp"
#include "shard/messages.hpp"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <vector>

namespace vadelshard {

namespace {

constexpr std::size_t blockSize = 65536;
constexpr mode_t filePermissions = 0666;      // less the mask of the process
constexpr mode_t directoryPermissions = 0777; // less the mask of the process

int openOrFail(const std::string& path, int flags) {
    const int descriptor = open(path.c_str(), flags | O_CLOEXEC, filePermissions);
    if (descriptor == -1) {
        throw fileFailure(path, errno);
    }
    return descriptor;
}

} // namespace

Failure fileFailure(const std::string& path, int error) {
    return Failure(vadelclip::shownName(path) + ": " + std::strerror(error));
}

OpenFile OpenFile::forReading(const std::string& path) {
    return {path, openOrFail(path, O_RDONLY | O_NONBLOCK)};
}

OpenFile OpenFile::forWriting(const std::string& path) {
    // Moved up, so that it can become a descriptor of the tool.
    return {path, vadelclip::movedUp(openOrFail(path, O_RDWR | O_CREAT | O_TRUNC))};
}

OpenFile::~OpenFile() {
    if (descriptor != -1) {
        ::close(descriptor);
    }
}

FileState OpenFile::state() const {
    struct stat status {};
    if (fstat(descriptor, &status) != 0) {
        throw fileFailure(path, errno);
    }
    return S_ISREG(status.st_mode) ? stateOf(status) : FileState{};
}

/// @return the number of bytes, fewer than `size` only at the end of the file.
std::size_t OpenFile::readInto(char* bytes, std::uint64_t position, std::size_t size) const {
    std::size_t got = 0;
    while (got < size) {
        const ssize_t count = pread(descriptor, bytes + got, size - got, static_cast<off_t>(position + got));
        if (count == -1 && errno != EINTR) {
            throw fileFailure(path, errno);
        }
        if (count == 0) {
            break;
        }
        got += count > 0 ? static_cast<std::size_t>(count) : 0;
    }
    return got;
}

std::string OpenFile::read(std::uint64_t position, std::size_t size) const {
    std::string bytes(size, '\0');
    bytes.resize(readInto(bytes.data(), position, size));
    return bytes;
}

void OpenFile::readBlocks(std::uint64_t begin, std::uint64_t end,
                          const std::function<void(std::string_view block)>& consume) const {
    std::vector<char> block(static_cast<std::size_t>(std::min<std::uint64_t>(end - begin, blockSize)));
    while (begin < end) {
        failIfInterrupted();
        const auto wanted = static_cast<std::size_t>(std::min<std::uint64_t>(end - begin, blockSize));
        const std::size_t got = readInto(block.data(), begin, wanted);
        if (got < wanted) {
            throw Failure(formatMessage("{0} has become shorter while it was read.", path));
        }
        consume({block.data(), got});
        begin += got;
    }
}

void OpenFile::append(std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t written = ::write(descriptor, bytes.data(), bytes.size());
        if (written == -1 && errno != EINTR) {
            throw fileFailure(path, errno);
        }
        bytes.remove_prefix(written > 0 ? static_cast<std::size_t>(written) : 0);
    }
}

void OpenFile::append(const OpenFile& source, std::uint64_t begin, std::uint64_t end) {
    source.readBlocks(begin, end, [this](std::string_view block) { append(block); });
}

void OpenFile::close() {
    const int closing = descriptor;
    descriptor = -1;
    if (::close(closing) != 0) {
        throw fileFailure(path, errno);
    }
}

std::string readWholeFile(const std::string& path) {
    const OpenFile file = OpenFile::forReading(path);
    return file.read(0, static_cast<std::size_t>(file.state().size));
}

void writeWholeFile(const std::string& path, std::string_view content) {
    OpenFile file = OpenFile::forWriting(path);
    file.append(content);
    file.close();
}

namespace {

void copyFile(const std::string& from, const std::string& to) {
    const OpenFile source = OpenFile::forReading(from);
    OpenFile target = OpenFile::forWriting(to);
    target.append(source, 0, source.state().size);
    target.close();
}

} // namespace

void moveFile(const std::string& from, const std::string& to) {
    if (rename(from.c_str(), to.c_str()) == 0) {
        return;
    }
    if (errno != EXDEV) {
        throw fileFailure(to, errno);
    }
    copyFile(from, to);
    removeAll(from);
}

void linkOrCopy(const std::string& from, const std::string& to) {
    if (link(from.c_str(), to.c_str()) != 0) {
        copyFile(from, to);
    }
}

void makeDirectory(const std::string& path) {
    if (mkdir(path.c_str(), directoryPermissions) != 0) {
        throw fileFailure(path, errno);
    }
}

void removeAll(const std::string& path) {
    // A slower attempt may add files in the meantime.
    constexpr int attempts = 100;
    std::error_code error;
    for (int i = 0; i < attempts; ++i) {
        std::filesystem::remove_all(path, error);
        if (error != std::errc::directory_not_empty) {
            break;
        }
    }
    if (error) {
        throw fileFailure(path, error.value());
    }
}

bool isReadable(const std::string& path) {
    return faccessat(AT_FDCWD, path.c_str(), R_OK, AT_EACCESS) == 0;
}

bool exists(const std::string& path) {
    struct stat status {};
    return lstat(path.c_str(), &status) == 0;
}

} // namespace vadelshard
