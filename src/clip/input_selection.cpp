#include "clip/input_selection.hpp"

#include "clip/count32.hpp"
#include "clip/node_file_header.hpp"
#include "text/text_lines.hpp"

#include <boost/filesystem/directory.hpp>
#include <boost/filesystem/file_status.hpp>

#include <fstream>

namespace vadelclip {

namespace {

std::string readFirstLine(const std::string& path) {
    std::ifstream input(path);
    std::string line;
    readTextLine(input, line);
    return line;
}

/// Subtracts one line feed for the header. A last line without line feed is not counted, so it is never read.
std::int32_t countNodeLines(const std::string& path) {
    // With the small default buffer of a stream, system calls would take most of the time. It must be replaced before the
    // file is opened. A file buffer reads one byte less than its size.
    std::vector<char> block(65536 + 1);
    std::ifstream input;
    input.rdbuf()->pubsetbuf(block.data(), static_cast<std::streamsize>(block.size()));
    input.open(path);
    return addWrapping(wrapTo32(countLineFeeds(input)), -1);
}

bool isDirectory(const boost::filesystem::directory_entry& entry) {
    return entry.status().type() == boost::filesystem::directory_file;
}

} // namespace

bool hasNodeFileSuffix(std::string_view path) {
    return path.ends_with(".txt") || path.ends_with(".xyz") || path.ends_with(".csv");
}

bool hasNodeFileHeader(const std::string& path) {
    const std::string line = readFirstLine(path);
    char separator = 0;
    std::int32_t nodeFormat = 0;
    std::string errorText;
    return readNodeFileHeader(line, separator, nodeFormat, errorText);
}

InputSelection selectInputFiles(const std::string& inputDirectory) {
    InputSelection selection;
    for (const boost::filesystem::directory_entry& entry : boost::filesystem::directory_iterator(inputDirectory)) {
        if (isDirectory(entry)) {
            continue;
        }
        const std::string path = entry.path().string();
        if (!hasNodeFileSuffix(path) || !hasNodeFileHeader(path)) {
            continue;
        }
        selection.inputFiles.push_back(path);
        selection.lineCounts.push_back(countNodeLines(path));
    }
    return selection;
}

std::int32_t sumLineCounts(const std::vector<std::int32_t>& lineCounts) {
    std::int32_t sum = 0;
    for (const std::int32_t lineCount : lineCounts) {
        sum = addWrapping(sum, lineCount);
    }
    return sum;
}

} // namespace vadelclip
