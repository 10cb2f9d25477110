#include "watch/own_output.hpp"

#include <cerrno>
#include <csignal>
#include <cstddef>
#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

void OwnOutput::write(std::string_view text) {
    while (!text.empty() && !gone) {
        const ssize_t written = ::write(descriptor, text.data(), text.size());
        if (written >= 0) {
            text.remove_prefix(static_cast<std::size_t>(written));
        } else if (errno == EAGAIN) {
            pollfd state{descriptor, POLLOUT, 0};
            poll(&state, 1, -1);
        } else if (errno != EINTR) {
            // The reader has gone or the disk is full: no reason to disturb the run.
            gone = true;
        }
    }
}

void guardOwnOutput() {
    for (int standard = STDIN_FILENO; standard <= STDERR_FILENO; ++standard) {
        if (fcntl(standard, F_GETFD) == -1 && errno == EBADF) {
            // The lowest free number is taken, which is this one.
            const int opened = open("/dev/null", O_RDWR);
            static_cast<void>(opened);
        }
    }
    static_cast<void>(signal(SIGPIPE, SIG_IGN));
}
