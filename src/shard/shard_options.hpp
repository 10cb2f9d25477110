/// \file
/// The command line of Vadelshard.
#pragma once

#include "process/command_line_outcome.hpp"
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

using CommandLineOutcome = vadelclip::CommandLineOutcome<ShardOptions>;

/// Reads the arguments after the program name. "--" ends the options.
CommandLineOutcome readCommandLine(int argc, const char* const* argv);

} // namespace vadelshard
