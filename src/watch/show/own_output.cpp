#include "watch/show/own_output.hpp"

#include <cerrno>
#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <sys/types.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace vadelwatch {

namespace {

/// @return 0, or the errno of the write that failed.
int writeWhole(int descriptor, std::string_view text) {
    while (!text.empty()) {
        const ssize_t written = ::write(descriptor, text.data(), text.size());
        if (written >= 0) {
            text.remove_prefix(static_cast<std::size_t>(written));
        } else if (errno == EAGAIN) {
            pollfd writable{descriptor, POLLOUT, 0};
            poll(&writable, 1, -1);
        } else if (errno != EINTR) {
            return errno;
        }
    }
    return 0;
}

} // namespace

OwnOutput::~OwnOutput() {
    if (thread.joinable()) {
        {
            const std::lock_guard lock(mutex);
            ending = true;
        }
        changed.notify_all();
        thread.join();
    }
    close();
}

int OwnOutput::open(const std::string& path) {
    constexpr mode_t permissions = 0666; // less the umask
    descriptor = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC | O_NOCTTY, permissions);
    isOwnFile = descriptor != -1;
    return isOwnFile ? 0 : errno;
}

int OwnOutput::close() {
    if (!std::exchange(isOwnFile, false)) {
        return 0;
    }
    write({});
    // Some file systems report only now that there was no space.
    const int closing = ::close(std::exchange(descriptor, -1)) == 0 ? 0 : errno;
    return failure() != 0 ? failure() : closing;
}

void OwnOutput::keep(std::string_view text) {
    const std::lock_guard lock(mutex);
    if (descriptor == -1 || firstError != 0 || text.empty()) {
        return;
    }
    kept += text;
    if (thread.joinable()) {
        changed.notify_all();
        return;
    }
    try {
        thread = std::thread([this] { writeKeptTexts(); });
    } catch (const std::system_error&) {
        // There is no thread, so this call waits for the reader, and signals wait too.
        firstError = writeWhole(descriptor, kept);
        kept.clear();
    }
}

void OwnOutput::write(std::string_view text) {
    if (thread.joinable()) {
        keep(text);
        std::unique_lock lock(mutex);
        changed.wait(lock, [this] { return kept.empty() && bytesInWrite == 0; });
    } else if (descriptor != -1 && firstError == 0) {
        firstError = writeWhole(descriptor, text);
    }
}

/// Runs in the thread.
void OwnOutput::writeKeptTexts() {
    std::string text;
    std::unique_lock lock(mutex);
    while (true) {
        changed.wait(lock, [this] { return ending || !kept.empty(); });
        if (kept.empty()) {
            return;
        }
        text.clear();
        text.swap(kept);
        bytesInWrite = text.size();
        lock.unlock();
        const int error = writeWhole(descriptor, text);
        lock.lock();
        bytesInWrite = 0;
        if (error != 0) {
            firstError = error;
            kept.clear();
        }
        changed.notify_all();
    }
}

std::size_t OwnOutput::waitingBytes() const {
    const std::lock_guard lock(mutex);
    return kept.size() + bytesInWrite;
}

int OwnOutput::failure() const {
    const std::lock_guard lock(mutex);
    return firstError;
}

bool OwnOutput::readerHasGone() const {
    // A closed terminal returns EIO, as a broken disk does. If `fstat` fails, `status` stays zero and the descriptor
    // does not count as a terminal.
    struct stat status {};
    fstat(descriptor, &status);
    const int error = failure();
    return error == EPIPE || error == ECONNRESET || (error == EIO && S_ISCHR(status.st_mode));
}

} // namespace vadelwatch
