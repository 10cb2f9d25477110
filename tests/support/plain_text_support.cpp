#include "support/plain_text_support.hpp"

#include <bit>
#include <cstdint>
#include <cstdio>

namespace vadelclip {

NumberReading PlainNumberReader::read(const std::string& text) {
    stream.clear();
    stream.str(text);
    NumberReading reading{0.0, 0};
    stream >> reading.value;
    if (!stream.fail()) {
        reading.length = stream.eof() ? text.size() : static_cast<std::size_t>(stream.tellg());
    }
    return reading;
}

bool sameReading(const NumberReading& a, const NumberReading& b) {
    return std::bit_cast<std::uint64_t>(a.value) == std::bit_cast<std::uint64_t>(b.value) && a.length == b.length;
}

std::string describe(const NumberReading& reading) {
    char text[80];
    std::snprintf(text, sizeof text, "%a length %zu", reading.value, reading.length);
    return text;
}

bool readNodeLinePlainly(const std::string& line, char separator, Point2D& point) {
    std::stringstream stream(line);
    stream >> point.x;
    if (!stream.good()) {
        return false;
    }
    if (separator != ' ') {
        int attempts = 0;
        char byte = 0;
        do {
            if (attempts == 100 || !stream.get(byte)) {
                return false;
            }
            ++attempts;
        } while (byte != separator);
    }
    stream >> point.y;
    return stream.good();
}

std::vector<std::string> terminatedLines(const std::string& content) {
    std::vector<std::string> lines;
    std::size_t start = 0;
    for (std::size_t end = content.find('\n'); end != std::string::npos; end = content.find('\n', start)) {
        const std::size_t length = end - start;
        lines.push_back(content.substr(start, length > 0 && content[end - 1] == '\r' ? length - 1 : length));
        start = end + 1;
    }
    return lines;
}

std::string unterminatedLine(const std::string& content) {
    const std::size_t lineFeed = content.rfind('\n');
    return lineFeed == std::string::npos ? content : content.substr(lineFeed + 1);
}

} // namespace vadelclip
