/// \file
/// What one pass over a node file finds: lines that the tool drops because they do not parse, and suspect lines.
#pragma once

#include "watch/check/extent.hpp"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace vadelwatch {

struct LineCount {
    std::uint64_t bytes = 0;
    std::uint64_t lineFeeds = 0;
    bool endsInLineFeed = false; ///< False for an empty file.

    /// Returns the number of lines after the header: the first line feed ends the header, and a last line without a
    /// line feed does not count.
    std::uint64_t nodeLines() const { return lineFeeds == 0 ? 0 : lineFeeds - 1; }
};

/// Lines of one kind in a file.
struct FoundLines {
    std::uint64_t count = 0;
    std::uint64_t first = 0; ///< Its number in the file, where the header is line 1. 0 if there is none.

    void add(std::uint64_t lineNumber);
};

struct LineFigures {
    LineCount count;
    FoundLines unparsable; ///< Lines in which the tool finds no position.

    /// Lines that look as if they had decimal commas: with a comma between two digits in x or y; or, if the comma is
    /// the separator, with at least two columns more than the header.
    FoundLines decimalCommas;

    MapExtent positions;    ///< Of the positions that were read. Empty if there are none.
    bool isSampled = false; ///< Not every position was read.
};

/// The positions of this many lines of each file are read, and then those of every 64th line and of unusual lines:
/// reading all of them takes longer than a run that keeps no node.
inline constexpr std::uint64_t linesReadInFull = 1000;

/// Opens a regular file for reading. Never waits, and opens no other kind of file: reading a FIFO would take its bytes
/// from the tool.
///
/// @return the descriptor, closed on exec; -1 for anything else.
int openRegularFile(const std::string& path);

/// Counts the lines of a regular file.
///
/// @param stop    ends the count soon after it becomes true, here and below.
/// @param counted receives the number of bytes in whole lines of each block.
/// @return nothing if the file cannot be read, is not a regular file, or the count was stopped.
std::optional<LineCount> countLines(
    const std::string& path, const std::atomic<bool>& stop,
    const std::function<void(std::size_t bytes)>& counted = [](std::size_t) {});

/// Reads a node file once. Of a line longer than 1 MiB only its beginning and its end are checked.
///
/// @return nothing also if the file has no header.
std::optional<LineFigures> readLineFigures(const std::string& path, const std::atomic<bool>& stop);

/// The number of bytes from the start of a line that `endOfPlainLine` reads, also beyond the end of the line.
inline constexpr std::size_t plainLineReach = 48;

/// Returns the end of the line if x and y are plain decimals, such as -12.5, each with a separator directly after it.
/// The tool finds a position in each such line. Takes a quarter of the time of reading the numbers.
///
/// @param line       begins a line; `plainLineReach` bytes are readable.
/// @param last       a line feed at or after the end of the line.
/// @param maxColumns a line with more columns is not plain; 0 for any number.
/// @return the line feed; null if the line must be read in full. Without SSE2 always null.
const char* endOfPlainLine(const char* line, const char* last, char separator, std::size_t maxColumns);

} // namespace vadelwatch
