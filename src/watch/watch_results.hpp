/// \file
/// Writes the results of a run: lines about it, the log, the map, the summary. These functions may wait for a reader,
/// because signals end the process again after the run.
#pragma once

#include "process/run_directories.hpp"
#include "watch/check/node_files.hpp"
#include "watch/run_summary.hpp"
#include "watch/show/own_output.hpp"
#include "watch/show/progress_display.hpp"
#include "watch/watch_options.hpp"

#include <string>
#include <unistd.h>
#include <vector>

namespace vadelwatch {

/// What the steps of one watched run share.
struct WatchContext {
    /// The options must outlive it.
    explicit WatchContext(const WatchOptions& watchOptions)
        : options(watchOptions),
          directories(vadelclip::runDirectories(watchOptions.inputDirectoryPath, watchOptions.outputDirectoryName)),
          progressMode(watchOptions.quiet ? ProgressMode::none
                                          : progressModeFor(STDERR_FILENO, watchOptions.progress)) {}

    const WatchOptions& options;
    vadelclip::RunDirectories directories;
    ProgressMode progressMode;
    bool barWasShown = false; ///< In a phase that has ended.
    OwnOutput output{STDOUT_FILENO};
    OwnOutput errors{STDERR_FILENO};
    OwnOutput log;
    NodeLineCount lineCount;
};

/// Writes lines to standard error.
void writeErrors(WatchContext& watch, const std::vector<std::string>& lines);

/// Writes the last lines of Vadelwatch if a signal ends it while it checks or draws: the sentence, and the summary if the
/// options have --json.
void writeInterruption(WatchContext& watch, RunSummary summary, int signal, const std::string& sentence);

// Each of the following functions reports its failure, and then turns the status of a finished run into
// `usageErrorStatus`.

/// Writes the rest of the log.
void closeLog(WatchContext& watch, RunSummary& summary);

/// Draws the map of a finished run, if the options have one. Notes in the summary why there is no map. After a run that did
/// not finish, reports a map of an earlier run.
void drawWantedMap(WatchContext& watch, RunSummary& summary);

/// Prints the summary as the options say. A reader that has gone is not a failure.
void printSummary(WatchContext& watch, RunSummary& summary);

} // namespace vadelwatch
