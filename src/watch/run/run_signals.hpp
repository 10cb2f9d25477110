/// \file
/// Signals that are read from a descriptor: while a run is watched, none of them interrupts the program.
#pragma once

#include <csignal>
#include <vector>

namespace vadelwatch {

/// Collects SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGWINCH and SIGCHLD during its lifetime. Its destructor restores the
/// former signal mask, so that Ctrl-C ends the program again. A signal that was ignored before stays ignored.
class RunSignals {
public:
    RunSignals();
    RunSignals(const RunSignals&) = delete;
    RunSignals& operator=(const RunSignals&) = delete;
    ~RunSignals();

    /// Returns a descriptor that becomes readable when a signal has arrived. Reading it does not block.
    int descriptor() const { return signalDescriptor; }

    /// Returns the signals since the last call that ask for the end of the run: all but SIGWINCH and SIGCHLD, which
    /// only end a wait.
    std::vector<int> takeEndingSignals() const;

private:
    sigset_t formerMask{};
    int signalDescriptor = -1;
};

} // namespace vadelwatch
