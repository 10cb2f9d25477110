/// \file
/// The first line of a node file: it tells whether the file is one, and which byte separates the columns.
#pragma once

#include <cstdint>
#include <string>

namespace vadelclip {

/// Judges a header line. Accepted are x S y S z, X S Y S Z, x S y S z S g and X S Y S Z S G with one separator S of
/// tab, blank, comma or semicolon, a byte order mark in front or not, and nothing else on the line.
///
/// @param line       a copy, because the byte order mark is cut from it; the caller's line keeps its own.
/// @param separator  receives the second byte once the first one has passed, even if it is no separator; untouched
///                   before that.
/// @param nodeFormat receives 1 without and 2 with a g column, 0 for a rejected line. Nothing reads it.
/// @param errorText  receives the reason, empty for an accepted line and for an empty one, which has no words.
/// @return true for an accepted line.
bool readNodeFileHeader(std::string line, char& separator, std::int32_t& nodeFormat, std::string& errorText);

} // namespace vadelclip
