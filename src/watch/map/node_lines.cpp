#include "watch/map/node_lines.hpp"

#include "watch/check/node_files.hpp"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <unistd.h>

namespace vadelwatch {

// Room for the longest line and as much again to read into.
NodeLineReader::NodeLineReader(const std::string& path) : descriptor(openRegularFile(path)), buffer(2 * longestLine) {}

NodeLineReader::~NodeLineReader() {
    if (descriptor != -1) {
        close(descriptor);
    }
}

bool NodeLineReader::next(std::string_view& line) {
    std::size_t searched = lineStart;
    while (true) {
        const void* const lineFeed = std::memchr(buffer.data() + searched, '\n', filled - searched);
        if (lineFeed != nullptr) {
            const auto lineEnd = static_cast<std::size_t>(static_cast<const char*>(lineFeed) - buffer.data());
            line = std::string_view(buffer.data() + lineStart, std::min(lineEnd - lineStart, longestLine));
            line.remove_suffix(line.size() - (line.find_last_not_of('\r') + 1));
            lineStart = lineEnd + 1;
            return true;
        }
        // The begun line moves to the front; what is too much of it is dropped.
        searched = std::min(filled - lineStart, longestLine);
        if (!readBlock()) {
            return false;
        }
    }
}

/// Moves the begun line to the front, as far as it may go, and fills up behind it.
bool NodeLineReader::readBlock() {
    const std::size_t begun = std::min(filled - lineStart, longestLine);
    std::memmove(buffer.data(), buffer.data() + lineStart, begun);
    lineStart = 0;
    filled = begun;
    const ssize_t received = TEMP_FAILURE_RETRY(read(descriptor, buffer.data() + filled, buffer.size() - filled));
    filled += received > 0 ? static_cast<std::size_t>(received) : 0;
    return received > 0;
}

} // namespace vadelwatch
