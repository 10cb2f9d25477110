#include "shard/interruption.hpp"

#include "shard/messages.hpp"

#include <array>
#include <atomic>
#include <type_traits>

namespace vadelshard {

namespace {

constexpr std::array endingSignals{SIGINT, SIGTERM, SIGHUP};

std::atomic<pid_t> processToInterrupt = -1;
std::atomic<int> arrivedSignal = 0;
static_assert(std::is_same_v<pid_t, int> && std::atomic<int>::is_always_lock_free, "used in a handler");

void interrupt(int signal) {
    arrivedSignal = signal;
    if (processToInterrupt > 0) {
        kill(processToInterrupt, SIGKILL);
    }
}

} // namespace

void watchForInterruption() {
    struct sigaction action {};
    action.sa_handler = interrupt;
    for (const int signal : endingSignals) {
        struct sigaction former {};
        sigaction(signal, nullptr, &former);
        // `nohup` and background jobs of shells ignore some of them.
        if (former.sa_handler != SIG_IGN) {
            sigaction(signal, &action, nullptr);
        }
    }
}

void failIfInterrupted() {
    if (arrivedSignal != 0) {
        throw Failure(formatMessage("Interrupted by signal {0}. Run the same command again to continue.",
                                    std::to_string(arrivedSignal)));
    }
}

BlockedInterruption::BlockedInterruption() {
    sigset_t blocked;
    sigemptyset(&blocked);
    for (const int signal : endingSignals) {
        sigaddset(&blocked, signal);
    }
    sigprocmask(SIG_BLOCK, &blocked, &former);
}

BlockedInterruption::~BlockedInterruption() {
    sigprocmask(SIG_SETMASK, &former, nullptr);
}

void setProcessToInterrupt(pid_t pid) {
    processToInterrupt = pid;
}

} // namespace vadelshard
