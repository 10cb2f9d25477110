#include "watch/check/line_count.hpp"

#include "text/text_lines.hpp"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace vadelwatch {

namespace {

constexpr std::size_t blockSize = 1 << 18;

/// Counts from where the descriptor stands to the end of the file.
std::optional<LineCount> countFrom(int descriptor, const std::atomic<bool>& stop) {
    LineCount count;
    std::vector<char> block(blockSize);
    while (!stop) {
        const ssize_t received = read(descriptor, block.data(), block.size());
        if (received < 0 && errno == EINTR) {
            continue;
        }
        if (received < 0) {
            return std::nullopt;
        }
        if (received == 0) {
            return count;
        }
        const auto size = static_cast<std::size_t>(received);
        count.bytes += size;
        count.lineFeeds += vadelclip::countLineFeeds(block.data(), size);
        count.endsInLineFeed = block[size - 1] == '\n';
    }
    return std::nullopt;
}

} // namespace

int openRegularFile(const std::string& path) {
    struct stat status {};
    // Looked at before it is opened: opening a device may do something.
    if (stat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode)) {
        return -1;
    }
    const int descriptor = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK);
    if (descriptor != -1 && (fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode))) {
        close(descriptor);
        return -1;
    }
    return descriptor;
}

std::optional<LineCount> countLines(const std::string& path, const std::atomic<bool>& stop) {
    const int descriptor = openRegularFile(path);
    if (descriptor == -1) {
        return std::nullopt;
    }
    const std::optional<LineCount> count = countFrom(descriptor, stop);
    close(descriptor);
    return count;
}

} // namespace vadelwatch
