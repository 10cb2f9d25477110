#include "watch/check/output_check.hpp"

#include "watch/show/messages.hpp"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace vadelwatch {

namespace {

namespace fs = std::filesystem;

OutputCondition conditionOf(const LineCount& count) {
    if (count.bytes == 0) {
        return OutputCondition::empty;
    }
    if (!count.endsInLineFeed) {
        return OutputCondition::cut;
    }
    return count.nodeLines() == 0 ? OutputCondition::withoutNode : OutputCondition::whole;
}

OutputFile checkFile(const fs::path& path, const std::function<void(std::uint64_t bytes)>& counted) {
    OutputFile file{path.filename().string(), 0, OutputCondition::whole};
    std::error_code error;
    if (!fs::is_regular_file(path, error)) {
        file.condition = error ? OutputCondition::unreadable : OutputCondition::notRegular;
        return file;
    }
    const std::optional<LineCount> count = countLines(path.string(), counted);
    if (!count) {
        file.condition = OutputCondition::unreadable;
        return file;
    }
    file.nodeLines = count->nodeLines();
    file.condition = conditionOf(*count);
    return file;
}

/// Reads the number if the file contains a decimal number, a line feed and nothing else.
std::optional<std::int64_t> readNodeCount(const fs::path& path) {
    std::error_code error;
    if (!fs::is_regular_file(path, error)) {
        return std::nullopt;
    }
    std::ifstream input(path, std::ios::binary);
    std::int64_t count = 0;
    char end = 0;
    if (!(input >> count) || !input.get(end) || end != '\n' || input.peek() != std::ifstream::traits_type::eof()) {
        return std::nullopt;
    }
    return count;
}

} // namespace

bool isCounted(const OutputFile& file) {
    return file.condition != OutputCondition::unreadable && file.condition != OutputCondition::notRegular;
}

std::optional<std::uint64_t> OutputCheck::keptNodes() const {
    return directoryError ? std::nullopt : std::optional(nodeLines);
}

std::int64_t OutputCheck::missingNodes() const {
    const auto expected = static_cast<std::uint32_t>(nodeCount.value_or(0));
    return static_cast<std::int32_t>(expected - static_cast<std::uint32_t>(nodeLines));
}

OutputCheck checkOutput(const std::string& outputDirectory, const std::function<void(double percent)>& showPercent) {
    OutputCheck check;
    std::vector<fs::path> paths;
    double allBytes = 0.0;
    std::error_code& error = check.directoryError;
    std::error_code ignored;
    for (fs::directory_iterator entry(outputDirectory, error), end; !error && entry != end; entry.increment(error)) {
        if (fs::is_directory(entry->path(), ignored)) {
            check.directories.push_back(entry->path().filename().string());
        } else if (entry->path().filename() != nodeCountName) {
            paths.push_back(entry->path());
            const std::uintmax_t size = fs::file_size(entry->path(), ignored);
            allBytes += ignored ? 0.0 : static_cast<double>(size);
        }
    }
    double bytes = 0.0;
    for (const fs::path& path : paths) {
        check.files.push_back(checkFile(path, [&](std::uint64_t size) {
            bytes += static_cast<double>(size);
            showPercent(100.0 * std::min(1.0, bytes / allBytes));
        }));
        check.nodeLines += check.files.back().nodeLines;
    }
    std::ranges::sort(check.files, {}, &OutputFile::name);
    std::ranges::sort(check.directories);
    const fs::path nodeCountFile = fs::path(outputDirectory) / nodeCountName;
    if (!error) {
        // Fails if the directory can be listed, but not searched.
        check.hasNodeCountFile = fs::exists(nodeCountFile, error);
    }
    check.nodeCount = readNodeCount(nodeCountFile);
    check.addsUp = !error && check.nodeCount && check.missingNodes() == 0 &&
                   std::all_of(check.files.begin(), check.files.end(), isCounted);
    return check;
}

bool isOutOfSpace(const struct statvfs& fileSystem) {
    return fileSystem.f_blocks > 0 && fileSystem.f_bavail == 0;
}

bool isOutOfInodes(const struct statvfs& fileSystem) {
    return fileSystem.f_files > 0 && (fileSystem.f_favail == 0 || fileSystem.f_ffree == 0);
}

std::vector<std::string> obstaclesIn(const std::string& directory) {
    struct statvfs fileSystem {};
    struct stat status {};
    if (stat(directory.c_str(), &status) != 0 || !S_ISDIR(status.st_mode) ||
        statvfs(directory.c_str(), &fileSystem) != 0) {
        return {};
    }
    std::vector<std::string> lines;
    if (isOutOfSpace(fileSystem)) {
        lines.push_back(formatMessage("No space is left on the file system of {0}.", directory));
    }
    if (isOutOfInodes(fileSystem)) {
        lines.push_back(
            formatMessage("No inode is left on the file system of {0}, so no file can be made there.", directory));
    }
    // With the effective rights: files are made with these.
    if (faccessat(AT_FDCWD, directory.c_str(), W_OK | X_OK, AT_EACCESS) != 0) {
        lines.push_back(formatMessage("No file can be made in {0}: {1}", directory, std::strerror(errno)));
    }
    return lines;
}

} // namespace vadelwatch
