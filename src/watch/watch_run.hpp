/// \file
/// One watched run, from the start of the tool to the exit status.
#pragma once

#include "watch/watch_options.hpp"

namespace vadelwatch {

/// Starts the tool, watches it, checks its output and prints the summary. Errors and progress go to standard error, the
/// summary to standard output.
///
/// @return the exit status, see exit_status.hpp.
int watchRun(const WatchOptions& options);

} // namespace vadelwatch
