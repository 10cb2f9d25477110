/// \file
/// The command line of Vadelwatch.
#pragma once

#include <optional>
#include <string>

namespace vadelwatch {

struct WatchOptions {
    // The three arguments of the tool, handed to it as they stand.
    std::string inputDirectoryPath;
    std::string outputDirectoryName;
    std::string boundaryFilePath;

    /// Value for the tool's "-lang="; without one the tool chooses its default, German.
    std::optional<std::string> language;
    bool quiet = false;
    bool json = false;
    std::string logPath; ///< Empty for no log.
    std::string mapPath; ///< Empty for no map. Otherwise it ends in ".png" or ".svg".
};

/// What reading the command line led to: options, or the end of the process.
struct CommandLineOutcome {
    std::optional<WatchOptions> options;
    int exitStatus = 0;         ///< 0 after --help and --version, `usageErrorStatus` otherwise.
    std::string standardOutput; ///< Help or version.
    std::string standardError;  ///< What is wrong, and where help is to be found.
};

/// Reads the arguments behind the program name. Options may stand anywhere; "--" ends them.
CommandLineOutcome readCommandLine(int argc, const char* const* argv);

} // namespace vadelwatch
