#include "watch/check/line_figures.hpp"

#include "clip/node_file_header.hpp"
#include "clip/node_line.hpp"
#include "text/text_mode.hpp"

#include <algorithm>

namespace vadelwatch {

namespace {

/// The positions of this many lines of each file are read, and then those of every 64th line and of unusual lines:
/// reading all of them takes longer than a run that keeps no node.
constexpr std::uint64_t linesReadInFull = 1000;
constexpr std::uint64_t sampleInterval = 64;

bool isDigit(char byte) {
    return byte >= '0' && byte <= '9';
}

/// Returns the position after a decimal, such as -12.5, and the separator directly after it; null for anything else.
const char* afterPlainNumber(const char* at, const char* end, char separator) {
    const auto skipDigits = [&at, end] {
        const char* const first = at;
        at = std::find_if_not(at, end, isDigit);
        return at != first;
    };
    at += at != end && *at == '-' ? 1 : 0;
    if (!skipDigits()) {
        return nullptr;
    }
    if (at != end && *at == '.') {
        ++at;
        if (!skipDigits()) {
            return nullptr;
        }
    }
    return at != end && *at == separator ? at + 1 : nullptr;
}

/// Checks the lines of one file.
class LinePass {
public:
    /// @return false if the line is not a header.
    bool readHeader(std::string_view line) {
        std::int32_t format = 0;
        std::string errorText;
        const bool isHeader =
            vadelclip::readNodeFileHeader(std::string(withoutLineEnd(line)), separator, format, errorText);
        columns = format == 2 ? 4 : 3;
        return isHeader;
    }

    void check(std::string_view line, std::uint64_t number) {
        if (number > linesReadInFull && number % sampleInterval != 0 && isPlainLine(line, separator) &&
            (separator != ',' || !hasDecimalComma(line))) {
            figures.isSampled = true;
            return;
        }
        line = withoutLineEnd(line);
        vadelclip::Point2D point{};
        if (vadelclip::readNodeLine(line, separator, point)) {
            includePosition(figures.positions, point);
        } else {
            figures.unparsable.add(number);
        }
        if (hasDecimalComma(line)) {
            figures.decimalCommas.add(number);
        }
    }

    LineFigures figures;

private:
    static std::string_view withoutLineEnd(std::string_view line) {
        return line.substr(0, line.size() - vadelclip::carriageReturnsToDrop(line));
    }

    bool hasDecimalComma(std::string_view line) const {
        if (separator == ',') {
            return static_cast<std::size_t>(std::count(line.begin(), line.end(), ',')) >= columns + 1;
        }
        const std::size_t endOfX = std::min(line.find(separator), line.size());
        line = line.substr(0, line.find(separator, endOfX + 1));
        for (std::size_t at = line.find(','); at != std::string_view::npos; at = line.find(',', at + 1)) {
            if (at > 0 && at + 1 < line.size() && isDigit(line[at - 1]) && isDigit(line[at + 1])) {
                return true;
            }
        }
        return false;
    }

    char separator = 0;
    std::size_t columns = 3;
};

} // namespace

void FoundLines::add(std::uint64_t lineNumber) {
    first = count == 0 ? lineNumber : first;
    ++count;
}

std::optional<LineCount> countLines(const std::string& path, const std::function<void(std::uint64_t bytes)>& counted) {
    NodeLineReader reader(path);
    std::uint64_t bytes = 0;
    for (std::string_view line; reader.next(line);) {
        if (reader.count().bytes != bytes) {
            counted(reader.count().bytes - bytes);
            bytes = reader.count().bytes;
        }
    }
    return reader.hasFailed() ? std::nullopt : std::optional(reader.count());
}

bool isPlainLine(std::string_view line, char separator) {
    // Longer numbers may be out of range.
    constexpr std::size_t maxLength = 48;
    const char* const end = line.data() + std::min(line.size(), maxLength);
    const char* const y = afterPlainNumber(line.data(), end, separator);
    return y != nullptr && afterPlainNumber(y, end, separator) != nullptr;
}

std::optional<LineFigures> readLineFigures(const std::string& path, const std::atomic<bool>& stop) {
    NodeLineReader reader(path);
    LinePass pass;
    std::string_view line;
    if (reader.next(line) && !pass.readHeader(line)) {
        return std::nullopt;
    }
    while (!stop && reader.next(line)) {
        pass.check(line, reader.count().lineFeeds);
    }
    pass.figures.count = reader.count();
    return stop || reader.hasFailed() ? std::nullopt : std::optional(pass.figures);
}

} // namespace vadelwatch
