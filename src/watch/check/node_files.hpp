/// \file
/// The entries of the input directory, and the lines of its node files.
#pragma once

#include "process/file_state.hpp"
#include "watch/check/line_figures.hpp"

#include <atomic>
#include <cstdint>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace vadelwatch {

/// Returns nothing if `stat` fails.
std::optional<vadelclip::FileState> fileState(const std::string& path);

struct NodeFile {
    std::string name; ///< Without its directory.
    std::string path;
    vadelclip::FileState state; ///< When it was found.
    LineFigures figures;        ///< Once `readNodeFiles` has read the file.
};

/// Why the tool passes over an entry of the input directory.
enum class PassedOver {
    suffix,
    capitals, ///< The suffix in lower case is that of a node file.
    directory,
    unreadable,
    emptyFirstLine,
    firstLineWithoutEnd,
    firstCharacter, ///< Of the header, as `separator` and `columns`.
    separator,
    columns
};

struct PassedOverEntry {
    std::string name;
    PassedOver reason = PassedOver::suffix;
};

struct NodeFiles {
    bool isListed = false;       ///< The whole directory could be read.
    std::vector<NodeFile> files; ///< Sorted by name.
    /// Names with the suffix of a node file that are not regular files. They may be node files, but reading them would
    /// take their bytes from the tool.
    std::vector<std::string> unread;
    std::vector<PassedOverEntry>
        passedOver;       ///< Sorted by name. Without directories that have no suffix of a node file.
    bool areRead = false; ///< The figures of all files are known.
};

/// Finds the files of a directory that the tool takes, one level deep. A directory that cannot be read has none.
NodeFiles findNodeFiles(const std::string& directory);

/// Reads the node files and fills in their figures.
///
/// @param stop ends the pass soon after it becomes true.
/// @return the number of lines without headers. Nothing if the pass was stopped, or a file could not be read or has
///         changed since it was found.
std::optional<std::uint64_t> readNodeFiles(NodeFiles& nodeFiles, const std::atomic<bool>& stop);

/// Reads all node files of a directory in a thread, during the run.
class NodeLineCount {
public:
    NodeLineCount() = default;
    NodeLineCount(const NodeLineCount&) = delete;
    NodeLineCount& operator=(const NodeLineCount&) = delete;

    /// Stops the count and waits for its end.
    ~NodeLineCount();

    /// Starts the count. Without a thread or memory for it, the number of lines stays unknown.
    void start(const std::string& directory);

    /// Makes the count end soon.
    void stop() { stopped = true; }

    /// Returns the lines of all node files without their headers. Returns nothing until the count has ended, and if it
    /// was stopped or failed.
    std::optional<std::uint64_t> nodeLines() const;

    /// Returns the number of the node files and of their bytes, 0 until they are found.
    std::uint64_t files() const { return fileCount; }
    std::uint64_t bytes() const { return byteCount; }

    /// Waits for the end of the count.
    void wait();

    /// Returns the files as they were when the count began. Call `wait` first.
    const NodeFiles& nodeFiles() const { return found; }

private:
    void count(const std::string& directory);

    NodeFiles found;
    std::atomic<std::uint64_t> fileCount = 0;
    std::atomic<std::uint64_t> byteCount = 0;
    std::atomic<std::int64_t> lineCount = -1; ///< -1 if it is unknown.
    std::atomic<bool> stopped = false;
    std::thread worker;
};

} // namespace vadelwatch
