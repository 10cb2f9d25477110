/// \file
/// The command line of Vadelshard.
#pragma once

#include "shard/commands.hpp"

#include <cstdint>
#include <optional>
#include <string>

namespace vadelshard {

enum class Command { plan, clip, merge, status };

struct ShardOptions {
    Command command = Command::plan;
    PlanOptions plan;
    std::string workDirectory; ///< Of all commands but plan.
    std::uint64_t index = 0;   ///< Of clip.
    bool direct = false;       ///< Of clip.
    StatusOptions status;
    std::optional<std::string> language; ///< Value of --lang.
};

/// The result of reading the command line: options, or the end of the process.
struct CommandLineOutcome {
    std::optional<ShardOptions> options;
    int exitStatus = 0;         ///< 0 after --help and --version, `usageErrorStatus` otherwise.
    std::string standardOutput; ///< Help or version.
    std::string standardError;  ///< What is wrong, and how to get help.
};

/// Reads the arguments after the program name. "--" ends the options.
CommandLineOutcome readCommandLine(int argc, const char* const* argv);

} // namespace vadelshard
