#include "watch/run/phase_watch.hpp"

#include <array>
#include <csignal>
#include <cstdint>
#include <poll.h>
#include <sys/eventfd.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace vadelwatch {

namespace {

constexpr int drawingMilliseconds = 100;

constexpr std::array endingSignals{SIGINT, SIGTERM, SIGHUP, SIGQUIT};

} // namespace

PhaseWatch::PhaseWatch(ProgressMode mode, OwnOutput& output, std::string phase, std::string sentence)
    : errors(output), name(std::move(phase)), interruption(std::move(sentence)),
      display(
          mode, barStyleFromEnvironment(), [&output](std::string_view text) { output.keep(text); },
          [] { return terminalColumns(STDERR_FILENO); }),
      wakeDescriptor(eventfd(0, EFD_CLOEXEC)) {
    try {
        if (wakeDescriptor != -1) {
            thread = std::thread([this] { showAndListen(); });
        }
    } catch (const std::system_error&) {
        // No thread. The work does not need to be shown.
    }
    if (!thread.joinable()) {
        signals.reset();
    }
}

PhaseWatch::~PhaseWatch() {
    if (thread.joinable()) {
        const std::uint64_t one = 1;
        static_cast<void>(TEMP_FAILURE_RETRY(write(wakeDescriptor, &one, sizeof one)));
        thread.join();
    }
    if (wakeDescriptor != -1) {
        close(wakeDescriptor);
    }
}

/// Runs in the thread.
void PhaseWatch::showAndListen() {
    std::array<pollfd, 2> sources{{{wakeDescriptor, POLLIN, 0}, {signals->descriptor(), POLLIN, 0}}};
    while (sources[0].revents == 0) {
        poll(sources.data(), sources.size(), drawingMilliseconds);
        for (const int number : signals->take()) {
            if (asksForEnd(number)) {
                endBy(number);
            }
        }
        const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - startTime).count();
        if (errors.waitingBytes() == 0 && display.isDue(seconds)) {
            ProgressFigures figures;
            figures.phase = name;
            figures.elapsedSeconds = seconds;
            display.update(figures, seconds);
            display.flush();
        }
    }
    display.clear();
    display.flush();
}

void PhaseWatch::endBy(int number) {
    display.showLine(interruption);
    display.flush();
    // From now on a second signal ends the process, also while a slow reader is waited for.
    sigset_t ending;
    sigemptyset(&ending);
    for (const int each : endingSignals) {
        sigaddset(&ending, each);
    }
    pthread_sigmask(SIG_UNBLOCK, &ending, nullptr);
    errors.write({});
    static_cast<void>(raise(number));
}

} // namespace vadelwatch
