#include "watch/check/node_files.hpp"

#include "clip/input_selection.hpp"
#include "text/text_lines.hpp"

#include <algorithm>
#include <cerrno>
#include <exception>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace vadelwatch {

namespace {

constexpr std::size_t blockSize = 1 << 18;

/// Counts from the position of the descriptor to the end of the file.
std::optional<LineCount> countFrom(int descriptor, const std::atomic<bool>& stop) {
    LineCount count;
    std::vector<char> block(blockSize);
    while (!stop) {
        const ssize_t received = TEMP_FAILURE_RETRY(read(descriptor, block.data(), block.size()));
        if (received < 0) {
            return std::nullopt;
        }
        if (received == 0) {
            return count;
        }
        const auto size = static_cast<std::size_t>(received);
        count.bytes += size;
        count.lineFeeds += vadelclip::countLineFeeds(block.data(), size);
        count.endsInLineFeed = block[size - 1] == '\n';
    }
    return std::nullopt;
}

/// Adds a directory entry if it is, or may be, a node file.
void addIfNodeFile(const std::filesystem::path& path, NodeFiles& found) {
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

std::optional<LineCount> countLines(const std::string& path, const std::atomic<bool>& stop) {
    const int descriptor = openRegularFile(path);
    if (descriptor == -1) {
        return std::nullopt;
    }
    const std::optional<LineCount> count = countFrom(descriptor, stop);
    close(descriptor);
    return count;
}

std::optional<FileState> fileState(const std::string& path) {
    struct stat status {};
    if (stat(path.c_str(), &status) != 0) {
        return std::nullopt;
    }
    constexpr std::int64_t nanosecondsPerSecond = 1'000'000'000;
    return FileState{status.st_size, status.st_mtim.tv_sec * nanosecondsPerSecond + status.st_mtim.tv_nsec};
}

NodeFiles findNodeFiles(const std::string& directory) {
    NodeFiles found;
    std::error_code error;
    for (std::filesystem::directory_iterator entry(directory, error), end; !error && entry != end;
         entry.increment(error)) {
        addIfNodeFile(entry->path(), found);
    }
    std::sort(found.files.begin(), found.files.end(),
              [](const NodeFile& left, const NodeFile& right) { return left.name < right.name; });
    return found;
}

std::optional<std::uint64_t> countNodeLines(const NodeFiles& nodeFiles, const std::atomic<bool>& stop) {
    if (!nodeFiles.unread.empty()) {
        return std::nullopt;
    }
    std::uint64_t total = 0;
    for (const NodeFile& file : nodeFiles.files) {
        const std::optional<LineCount> lines = countLines(file.path, stop);
        // The number of a file that changed meanwhile belongs neither to the old nor to the new content.
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
                // For example without memory. The run does not need the number.
            }
        });
    } catch (const std::system_error&) {
        // No thread. The run does not need the number.
    }
}

void NodeLineCount::count(const std::string& directory) {
    found = findNodeFiles(directory);
    std::uint64_t bytes = 0;
    for (const NodeFile& file : found.files) {
        bytes += static_cast<std::uint64_t>(file.state.bytes);
    }
    fileCount = found.files.size() + found.unread.size();
    byteCount = bytes;
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
