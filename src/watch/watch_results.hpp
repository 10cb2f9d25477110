/// \file
/// What is written when a run is over: words about it, the log, the map, the summary. Signals act on the process again by
/// then, so all of it may wait for a reader.
#pragma once

#include "watch/show/run_summary.hpp"
#include "watch/watch_context.hpp"

#include <string>
#include <vector>

namespace vadelwatch {

/// Writes lines to standard error.
void sayLines(WatchContext& watch, const std::vector<std::string>& lines);

// Each of these says so if it fails, and turns the status of a finished run into that of a file that cannot be written.

/// Writes what is left of the log.
void closeLog(WatchContext& watch, RunSummary& summary);

/// Draws the map of a finished run, if it is wanted.
void drawWantedMap(WatchContext& watch, RunSummary& summary);

/// Prints the summary in the form that is wanted, if one is. A reader that has gone is no failure: it did not want it.
void printSummary(WatchContext& watch, RunSummary& summary);

} // namespace vadelwatch
