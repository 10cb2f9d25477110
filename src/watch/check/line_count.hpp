/// \file
/// Counting lines in blocks, fast enough to go beside a run.
#pragma once

#include <atomic>
#include <cstdint>
#include <optional>
#include <string>

namespace vadelwatch {

struct LineCount {
    std::uint64_t bytes = 0;
    std::uint64_t lineFeeds = 0;
    bool endsInLineFeed = false; ///< False for an empty file.

    /// Lines behind the header: the first line feed ends the header, a last line without one does not count.
    std::uint64_t nodeLines() const { return lineFeeds == 0 ? 0 : lineFeeds - 1; }
};

/// Opens a regular file for reading, without waiting and without touching anything that is no regular file: reading a
/// FIFO would take its bytes from the tool.
///
/// @return the descriptor, closed on exec; -1 for anything else.
int openRegularFile(const std::string& path);

/// Counts a regular file.
///
/// @param stop the count gives up soon after this becomes true.
/// @return nothing if the file cannot be read, is no regular file, or the count was stopped.
std::optional<LineCount> countLines(const std::string& path, const std::atomic<bool>& stop);

} // namespace vadelwatch
