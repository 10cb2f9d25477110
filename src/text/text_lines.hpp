/// \file
/// Lines of a text file in text mode on every platform: a carriage return directly before a line feed is part of the
/// line end, a lone one is part of the line.
#pragma once

#include <cstddef>
#include <cstdint>
#include <istream>
#include <string>

namespace vadelclip {

/// Reads the next line, without its line end.
///
/// @param line receives the line. It is empty where nothing can be read: an absent file, a directory, the end of the
///             file. The last line of a file may lack its line feed; a carriage return at its end stays.
void readTextLine(std::istream& input, std::string& line);

/// Counts the line feeds in a block of memory.
std::uint64_t countLineFeeds(const char* bytes, std::size_t size);

/// Counts the line feeds from here to the end of the input, reading in blocks.
///
/// @return 0 where nothing can be read.
std::uint64_t countLineFeeds(std::istream& input);

} // namespace vadelclip
