/// \file
/// The options of the command line. They are found wherever they stand but are never removed from the argument list:
/// the three positional arguments are always argv[1] to argv[3], on purpose. A usable command line has its options
/// behind them.
#pragma once

#include <cstdint>
#include <string>

namespace vadelclip {

/// Looks for the first argument that begins with "-lang=" and takes the language from it.
///
/// Only the first one is read and counted; a later one makes the argument count wrong.
///
/// @param language              receives everything behind the "=", possibly nothing; untouched if none is found.
/// @param expectedArgumentCount grows by 1 if one is found.
void scanLanguageOption(int argc, const char* const* argv, std::string& language, std::int32_t& expectedArgumentCount);

/// Looks for an argument that is exactly "-pipe".
///
/// @param pipeMode              becomes true if one is found, else it is untouched.
/// @param expectedArgumentCount grows by 1 if one is found, once, however many there are.
void scanPipeOption(int argc, const char* const* argv, bool& pipeMode, std::int32_t& expectedArgumentCount);

} // namespace vadelclip
