#include "watch/check/line_figures.hpp"

#include "clip/node_file_header.hpp"
#include "clip/node_line.hpp"
#include "text/text_lines.hpp"
#include "text/text_mode.hpp"

#include <algorithm>
#include <cstring>
#include <fcntl.h>
#include <memory>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>

namespace vadelwatch {

namespace {

constexpr std::size_t blockSize = 1 << 18;
constexpr std::size_t maxLine = 1 << 20;

/// After `linesReadInFull` lines, each line whose number is a multiple of this is read in full.
constexpr std::uint64_t sampleInterval = 64;

bool isDigit(char byte) {
    return byte >= '0' && byte <= '9';
}

/// Checks the lines of one file.
class LinePass {
public:
    /// Takes whole lines, the last byte being a line feed.
    /// @return false if the first line of the file is not a header.
    bool take(const char* line, const char* last) {
        while (line <= last) {
            const std::uint64_t number = ++figures.count.lineFeeds;
            const bool maySkip = number > linesReadInFull && number % sampleInterval != 0;
            const char* end =
                maySkip ? endOfPlainLine(line, last, separator, separator == ',' ? columns + 1 : 0) : nullptr;
            if (end != nullptr) {
                figures.isSampled = true;
            } else {
                end = static_cast<const char*>(std::memchr(line, '\n', static_cast<std::size_t>(last + 1 - line)));
                std::string_view text(line, static_cast<std::size_t>(end - line));
                text.remove_suffix(vadelclip::carriageReturnsToDrop(text));
                if (number > 1) {
                    check(text, number);
                } else if (!readHeader(text)) {
                    return false;
                }
            }
            line = end + 1;
        }
        return true;
    }

    LineFigures figures;

private:
    bool readHeader(std::string_view line) {
        std::int32_t format = 0;
        std::string errorText;
        const bool isHeader = vadelclip::readNodeFileHeader(std::string(line), separator, format, errorText);
        columns = format == 2 ? 4 : 3;
        return isHeader;
    }

    void check(std::string_view line, std::uint64_t number) {
        vadelclip::Point2D point{};
        if (vadelclip::readNodeLine(line, separator, point)) {
            includePosition(figures.positions, {point.x, point.y});
        } else {
            figures.unparsable.add(number);
        }
        if (hasDecimalComma(line)) {
            figures.decimalCommas.add(number);
        }
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

/// Reads from the position of the descriptor to the end of the file, in blocks of whole lines.
///
/// @param kept the number of bytes that are kept from the start of a line that does not end in its block.
/// @param take is called with the first and the last byte of each block; the last byte is a line feed. `plainLineReach`
///             bytes after it are readable. It returns false to end the reading.
/// @return the count without `lineFeeds`. Nothing after a failure, or if `take` or `stop` has ended the reading.
template <typename Take>
std::optional<LineCount> readBlocks(int descriptor, std::size_t kept, const std::atomic<bool>& stop, Take take) {
    // Not a vector, which would write zeros to a megabyte for each small file. NOLINTNEXTLINE(modernize-avoid-c-arrays)
    const auto buffer = std::make_unique_for_overwrite<char[]>(kept + blockSize + plainLineReach);
    LineCount count;
    std::size_t begun = 0; // bytes of a line whose end is not read yet
    while (!stop) {
        char* const block = buffer.get() + begun;
        const ssize_t received = TEMP_FAILURE_RETRY(read(descriptor, block, blockSize));
        if (received < 0) {
            return std::nullopt;
        }
        if (received == 0) {
            return count;
        }
        const auto size = static_cast<std::size_t>(received);
        // `endOfPlainLine` reads these bytes too.
        std::memset(block + size, 0, plainLineReach);
        count.bytes += size;
        count.endsInLineFeed = block[size - 1] == '\n';
        const auto* const last = static_cast<const char*>(memrchr(block, '\n', size));
        const char* const rest = last == nullptr ? buffer.get() : last + 1;
        if (last != nullptr && !take(buffer.get(), last)) {
            return std::nullopt;
        }
        begun = std::min(static_cast<std::size_t>(block + size - rest), kept);
        std::memmove(buffer.get(), rest, begun);
    }
    return std::nullopt;
}

template <typename Take>
std::optional<LineCount> readFile(const std::string& path, std::size_t kept, const std::atomic<bool>& stop, Take take) {
    const int descriptor = openRegularFile(path);
    if (descriptor == -1) {
        return std::nullopt;
    }
    const std::optional<LineCount> count = readBlocks(descriptor, kept, stop, take);
    close(descriptor);
    return count;
}

} // namespace

void FoundLines::add(std::uint64_t lineNumber) {
    first = count == 0 ? lineNumber : first;
    ++count;
}

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

std::optional<LineCount> countLines(const std::string& path, const std::atomic<bool>& stop,
                                    const std::function<void(std::size_t bytes)>& counted) {
    std::uint64_t lineFeeds = 0;
    std::optional<LineCount> count = readFile(path, 0, stop, [&](const char* first, const char* last) {
        const auto size = static_cast<std::size_t>(last + 1 - first);
        lineFeeds += vadelclip::countLineFeeds(first, size);
        counted(size);
        return true;
    });
    if (count) {
        count->lineFeeds = lineFeeds;
    }
    return count;
}

std::optional<LineFigures> readLineFigures(const std::string& path, const std::atomic<bool>& stop) {
    LinePass pass;
    const std::optional<LineCount> count =
        readFile(path, maxLine, stop, [&pass](const char* first, const char* last) { return pass.take(first, last); });
    if (!count) {
        return std::nullopt;
    }
    const std::uint64_t lineFeeds = pass.figures.count.lineFeeds;
    pass.figures.count = {count->bytes, lineFeeds, count->endsInLineFeed};
    return pass.figures;
}

} // namespace vadelwatch
