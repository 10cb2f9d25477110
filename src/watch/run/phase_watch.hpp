/// \file
/// Shows the work of Vadelwatch after a run, and lets a signal end it.
#pragma once

#include "watch/run/run_signals.hpp"
#include "watch/show/own_output.hpp"
#include "watch/show/progress_display.hpp"

#include <atomic>
#include <functional>
#include <optional>
#include <string>
#include <thread>

namespace vadelwatch {

/// Shows a phase while the object exists, unless the phase is short. A thread draws, and reads signals: the first signal
/// that asks for the end ends the process as if it had not been caught.
///
/// Nothing else may be written to `output` while the object exists. Without a thread the phase is not shown.
class PhaseWatch {
public:
    /// Receives the number of the signal, in the thread, before the process ends. A second signal ends the process at
    /// once, also while this function waits for a reader.
    using OnInterruption = std::function<void(int signal)>;

    /// @param mode     how to show the phase.
    /// @param barShown true if an earlier phase has shown its bar: then this phase does not wait before its own. Becomes true
    ///                 if this phase shows one. Must outlive this object, as must the next one.
    /// @param output   standard error.
    /// @param phase    its translated name.
    PhaseWatch(ProgressMode mode, bool& barShown, OwnOutput& output, std::string phase, OnInterruption onInterruption);
    PhaseWatch(const PhaseWatch&) = delete;
    PhaseWatch& operator=(const PhaseWatch&) = delete;

    /// Removes the bar, and waits until that is written.
    ~PhaseWatch();

    /// Shows how much of the phase is done. May be called in any thread.
    void show(double donePercent) { percent = donePercent; }

private:
    void showAndListen();

    std::optional<RunSignals> signals{std::in_place};
    bool& barWasShown;
    OwnOutput& errors;
    std::string name;
    OnInterruption interrupted;
    ProgressDisplay display;
    std::atomic<double> percent = 0.0;
    std::atomic<bool> ended = false;
    std::thread thread;
};

} // namespace vadelwatch
