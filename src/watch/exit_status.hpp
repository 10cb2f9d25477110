/// \file
/// Every exit status of Vadelwatch, and the lines about the end of a run. docs/vadelwatch.md lists the same statuses.
#pragma once

#include "process/command_line_outcome.hpp"
#include "watch/run/run_watcher.hpp"
#include "watch/run/tool_process.hpp"

#include <string>
#include <vector>

namespace vadelwatch {

/// The tool finished and the output adds up.
constexpr int finishedStatus = 0;

/// The tool failed. This is the status of the tool for every failure that it reports.
constexpr int toolFailedStatus = 1;

/// Wrong arguments, or a log, map or summary that cannot be written: 2.
using vadelclip::usageErrorStatus;

/// The tool finished, and the lines in the output directory do not add up to the count that it wrote.
constexpr int checkFailedStatus = 3;

/// The tool could not be started, was ended by a signal, or ended with a status other than 0 and 1.
constexpr int abnormalEndStatus = 4;

/// Returns the status of the tool if it is 0 or 1, and `abnormalEndStatus` for any other end.
int statusOf(const ToolEnd& end);

/// Returns the lines about the end of a run: the closing message of a run that failed, and a line about an abnormal
/// end. If a signal asked for the end, there is always a line about it.
///
/// @return nothing for a run that finished, or failed without a closing message.
std::vector<std::string> endingLines(const RunRecord& record, const std::string& outputDirectory);

/// Returns the sentence that the output in this directory is incomplete.
std::string incompleteOutput(const std::string& outputDirectory);

} // namespace vadelwatch
