/// \file
/// Which files of the input directory the tool takes as node files, and how many lines they hold.
#pragma once

#include <atomic>
#include <cstdint>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace vadelwatch {

/// A file as it was when it was looked at.
struct FileState {
    std::int64_t bytes = 0;
    std::int64_t modifiedNanoseconds = 0; ///< Since the epoch.

    bool operator==(const FileState&) const = default;
};

struct NodeFile {
    std::string name; ///< Without its directory.
    std::string path;
    FileState state;
};

struct NodeFiles {
    std::vector<NodeFile> files; ///< By name.
    /// Names of what may be a node file and is no regular file, so that it cannot be read without taking it from the tool.
    std::vector<std::string> unread;
};

/// Looks through a directory, one level deep. A directory that cannot be read holds nothing.
NodeFiles findNodeFiles(const std::string& directory);

/// Nothing if the file cannot be looked at.
std::optional<FileState> fileState(const std::string& path);

/// Counts the lines of node files, headers left out.
///
/// @param stop the count gives up soon after this becomes true.
/// @return nothing if it was stopped, or if a file could not be counted as it was when it was found.
std::optional<std::uint64_t> countNodeLines(const NodeFiles& nodeFiles, const std::atomic<bool>& stop);

/// The lines of all node files of a directory, counted beside the run.
class NodeLineCount {
public:
    NodeLineCount() = default;
    NodeLineCount(const NodeLineCount&) = delete;
    NodeLineCount& operator=(const NodeLineCount&) = delete;
    ~NodeLineCount();

    /// Where the count cannot be made for want of threads or memory, there is none.
    void start(const std::string& directory);

    /// Gives up soon.
    void stop() { stopped = true; }

    /// Lines of all node files, headers left out. Nothing while the count goes on, and for ever if it was stopped or
    /// could not be made.
    std::optional<std::uint64_t> nodeLines() const;

    /// Waits for the end of the count.
    void wait();

    /// The files as they were found at the start. Only after `wait`.
    const NodeFiles& nodeFiles() const { return found; }

private:
    void count(const std::string& directory);

    NodeFiles found;
    std::uint64_t total = 0;
    std::atomic<bool> known = false;
    std::atomic<bool> stopped = false;
    std::thread worker;
};

} // namespace vadelwatch
