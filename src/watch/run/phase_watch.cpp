#include "watch/run/phase_watch.hpp"

#include <chrono>
#include <csignal>
#include <poll.h>
#include <system_error>
#include <utility>
#include <vector>

namespace vadelwatch {

PhaseWatch::PhaseWatch(ProgressMode mode, bool& barShown, OwnOutput& output, std::string phase,
                       OnInterruption onInterruption)
    : barWasShown(barShown), errors(output), name(std::move(phase)), interrupted(std::move(onInterruption)),
      display(displayOnStandardError(mode, output)) {
    if (barWasShown) {
        display.startAtOnce();
    }
    try {
        thread = std::thread([this] { showAndListen(); });
    } catch (const std::system_error&) {
        // There is no thread, so the work is not shown and signals end the process directly.
        signals.reset();
    }
}

PhaseWatch::~PhaseWatch() {
    if (thread.joinable()) {
        ended = true;
        // Ends the wait of the thread at once.
        pthread_kill(thread.native_handle(), SIGWINCH);
        thread.join();
        barWasShown = barWasShown || display.hasDrawn();
        // The summary is written to the same terminal, and has to follow the removal of the bar. A terminal may be held,
        // so signals end the process again.
        signals.reset();
        errors.write({});
    }
}

/// Runs in the thread.
void PhaseWatch::showAndListen() {
    constexpr int drawingMilliseconds = 100;
    const auto startTime = std::chrono::steady_clock::now();
    while (!ended) {
        pollfd source{signals->descriptor(), POLLIN, 0};
        poll(&source, 1, drawingMilliseconds);
        const std::vector<int> numbers = signals->takeEndingSignals();
        if (!numbers.empty()) {
            display.clear();
            display.flush();
            signals.reset();
            if (numbers.size() > 1) {
                // The second signal was read with the first one. It ends the process at once.
                static_cast<void>(raise(numbers[1]));
            }
            interrupted(numbers.front());
            static_cast<void>(raise(numbers.front()));
        }
        const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - startTime).count();
        if (!ended && errors.waitingBytes() == 0 && display.isDue(seconds)) {
            ProgressFigures figures;
            figures.phase = name;
            figures.percent = percent;
            figures.elapsedSeconds = seconds;
            display.update(figures, seconds);
            display.flush();
        }
    }
    display.clear();
    display.flush();
}

} // namespace vadelwatch
