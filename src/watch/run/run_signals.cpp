#include "watch/run/run_signals.hpp"

#include <sys/signalfd.h>
#include <unistd.h>

namespace vadelwatch {

namespace {

bool isIgnored(int number) {
    struct sigaction action {};
    sigaction(number, nullptr, &action);
    return action.sa_handler == SIG_IGN;
}

} // namespace

RunSignals::RunSignals() {
    // If the parent process has ignored it, the status of a child would be lost.
    static_cast<void>(std::signal(SIGCHLD, SIG_DFL));
    sigset_t watched;
    sigemptyset(&watched);
    for (const int number : {SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGWINCH, SIGCHLD}) {
        // An ignored signal is discarded only while it is not blocked.
        if (!isIgnored(number)) {
            sigaddset(&watched, number);
        }
    }
    pthread_sigmask(SIG_BLOCK, &watched, &formerMask);
    signalDescriptor = signalfd(-1, &watched, SFD_CLOEXEC | SFD_NONBLOCK);
}

RunSignals::~RunSignals() {
    close(signalDescriptor);
    pthread_sigmask(SIG_SETMASK, &formerMask, nullptr);
}

std::vector<int> RunSignals::takeEndingSignals() const {
    std::vector<int> numbers;
    signalfd_siginfo info{};
    while (read(signalDescriptor, &info, sizeof info) == static_cast<ssize_t>(sizeof info)) {
        if (info.ssi_signo != SIGWINCH && info.ssi_signo != SIGCHLD) {
            numbers.push_back(static_cast<int>(info.ssi_signo));
        }
    }
    return numbers;
}

} // namespace vadelwatch
