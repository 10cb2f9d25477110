#include "watch/map/points.hpp"

#include "clip/node_file_header.hpp"
#include "clip/node_line.hpp"
#include "watch/show/messages.hpp"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cmath>
#include <cstring>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <unistd.h>
#include <vector>

namespace vadelwatch {

namespace {

/// The lines of one output file, which are compared with those of the input file of the same name.
class KeptLines {
public:
    /// A missing output file has no lines. One with another header was not made by clipping: the tool overwrites the output
    /// of an input file named total_node_count.txt with the count.
    void open(const std::string& path, std::string_view header) {
        reader.open(path);
        std::string_view outputHeader;
        isOpen = reader.next(outputHeader) && outputHeader == header && reader.next(line);
    }

    /// Returns true if the input line equals the next output line, and advances to the one after it.
    bool take(std::string_view inputLine) {
        if (!isOpen || line != inputLine) {
            return false;
        }
        isOpen = reader.next(line);
        return true;
    }

    bool allTaken() const { return !isOpen; }

private:
    NodeLineReader reader;
    std::string_view line;
    bool isOpen = false;
};

struct NodeReaders {
    bool readElevations;
    NodeLineReader input;
    KeptLines output;
};

/// @return an error message, empty on success.
std::string visitFile(NodeReaders& readers, const std::string& inputPath, const std::string& outputPath,
                      NodeCounts& counts, const NodeVisitor& visit) {
    std::string changed = formatMessage("The node file {0} was changed or removed after the run began.", inputPath);
    if (!readers.input.open(inputPath)) {
        return changed;
    }
    ++counts.files;
    std::string_view line;
    if (!readers.input.next(line)) {
        return ""; // A header without a line feed has no lines after it.
    }
    char separator = 0;
    std::int32_t nodeFormat = 0;
    std::string errorText;
    if (!vadelclip::readNodeFileHeader(std::string(line), separator, nodeFormat, errorText)) {
        return changed;
    }
    readers.output.open(outputPath, line);
    while (readers.input.next(line)) {
        const bool kept = readers.output.take(line);
        vadelclip::Point2D point{};
        const bool readable = vadelclip::readNodeLine(line, separator, point);
        if (kept) {
            ++counts.kept;
        } else if (readable) {
            ++counts.dropped;
        } else {
            ++counts.unreadable;
        }
        if (readable) {
            MapNode node{{point.x, point.y}, kept};
            if (kept && readers.readElevations) {
                node.elevation = elevationOf(line, separator);
                counts.withoutElevation += std::isnan(node.elevation) ? 1U : 0U;
            }
            visit(node);
        }
    }
    return readers.output.allTaken()
               ? ""
               : formatMessage("The file {0} holds lines that its input file does not hold.", outputPath);
}

} // namespace

// Space for the longest line and a block of the same size after it.
NodeLineReader::NodeLineReader() : buffer(2 * longestLine) {}

NodeLineReader::~NodeLineReader() {
    open(""); // closes the file
}

bool NodeLineReader::open(const std::string& path) {
    if (descriptor != -1) {
        close(descriptor);
    }
    descriptor = path.empty() ? -1 : openRegularFile(path);
    lineStart = 0;
    filled = 0;
    return descriptor != -1;
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
        // The incomplete line moves to the front, is truncated there, and the next block is read after it.
        searched = std::min(filled - lineStart, longestLine);
        std::memmove(buffer.data(), buffer.data() + lineStart, searched);
        lineStart = 0;
        filled = searched;
        const ssize_t received = TEMP_FAILURE_RETRY(read(descriptor, buffer.data() + filled, buffer.size() - filled));
        if (received <= 0) {
            return false;
        }
        filled += static_cast<std::size_t>(received);
    }
}

float elevationOf(std::string_view line, char separator) {
    constexpr const char* whiteSpace = " \t\r\v\f";
    const auto skipWhiteSpace = [&line] {
        line.remove_prefix(std::min(line.find_first_not_of(whiteSpace), line.size()));
    };
    for (int column = 0; column < 2; ++column) {
        skipWhiteSpace();
        line.remove_prefix(std::min(line.find(separator), line.size() - 1) + 1);
    }
    skipWhiteSpace();
    if (line.starts_with('+')) {
        line.remove_prefix(1);
    }
    float elevation = 0.0F;
    const auto [end, error] = std::from_chars(line.data(), line.data() + line.size(), elevation);
    line.remove_prefix(static_cast<std::size_t>(end - line.data()));
    const bool isWhole = line.empty() || line.front() == separator ||
                         std::string_view(whiteSpace).find(line.front()) != std::string_view::npos;
    return error == std::errc() && isWhole && std::isfinite(elevation) ? elevation
                                                                       : std::numeric_limits<float>::quiet_NaN();
}

std::string visitNodes(const std::vector<NodeFile>& nodeFiles, const std::string& outputDirectory, NodeCounts& counts,
                       const NodeVisitor& visit, bool readElevations) {
    counts = NodeCounts();
    std::error_code error;
    if (!std::filesystem::is_directory(outputDirectory, error)) {
        return formatMessage("The output directory {0} cannot be read.", outputDirectory);
    }
    NodeReaders readers{readElevations, {}, {}};
    for (const NodeFile& file : nodeFiles) {
        const std::string outputPath = (std::filesystem::path(outputDirectory) / file.name).string();
        std::string problem = visitFile(readers, file.path, outputPath, counts, visit);
        if (!problem.empty()) {
            return problem;
        }
    }
    return "";
}

} // namespace vadelwatch
