#include "watch/show/own_output.hpp"

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <sys/types.h>
#include <unistd.h>

namespace vadelwatch {

namespace {

/// A poll that says "room" does not mean room for everything, and the descriptor blocks: it is shared with the shell and
/// others, who would have to live with it if it was changed. So while this lives a signal comes every few milliseconds,
/// and the write returns with what it has done.
class Interruptions {
public:
    Interruptions() { setInterval(20000); }
    Interruptions(const Interruptions&) = delete;
    Interruptions& operator=(const Interruptions&) = delete;
    ~Interruptions() { setInterval(0); }

private:
    static void setInterval(suseconds_t microseconds) {
        const itimerval timer{{0, microseconds}, {0, microseconds}};
        setitimer(ITIMER_REAL, &timer, nullptr);
    }
};

void waitForRoom(int descriptor) {
    pollfd state{descriptor, POLLOUT, 0};
    poll(&state, 1, -1);
}

bool hasRoom(int descriptor) {
    pollfd state{descriptor, POLLOUT, 0};
    // An error counts: the write will say which.
    return poll(&state, 1, 0) > 0;
}

/// Without SA_RESTART: a write is to be interrupted, not to go on. It stays for the rest of the process, since the last
/// signal of an interval may still be on its way when the interval is over.
void letAlarmsInterrupt() {
    struct sigaction action {};
    action.sa_handler = [](int) {};
    sigaction(SIGALRM, &action, nullptr);
    sigset_t alarm;
    sigemptyset(&alarm);
    sigaddset(&alarm, SIGALRM);
    pthread_sigmask(SIG_UNBLOCK, &alarm, nullptr);
}

} // namespace

void OwnOutput::keep(std::string_view text) {
    if (descriptor == -1 || firstError != 0) {
        return;
    }
    // Rarely, so that every byte is moved once at most.
    if (done > kept.size() / 2) {
        kept.erase(0, done);
        done = 0;
    }
    kept += text;
}

void OwnOutput::writeWhatFits() {
    if (waitingBytes() > 0 && hasRoom(descriptor)) {
        const Interruptions interruptions;
        writeOnce();
    }
}

void OwnOutput::write(std::string_view text) {
    keep(text);
    while (waitingBytes() > 0) {
        if (!writeOnce()) {
            waitForRoom(descriptor);
        }
    }
}

/// @return false if there is no room.
bool OwnOutput::writeOnce() {
    const ssize_t written = ::write(descriptor, kept.data() + done, waitingBytes());
    if (written >= 0) {
        done += static_cast<std::size_t>(written);
    } else if (errno == EAGAIN) {
        return false;
    } else if (errno != EINTR) {
        // The reader has gone or the disk is full: no reason to disturb the run.
        firstError = errno;
        done = kept.size();
    }
    return true;
}

bool OwnOutput::readerHasGone() const {
    // A terminal that was closed answers like a broken disk. What cannot be looked at keeps the zeros and is none.
    struct stat status {};
    fstat(descriptor, &status);
    const bool terminalWasClosed = firstError == EIO && S_ISCHR(status.st_mode);
    return firstError == EPIPE || firstError == ECONNRESET || terminalWasClosed;
}

void guardOwnOutput() {
    for (int standard = STDIN_FILENO; standard <= STDERR_FILENO; ++standard) {
        if (fcntl(standard, F_GETFD) == -1) {
            // The lowest free number is taken, which is this one.
            const int opened = open("/dev/null", O_RDWR);
            static_cast<void>(opened);
        }
    }
    static_cast<void>(signal(SIGPIPE, SIG_IGN));
    letAlarmsInterrupt();
}

} // namespace vadelwatch
