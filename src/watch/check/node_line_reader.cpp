#include "watch/check/node_line_reader.hpp"

#include <algorithm>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace vadelwatch {

namespace {

constexpr std::size_t blockSize = std::size_t{1} << 18U;

/// @return the descriptor; -1 for a file that cannot be opened or is not regular.
int openRegularFile(const std::string& path) {
    struct stat status {};
    // Checked before the file is opened, because opening a device may have an effect.
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

} // namespace

// Not a vector, which would write zeros to the whole buffer for each small file.
NodeLineReader::NodeLineReader(const std::string& path)
    : descriptor(openRegularFile(path)), failed(descriptor == -1),
      buffer(std::make_unique_for_overwrite<char[]>(longestLine + blockSize)) {} // NOLINT(modernize-avoid-c-arrays)

NodeLineReader::~NodeLineReader() {
    close(descriptor); // Closing -1 has no effect.
}

bool NodeLineReader::next(std::string_view& line) {
    std::size_t searched = lineStart;
    while (true) {
        const void* const lineFeed = std::memchr(buffer.get() + searched, '\n', filled - searched);
        if (lineFeed != nullptr) {
            const auto lineEnd = static_cast<std::size_t>(static_cast<const char*>(lineFeed) - buffer.get());
            line = std::string_view(buffer.get() + lineStart, std::min(lineEnd - lineStart, longestLine));
            lineStart = lineEnd + 1;
            ++counted.lineFeeds;
            return true;
        }
        // The incomplete line moves to the front, is truncated there, and the next block is read after it.
        searched = std::min(filled - lineStart, longestLine);
        std::memmove(buffer.get(), buffer.get() + lineStart, searched);
        lineStart = 0;
        filled = searched;
        const ssize_t received = TEMP_FAILURE_RETRY(read(descriptor, buffer.get() + filled, blockSize));
        if (received <= 0) {
            failed = failed || received < 0;
            return false;
        }
        filled += static_cast<std::size_t>(received);
        counted.bytes += static_cast<std::size_t>(received);
        counted.endsInLineFeed = buffer[filled - 1] == '\n';
    }
}

} // namespace vadelwatch
