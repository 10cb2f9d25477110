#include "watch/map/node_lines.hpp"

#include "watch/check/line_count.hpp"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cmath>
#include <cstring>
#include <system_error>
#include <unistd.h>

namespace vadelwatch {

namespace {

constexpr std::string_view whiteSpace = " \t\r\v\f";

/// How many bytes behind x may hold the separator, itself included.
constexpr std::size_t separatorReach = 100;

std::string joinColumns(std::string_view columns, char separator) {
    std::string header;
    for (const char column : columns) {
        if (!header.empty()) {
            header += separator;
        }
        header += column;
    }
    return header;
}

/// Takes the number in front of `text` off it.
bool takeNumber(std::string_view& text, double& number) {
    text.remove_prefix(std::min(text.find_first_not_of(whiteSpace), text.size()));
    if (text.starts_with('+')) {
        text.remove_prefix(1);
    }
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc()) {
        return false;
    }
    text.remove_prefix(static_cast<std::size_t>(end - text.data()));
    return true;
}

} // namespace

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

char separatorOfHeader(std::string_view line) {
    constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
    if (line.starts_with(byteOrderMark)) {
        line.remove_prefix(byteOrderMark.size());
    }
    for (const char separator : {';', ',', '\t', ' '}) {
        for (const std::string_view columns : {"xyz", "XYZ", "xyzg", "XYZG"}) {
            if (line == joinColumns(columns, separator)) {
                return separator;
            }
        }
    }
    return 0;
}

bool readMapPosition(std::string_view line, char separator, MapPosition& position) {
    if (!takeNumber(line, position.x)) {
        return false;
    }
    if (separator != ' ') {
        const std::size_t place = line.substr(0, separatorReach).find(separator);
        if (place == std::string_view::npos) {
            return false;
        }
        line.remove_prefix(place + 1);
    }
    // "inf" and "nan" pass std::from_chars and are no coordinates.
    return takeNumber(line, position.y) && !line.empty() && std::isfinite(position.x) && std::isfinite(position.y);
}

} // namespace vadelwatch
