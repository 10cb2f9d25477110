/// \file
/// The command line of Vadelwatch, and the one of the tool that follows from it.
#pragma once

#include "process/command_line_outcome.hpp"

#include <optional>
#include <string>
#include <vector>

namespace vadelwatch {

struct WatchOptions {
    // The three arguments of the tool, passed on unchanged.
    std::string inputDirectoryPath;
    std::string outputDirectoryName;
    std::string boundaryFilePath;

    /// Value of --lang. Without one the tool uses its default, German.
    std::optional<std::string> language;
    bool quiet = false;
    std::string progress = "auto"; ///< Or "bar", "plain", "none".
    bool json = false;
    bool verbose = false;
    std::string logPath;               ///< Empty for no log.
    std::string mapPath;               ///< Empty for no map. Otherwise it ends in ".png" or ".svg".
    std::string worldFilePath;         ///< Of the map. Empty for none.
    std::string mapSize;               ///< As in "1200x900". Empty for a size that depends on the data.
    std::string mapColour = "density"; ///< Or "elevation".
};

using CommandLineOutcome = vadelclip::CommandLineOutcome<WatchOptions>;

/// Returns the language of --lang for the tool, also if the rest of the command line is wrong: usage errors are in this
/// language.
std::optional<std::string> wantedLanguage(int argc, const char* const* argv);

/// Reads the arguments after the program name. Options may be anywhere; "--" ends them.
CommandLineOutcome readCommandLine(int argc, const char* const* argv);

/// Returns the arguments of the tool: three positional ones first, then the options.
std::vector<std::string> toolArguments(const WatchOptions& options);

} // namespace vadelwatch
