/// \file
/// What the steps of one watched run share.
#pragma once

#include "watch/message_log.hpp"
#include "watch/node_files.hpp"
#include "watch/own_output.hpp"
#include "watch/run_directories.hpp"
#include "watch/watch_options.hpp"
#include "watch/watch_texts.hpp"

#include <unistd.h>

struct WatchContext {
    /// The options outlive it.
    explicit WatchContext(const WatchOptions& watchOptions)
        : options(watchOptions), texts(watchTexts(watchOptions.language)),
          directories(runDirectories(watchOptions.inputDirectoryPath, watchOptions.outputDirectoryName)) {}

    const WatchOptions& options;
    const WatchTexts& texts;
    RunDirectories directories;
    OwnOutput output{STDOUT_FILENO};
    OwnOutput errors{STDERR_FILENO};
    MessageLog log;
    NodeLineCount lineCount;
};
