#include "processmessage/message_channel.hpp"

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

namespace {

constexpr int channelDescriptor = 3;

/// Beyond the numbers a shell script hands out.
constexpr int lowestPrivateDescriptor = 64;

bool isOpenForWriting(int descriptor) {
    const int flags = fcntl(descriptor, F_GETFL);
    return flags != -1 && (flags & O_ACCMODE) != O_RDONLY;
}

/// Waits until a non-blocking descriptor takes bytes again.
void waitForReader(int descriptor) {
    pollfd state{descriptor, POLLOUT, 0};
    poll(&state, 1, -1);
}

} // namespace

void MessageChannel::open() {
    if (!isOpenForWriting(channelDescriptor)) {
        return;
    }
    descriptor = fcntl(channelDescriptor, F_DUPFD_CLOEXEC, lowestPrivateDescriptor);
    if (descriptor < 0) {
        // The limit on open files is lower than that. Descriptor 3 stays open, so nothing else can land on it.
        descriptor = channelDescriptor;
    }
}

void MessageChannel::send(const std::string& line) {
    const char* position = line.data();
    std::size_t remaining = line.size();
    while (remaining > 0 && isOpen()) {
        const ssize_t written = write(descriptor, position, remaining);
        if (written >= 0) {
            position += written;
            remaining -= static_cast<std::size_t>(written);
        } else if (errno == EAGAIN || errno == EWOULDBLOCK) {
            waitForReader(descriptor);
        } else if (errno != EINTR) {
            close();
        }
    }
}

void MessageChannel::close() {
    if (isOpen()) {
        ::close(descriptor);
        descriptor = -1;
    }
}

void guardStandardDescriptors() {
    for (int standard = STDIN_FILENO; standard <= STDERR_FILENO; ++standard) {
        if (fcntl(standard, F_GETFD) == -1) {
            // The lowest free number is taken, which is this one. If it cannot be opened, all goes on as it was.
            const int opened = ::open("/dev/null", O_RDWR);
            static_cast<void>(opened);
        }
    }
    static_cast<void>(signal(SIGPIPE, SIG_IGN));
}
