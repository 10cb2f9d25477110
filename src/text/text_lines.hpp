/// \file
/// Reads and counts lines in text mode on every platform: a carriage return directly before a line feed is part of the
/// line end, any other carriage return is part of the line.
#pragma once

#include <cstddef>
#include <cstdint>
#include <istream>
#include <string>

namespace vadelclip {

/// Reads the next line, without its line end.
///
/// @param line receives the line. It is empty if nothing can be read: from a missing file, from a directory, at end of
///             file. The last line of a file may lack its line feed; then a carriage return at its end is part of it.
void readTextLine(std::istream& input, std::string& line);

/// Counts the line feeds in a block of memory.
std::uint64_t countLineFeeds(const char* bytes, std::size_t size);

/// Counts the line feeds from the current position to the end of the input, in blocks.
///
/// @return 0 if nothing can be read.
std::uint64_t countLineFeeds(std::istream& input);

} // namespace vadelclip
