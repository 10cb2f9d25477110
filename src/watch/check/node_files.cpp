#include "watch/check/node_files.hpp"

#include "clip/input_selection.hpp"
#include "clip/node_file_header.hpp"
#include "text/text_lines.hpp"

#include <boost/algorithm/string/case_conv.hpp>

#include <algorithm>
#include <exception>
#include <filesystem>
#include <fstream>
#include <locale>
#include <sys/stat.h>
#include <system_error>

namespace vadelwatch {

namespace {

/// Returns nothing if the first line of the file is a header.
std::optional<PassedOver> whyNotNodeFile(const std::string& path) {
    std::ifstream input(path);
    if (!input) {
        return PassedOver::unreadable;
    }
    std::string line;
    vadelclip::readTextLine(input, line);
    char separator = 0;
    std::int32_t format = 0;
    std::string errorText;
    if (vadelclip::readNodeFileHeader(line, separator, format, errorText)) {
        return std::nullopt;
    }
    if (line.empty()) {
        return PassedOver::emptyFirstLine;
    }
    if (input.eof()) {
        return PassedOver::firstLineWithoutEnd;
    }
    // The texts of the tool that begin with "ERROR:" are in no catalogue.
    if (!errorText.starts_with("ERROR:")) {
        return PassedOver::firstCharacter;
    }
    return errorText.starts_with("ERROR: separator") ? PassedOver::separator : PassedOver::columns;
}

bool hasSuffixInCapitals(const std::string& name) {
    return vadelclip::hasNodeFileSuffix(boost::algorithm::to_lower_copy(name, std::locale::classic()));
}

void addEntry(const std::filesystem::path& path, NodeFiles& found) {
    struct stat status {};
    const bool exists = stat(path.c_str(), &status) == 0;
    const std::string name = path.filename().string();
    if (!vadelclip::hasNodeFileSuffix(name)) {
        if (!S_ISDIR(status.st_mode)) {
            found.passedOver.push_back({name, hasSuffixInCapitals(name) ? PassedOver::capitals : PassedOver::suffix});
        }
    } else if (!exists || S_ISDIR(status.st_mode)) {
        found.passedOver.push_back({name, exists ? PassedOver::directory : PassedOver::unreadable});
    } else if (!S_ISREG(status.st_mode)) {
        found.unread.push_back(name);
    } else if (const std::optional<PassedOver> reason = whyNotNodeFile(path.string())) {
        found.passedOver.push_back({name, *reason});
    } else {
        found.files.push_back({name, path.string(), vadelclip::stateOf(status), {}});
    }
}

} // namespace

std::optional<vadelclip::FileState> fileState(const std::string& path) {
    struct stat status {};
    return stat(path.c_str(), &status) == 0 ? std::optional(vadelclip::stateOf(status)) : std::nullopt;
}

NodeFiles findNodeFiles(const std::string& directory) {
    NodeFiles found;
    std::error_code error;
    for (std::filesystem::directory_iterator entry(directory, error), end; !error && entry != end;
         entry.increment(error)) {
        addEntry(entry->path(), found);
    }
    found.isListed = !error;
    std::ranges::sort(found.files, {}, &NodeFile::name);
    std::ranges::sort(found.passedOver, {}, &PassedOverEntry::name);
    return found;
}

std::optional<std::uint64_t> readNodeFiles(NodeFiles& nodeFiles, const std::atomic<bool>& stop) {
    if (!nodeFiles.isListed || !nodeFiles.unread.empty()) {
        return std::nullopt;
    }
    std::uint64_t total = 0;
    for (NodeFile& file : nodeFiles.files) {
        const std::optional<LineFigures> figures = readLineFigures(file.path, stop);
        // If the file has changed meanwhile, the figures fit neither the old nor the new content.
        const bool same = figures && figures->count.bytes == file.state.size;
        if (!same || fileState(file.path) != file.state) {
            return std::nullopt;
        }
        file.figures = *figures;
        total += figures->count.nodeLines();
    }
    nodeFiles.areRead = true;
    return total;
}

NodeLineCount::~NodeLineCount() {
    stop();
    wait();
}

void NodeLineCount::start(const std::string& directory) {
    try {
        worker = std::thread([this, directory] {
            try {
                count(directory);
            } catch (const std::exception&) {
                // For example, memory has run out. The run does not need the number.
            }
        });
    } catch (const std::system_error&) {
        // There is no thread. The run does not need the number.
    }
}

void NodeLineCount::count(const std::string& directory) {
    found = findNodeFiles(directory);
    std::uint64_t size = 0;
    for (const NodeFile& file : found.files) {
        size += file.state.size;
    }
    fileCount = found.files.size() + found.unread.size();
    byteCount = size;
    if (const std::optional<std::uint64_t> lines = readNodeFiles(found, stopped)) {
        lineCount = static_cast<std::int64_t>(*lines);
    }
}

std::optional<std::uint64_t> NodeLineCount::nodeLines() const {
    const std::int64_t lines = lineCount;
    return lines >= 0 ? std::optional(static_cast<std::uint64_t>(lines)) : std::nullopt;
}

void NodeLineCount::wait() {
    if (worker.joinable()) {
        worker.join();
    }
}

} // namespace vadelwatch
