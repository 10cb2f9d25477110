/// \file
/// Reads the first line of a node file. It decides if the tool takes the file, and which byte separates its columns.
#pragma once

#include <cstdint>
#include <string>

namespace vadelclip {

/// Checks a header line. It accepts x S y S z, X S Y S Z, x S y S z S g and X S Y S Z S G, where S is a tab, space,
/// comma or semicolon, the same one everywhere. A byte order mark may precede them; nothing else may be on the line.
///
/// @param line       a copy, because the byte order mark is removed from it.
/// @param separator  receives the second byte if the first one is accepted, even if it is not a separator. Otherwise it
///                   is not changed.
/// @param nodeFormat receives 1 without and 2 with a g column, 0 for a rejected line. Nothing reads it.
/// @param errorText  receives the reason for a rejection. It is empty for an accepted line and for an empty one.
/// @return true if the line is accepted.
bool readNodeFileHeader(std::string line, char& separator, std::int32_t& nodeFormat, std::string& errorText);

} // namespace vadelclip
