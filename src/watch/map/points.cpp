#include "watch/map/points.hpp"

#include "clip/input_selection.hpp"
#include "clip/node_file_header.hpp"
#include "clip/node_line.hpp"
#include "watch/map/node_lines.hpp"
#include "watch/show/messages.hpp"

#include <algorithm>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <vector>

namespace vadelwatch {

namespace {

/// One file of the output directory, beside the input file of the same name.
class KeptLines {
public:
    /// A missing output file keeps nothing. One with another header does not come from clipping: an input file may be
    /// called total_node_count.txt, and its output is then overwritten by the count.
    KeptLines(const std::string& path, std::string_view header) : reader(path) {
        std::string_view outputHeader;
        if (reader.next(outputHeader) && outputHeader == header) {
            open = reader.next(line);
        }
    }

    /// Each output line is given away once, to the first input line that equals it.
    bool take(std::string_view inputLine) {
        if (!open || line != inputLine) {
            return false;
        }
        open = reader.next(line);
        return true;
    }

    bool allTaken() const { return !open; }

private:
    NodeLineReader reader;
    std::string_view line;
    bool open = false;
};

/// The names of the files that may be node files, sorted.
/// @return false if the directory cannot be read.
bool listFiles(const std::string& directory, std::vector<std::string>& names) {
    std::error_code error;
    std::filesystem::directory_iterator entry(directory, error);
    while (!error && entry != std::filesystem::directory_iterator()) {
        std::error_code statusError;
        const std::string name = entry->path().filename().string();
        // A status that cannot be told is that of no regular file.
        if (vadelclip::hasNodeFileSuffix(name) && entry->is_regular_file(statusError)) {
            names.push_back(name);
        }
        entry.increment(error);
    }
    std::sort(names.begin(), names.end());
    return !error;
}

std::string joinPath(const std::string& directory, const std::string& name) {
    return (std::filesystem::path(directory) / name).string();
}

/// @return false if the output file holds other lines than the input file.
bool visitFile(const std::string& inputPath, const std::string& outputPath, NodeCounts& counts,
               const NodeVisitor& visit) {
    NodeLineReader input(inputPath);
    std::string_view line;
    char separator = 0;
    std::int32_t nodeFormat = 0;
    std::string errorText;
    if (!input.next(line) || !vadelclip::readNodeFileHeader(std::string(line), separator, nodeFormat, errorText)) {
        return true;
    }
    ++counts.files;
    KeptLines keptLines(outputPath, line);
    while (input.next(line)) {
        const bool kept = keptLines.take(line);
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
            visit({point.x, point.y}, kept);
        }
    }
    return keptLines.allTaken();
}

} // namespace

std::string visitNodes(const std::string& inputDirectory, const std::string& outputDirectory, NodeCounts& counts,
                       const NodeVisitor& visit) {
    counts = NodeCounts();
    std::vector<std::string> names;
    if (!listFiles(inputDirectory, names)) {
        return formatMessage("The input directory {0} cannot be read.", inputDirectory);
    }
    std::error_code error;
    if (!std::filesystem::is_directory(outputDirectory, error)) {
        return formatMessage("The output directory {0} cannot be read.", outputDirectory);
    }
    for (const std::string& name : names) {
        const std::string outputPath = joinPath(outputDirectory, name);
        if (!visitFile(joinPath(inputDirectory, name), outputPath, counts, visit)) {
            return formatMessage("The file {0} holds lines that its input file does not hold.", outputPath);
        }
    }
    return "";
}

} // namespace vadelwatch
