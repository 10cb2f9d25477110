#include "processmessage/message_channel.hpp"

#include <cerrno>
#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

namespace vadelclip {

namespace {

constexpr int channelDescriptor = 3;

/// Above the numbers that a shell script uses.
constexpr int lowestPrivateDescriptor = 64;

bool isOpenForWriting(int descriptor) {
    const int flags = fcntl(descriptor, F_GETFL);
    return flags != -1 && (flags & O_ACCMODE) != O_RDONLY;
}

/// Waits until a non-blocking descriptor accepts bytes again.
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
        // The limit on open files is lower. Descriptor 3 stays open, so no file of the tool gets its number.
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

} // namespace vadelclip
