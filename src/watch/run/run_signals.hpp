/// \file
/// Signals as something to read: while a run is watched, none of them interrupts the program.
#pragma once

#include <csignal>
#include <vector>

namespace vadelwatch {

/// Collects SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGWINCH and SIGCHLD from its construction to its end; then everything is
/// as it was, and a Ctrl-C ends the program again. A signal that was ignored before stays ignored.
class RunSignals {
public:
    RunSignals();
    RunSignals(const RunSignals&) = delete;
    RunSignals& operator=(const RunSignals&) = delete;
    ~RunSignals();

    /// Becomes readable when a signal has come. It does not block.
    int descriptor() const { return signalDescriptor; }

    /// The numbers of the signals since the last call, in the order of their coming.
    std::vector<int> take() const;

private:
    sigset_t formerMask{};
    int signalDescriptor = -1;
};

/// Whether a signal asks for the end of the run, so that the tool has to know.
bool asksForEnd(int signal);

} // namespace vadelwatch
