/// \file
/// Shows the work of Vadelwatch itself after a run, and lets a signal end it with one sentence.
#pragma once

#include "watch/run/run_signals.hpp"
#include "watch/show/own_output.hpp"
#include "watch/show/progress_display.hpp"

#include <chrono>
#include <optional>
#include <string>
#include <thread>
#include <utility>

namespace vadelwatch {

/// Shows a phase during its lifetime, if that is longer than a moment. A thread draws, and reads signals: the first
/// signal that asks for the end is reported, and ends the process as if it had not been caught.
///
/// Nothing else may be written to `output` during its lifetime. Without a thread the phase is not shown.
class PhaseWatch {
public:
    /// @param mode     how to show the phase.
    /// @param output   standard error; must outlive this object.
    /// @param phase    its translated name.
    /// @param sentence written if a signal ends the process, without its line feed.
    PhaseWatch(ProgressMode mode, OwnOutput& output, std::string phase, std::string sentence);
    PhaseWatch(const PhaseWatch&) = delete;
    PhaseWatch& operator=(const PhaseWatch&) = delete;

    /// Removes the bar.
    ~PhaseWatch();

private:
    void showAndListen();
    void endBy(int number);

    std::optional<RunSignals> signals{std::in_place};
    OwnOutput& errors;
    std::string name;
    std::string interruption;
    ProgressDisplay display;
    std::chrono::steady_clock::time_point startTime = std::chrono::steady_clock::now();
    int wakeDescriptor = -1; ///< Readable at the end of the phase.
    std::thread thread;
};

} // namespace vadelwatch
