/// \file
/// How a run ended, as an exit status and in words.
#pragma once

#include "watch/run/run_watcher.hpp"
#include "watch/run/tool_process.hpp"

#include <string>
#include <vector>

namespace vadelwatch {

/// The tool's own status where it is one of its own, 4 for any other end.
int statusOf(const ToolEnd& end);

/// What there is to say about the end of a run: for a failed one, the tool's own last words; a line if the tool ended in
/// a way that is none of its own; and always a line if a signal asked for the end, whatever the tool made of it.
///
/// @return nothing for a run that finished, or failed without a word.
std::vector<std::string> endingLines(const RunRecord& record, const std::string& outputDirectory);

/// Returns the sentence that the output in this directory is incomplete.
std::string incompleteOutput(const std::string& outputDirectory);

} // namespace vadelwatch
