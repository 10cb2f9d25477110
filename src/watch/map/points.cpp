#include "watch/map/points.hpp"

#include "clip/node_file_header.hpp"
#include "clip/node_line.hpp"
#include "watch/check/node_line_reader.hpp"
#include "watch/show/messages.hpp"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <filesystem>
#include <system_error>

namespace vadelwatch {

namespace {

/// Reads the next line without the carriage returns at its end: input and output of a run may differ in these.
bool nextLine(NodeLineReader& reader, std::string_view& line) {
    if (!reader.next(line)) {
        return false;
    }
    line.remove_suffix(line.size() - (line.find_last_not_of('\r') + 1));
    return true;
}

/// The lines of one output file, which are compared with those of the input file of the same name.
class KeptLines {
public:
    /// A missing output file has no lines. One with another header was not made by clipping: the tool overwrites the output
    /// of an input file named total_node_count.txt with the count.
    KeptLines(const std::string& path, std::string_view header)
        : reader(path), isOpen(nextLine(reader, line) && line == header && nextLine(reader, line)) {}

    /// Returns true if the input line equals the next output line, and advances to the one after it.
    bool take(std::string_view inputLine) {
        if (!isOpen || line != inputLine) {
            return false;
        }
        isOpen = nextLine(reader, line);
        return true;
    }

    bool allTaken() const { return !isOpen; }

private:
    NodeLineReader reader;
    std::string_view line;
    bool isOpen;
};

/// @return an error message, empty on success.
std::string visitFile(const std::string& inputPath, const std::string& outputPath, NodeCounts& counts,
                      const NodeVisitor& visit, bool readElevations) {
    std::string changed = formatMessage("The node file {0} was changed or removed after the run began.", inputPath);
    NodeLineReader input(inputPath);
    std::string_view line;
    if (!nextLine(input, line)) {
        // A header without a line feed has no lines after it.
        return input.hasFailed() ? changed : "";
    }
    char separator = 0;
    std::int32_t nodeFormat = 0;
    std::string errorText;
    if (!vadelclip::readNodeFileHeader(std::string(line), separator, nodeFormat, errorText)) {
        return changed;
    }
    KeptLines output(outputPath, line);
    while (nextLine(input, line)) {
        const bool kept = output.take(line);
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
            MapNode node{point, kept};
            if (kept && readElevations) {
                node.elevation = elevationOf(line, separator);
                counts.withoutElevation += std::isnan(node.elevation) ? 1U : 0U;
            }
            visit(node);
        }
    }
    return output.allTaken() ? ""
                             : formatMessage("The file {0} holds lines that its input file does not hold.", outputPath);
}

} // namespace

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
    for (const NodeFile& file : nodeFiles) {
        const std::string outputPath = (std::filesystem::path(outputDirectory) / file.name).string();
        std::string problem = visitFile(file.path, outputPath, counts, visit, readElevations);
        if (!problem.empty()) {
            return problem;
        }
    }
    return "";
}

} // namespace vadelwatch
