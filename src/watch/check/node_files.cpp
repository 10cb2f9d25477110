#include "watch/check/node_files.hpp"

#include "clip/input_selection.hpp"
#include "watch/check/line_count.hpp"

#include <algorithm>
#include <exception>
#include <filesystem>
#include <sys/stat.h>
#include <system_error>

namespace vadelwatch {

namespace {

/// Adds an entry to what was found if it is, or may be, a node file.
void lookAt(const std::filesystem::path& path, NodeFiles& found) {
    struct stat status {};
    if (!vadelclip::hasNodeFileSuffix(path.native()) || stat(path.c_str(), &status) != 0 || S_ISDIR(status.st_mode)) {
        return;
    }
    if (!S_ISREG(status.st_mode)) {
        found.unread.push_back(path.filename().string());
    } else if (vadelclip::hasNodeFileHeader(path.string())) {
        const std::optional<FileState> state = fileState(path.string());
        found.files.push_back({path.filename().string(), path.string(), state.value_or(FileState{})});
    }
}

} // namespace

NodeFiles findNodeFiles(const std::string& directory) {
    NodeFiles found;
    std::error_code error;
    for (std::filesystem::directory_iterator entry(directory, error), end; !error && entry != end;
         entry.increment(error)) {
        lookAt(entry->path(), found);
    }
    std::sort(found.files.begin(), found.files.end(),
              [](const NodeFile& left, const NodeFile& right) { return left.name < right.name; });
    return found;
}

std::optional<FileState> fileState(const std::string& path) {
    struct stat status {};
    if (stat(path.c_str(), &status) != 0) {
        return std::nullopt;
    }
    constexpr std::int64_t nanosecondsPerSecond = 1'000'000'000;
    return FileState{status.st_size, status.st_mtim.tv_sec * nanosecondsPerSecond + status.st_mtim.tv_nsec};
}

std::optional<std::uint64_t> countNodeLines(const NodeFiles& nodeFiles, const std::atomic<bool>& stop) {
    if (!nodeFiles.unread.empty()) {
        return std::nullopt;
    }
    std::uint64_t total = 0;
    for (const NodeFile& file : nodeFiles.files) {
        const std::optional<LineCount> lines = countLines(file.path, stop);
        // Cut, grown or replaced in the meantime: what was counted is neither the old file nor the new one.
        const bool same = lines && static_cast<std::int64_t>(lines->bytes) == file.state.bytes;
        if (!same || fileState(file.path) != file.state) {
            return std::nullopt;
        }
        total += lines->nodeLines();
    }
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
                // Of missing memory. How many lines there are stays unknown; the run does not need it.
            }
        });
    } catch (const std::system_error&) {
        // No further thread may be made: the same.
    }
}

void NodeLineCount::count(const std::string& directory) {
    found = findNodeFiles(directory);
    const std::optional<std::uint64_t> lines = countNodeLines(found, stopped);
    total = lines.value_or(0);
    known = lines.has_value();
}

std::optional<std::uint64_t> NodeLineCount::nodeLines() const {
    return known ? std::optional(total) : std::nullopt;
}

void NodeLineCount::wait() {
    if (worker.joinable()) {
        worker.join();
    }
}

} // namespace vadelwatch
