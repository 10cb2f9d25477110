/// \file
/// Ends a command on SIGINT, SIGTERM or SIGHUP in an orderly way: the tool is ended, and everything unfinished is removed.
#pragma once

#include <csignal>
#include <sys/types.h>

namespace vadelshard {

/// Catches these signals from now on: they do not end this process, but make `failIfInterrupted` fail.
void watchForInterruption();

/// @throws Failure if one of the signals has arrived.
void failIfInterrupted();

/// Blocks the signals while this object exists.
class BlockedInterruption {
public:
    BlockedInterruption();
    BlockedInterruption(const BlockedInterruption&) = delete;
    BlockedInterruption& operator=(const BlockedInterruption&) = delete;
    ~BlockedInterruption();

private:
    sigset_t former{};
};

/// Sets the process that is killed when one of the signals arrives, -1 for none.
void setProcessToInterrupt(pid_t pid);

} // namespace vadelshard
