/// \file
/// The options of the command line. They may be anywhere and are not removed from the argument list: the three positional
/// arguments are always argv[1] to argv[3], on purpose. So a usable command line has its options after them.
#pragma once

#include <cstdint>
#include <string>

namespace vadelclip {

/// Reads the language from the first argument that begins with "-lang=".
///
/// Only the first one is read and counted, so a second one makes the argument count wrong.
///
/// @param language              receives everything after the "=", which may be empty; unchanged if there is no such argument.
/// @param expectedArgumentCount is increased by 1 if there is one.
void scanLanguageOption(int argc, const char* const* argv, std::string& language, std::int32_t& expectedArgumentCount);

/// Searches for an argument that is exactly "-pipe".
///
/// @param pipeMode              becomes true if there is one; unchanged otherwise.
/// @param expectedArgumentCount is increased by 1 if there is at least one.
void scanPipeOption(int argc, const char* const* argv, bool& pipeMode, std::int32_t& expectedArgumentCount);

} // namespace vadelclip
