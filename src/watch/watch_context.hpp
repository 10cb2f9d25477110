/// \file
/// What the steps of one watched run share.
#pragma once

#include "watch/check/message_log.hpp"
#include "watch/check/node_files.hpp"
#include "watch/show/own_output.hpp"
#include "watch/watch_options.hpp"

#include <unistd.h>

namespace vadelwatch {

struct WatchContext {
    /// The options outlive it.
    explicit WatchContext(const WatchOptions& watchOptions)
        : options(watchOptions), directories(runDirectories(watchOptions)) {}

    const WatchOptions& options;
    RunDirectories directories;
    OwnOutput output{STDOUT_FILENO};
    OwnOutput errors{STDERR_FILENO};
    MessageLog log;
    NodeLineCount lineCount;
};

} // namespace vadelwatch
