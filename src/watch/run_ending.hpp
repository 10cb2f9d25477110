/// \file
/// How a run ended, as an exit status and in words.
#pragma once

#include "watch/run_watcher.hpp"
#include "watch/tool_process.hpp"
#include "watch/watch_texts.hpp"

#include <string>

/// The tool's own status where it is one of its own, 4 for any other end.
int statusOf(const ToolEnd& end);

/// The one line about a run that did not finish; for a failed one, the tool's own last words, which may be empty.
std::string endingLine(const RunRecord& record, const std::string& outputDirectory, const WatchTexts& texts);
