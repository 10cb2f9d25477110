#include "processmessage/message_channel.hpp"

#include <windows.h>

#include <algorithm>
#include <climits>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <fcntl.h>
#include <io.h>

namespace vadelclip {

// Descriptors belong to the C run-time here; a program that starts the tool with _spawn hands its own on. Windows itself
// knows handles only. Writing stays with the run-time, which knows whether a file was opened for appending.

namespace {

constexpr int channelDescriptor = 3;

/// For its lifetime asking about a descriptor that is not open is answered and does not end the process.
class InvalidParametersAnswered {
public:
    InvalidParametersAnswered() : original(_set_invalid_parameter_handler(ignore)) {}
    InvalidParametersAnswered(const InvalidParametersAnswered&) = delete;
    InvalidParametersAnswered& operator=(const InvalidParametersAnswered&) = delete;
    ~InvalidParametersAnswered() { _set_invalid_parameter_handler(original); }

private:
    static void ignore(const wchar_t*, const wchar_t*, const wchar_t*, unsigned int, std::uintptr_t) {}

    _invalid_parameter_handler original;
};

bool isOpen(int descriptor) {
    return _get_osfhandle(descriptor) != -1;
}

/// Keeps the handle behind a descriptor from processes that this one might start.
void hideFromChildren(int descriptor) {
    SetHandleInformation(reinterpret_cast<HANDLE>(_get_osfhandle(descriptor)), HANDLE_FLAG_INHERIT, 0);
}

} // namespace

void MessageChannel::open() {
    const InvalidParametersAnswered guard;
    // Whether it is open for writing cannot be asked here: if it is not, the first write fails and ends the channel.
    descriptor = ::isOpen(channelDescriptor) ? _dup(channelDescriptor) : -1;
    if (isOpen()) {
        hideFromChildren(descriptor);
        // The form of the messages is the same everywhere: a line feed alone ends a line.
        _setmode(descriptor, _O_BINARY);
    }
}

void MessageChannel::send(const std::string& line) {
    const char* position = line.data();
    std::size_t remaining = line.size();
    while (remaining > 0 && isOpen()) {
        const int written =
            _write(descriptor, position, static_cast<unsigned int>(std::min<std::size_t>(remaining, INT_MAX)));
        if (written > 0) {
            position += written;
            remaining -= static_cast<std::size_t>(written);
        } else {
            close();
        }
    }
}

void MessageChannel::close() {
    if (isOpen()) {
        _close(descriptor);
        descriptor = -1;
    }
}

} // namespace vadelclip
