/// \file
/// The result of reading the command line of a companion.
#pragma once

#include <optional>
#include <string>

namespace CLI {
class App;
} // namespace CLI

namespace vadelclip {

/// The exit status for wrong arguments.
constexpr int usageErrorStatus = 2;

/// How a process ends that does not run, because of its command line.
struct CommandLineEnd {
    int exitStatus = 0;         ///< 0 after --help and --version, `usageErrorStatus` otherwise.
    std::string standardOutput; ///< Help or version.
    std::string standardError;  ///< What is wrong, and how to get help.
};

/// Options, or the end of the process.
template <typename Options>
struct CommandLineOutcome : CommandLineEnd {
    std::optional<Options> options;
};

/// Reads the arguments after the program name into the options that were added to `app`.
///
/// @param end receives the end of the process if there are no options.
/// @return true if there are options.
bool parseCommandLine(CLI::App& app, int argc, const char* const* argv, CommandLineEnd& end);

} // namespace vadelclip
