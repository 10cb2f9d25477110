#include "process/command_line_outcome.hpp"

#include <CLI/CLI.hpp>

#include <sstream>

namespace vadelclip {

bool parseCommandLine(CLI::App& app, int argc, const char* const* argv, CommandLineEnd& end) {
    try {
        app.parse(argc, argv);
        return true;
    } catch (const CLI::ParseError& error) {
        std::ostringstream output;
        std::ostringstream errors;
        end.exitStatus = app.exit(error, output, errors) == 0 ? 0 : usageErrorStatus;
        end.standardOutput = output.str();
        end.standardError = errors.str();
        return false;
    }
}

} // namespace vadelclip
