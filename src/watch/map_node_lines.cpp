#include "watch/map_node_lines.hpp"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>
#include <system_error>

namespace {

constexpr std::size_t blockSize = std::size_t{1} << 20U;
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

NodeLineReader::NodeLineReader(const std::string& path) : stream(path, std::ios::binary), buffer(blockSize) {}

bool NodeLineReader::next(std::string_view& line) {
    std::size_t searched = lineStart;
    while (true) {
        const void* const lineFeed = std::memchr(buffer.data() + searched, '\n', filled - searched);
        if (lineFeed != nullptr) {
            const auto lineEnd = static_cast<std::size_t>(static_cast<const char*>(lineFeed) - buffer.data());
            line = std::string_view(buffer.data() + lineStart, lineEnd - lineStart);
            line.remove_suffix(line.size() - (line.find_last_not_of('\r') + 1));
            lineStart = lineEnd + 1;
            return true;
        }
        searched = filled - lineStart;
        if (!readBlock()) {
            return false;
        }
    }
}

/// Moves the begun line to the front and fills up behind it; the buffer grows only for a line longer than itself.
bool NodeLineReader::readBlock() {
    std::copy(buffer.begin() + static_cast<std::ptrdiff_t>(lineStart),
              buffer.begin() + static_cast<std::ptrdiff_t>(filled), buffer.begin());
    filled -= lineStart;
    lineStart = 0;
    if (filled == buffer.size()) {
        buffer.resize(buffer.size() * 2);
    }
    stream.read(buffer.data() + filled, static_cast<std::streamsize>(buffer.size() - filled));
    const auto received = static_cast<std::size_t>(stream.gcount());
    filled += received;
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
