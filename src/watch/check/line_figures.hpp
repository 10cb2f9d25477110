/// \file
/// What one pass over a node file finds: lines that the tool drops because they do not parse, and suspect lines.
#pragma once

#include "watch/check/extent.hpp"
#include "watch/check/node_line_reader.hpp"

#include <atomic>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace vadelwatch {

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

/// Counts the lines of a regular file.
///
/// @param counted receives the size of each block.
/// @return nothing if the file cannot be read or is not a regular file.
std::optional<LineCount> countLines(
    const std::string& path, const std::function<void(std::uint64_t bytes)>& counted = [](std::uint64_t) {});

/// Reads a node file once.
///
/// @param stop ends the reading soon after it becomes true.
/// @return nothing if the file cannot be read, is not a regular file, has no header, or the reading was stopped.
std::optional<LineFigures> readLineFigures(const std::string& path, const std::atomic<bool>& stop);

/// Returns true if x and y are short plain decimals, such as -12.5, each with a separator directly after it. The tool finds
/// a position in each such line. Takes a fraction of the time of reading the numbers.
bool isPlainLine(std::string_view line, char separator);

} // namespace vadelwatch
