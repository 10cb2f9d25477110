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

// Descriptors belong to the C run-time on Windows: a program that starts the tool with _spawn passes its own on. The run-time
// also writes, because only it has the flag that a file was opened for appending.

namespace {

constexpr int channelDescriptor = 3;

/// While an object exists, a query about a descriptor that is not open returns an error and does not end the process.
class InvalidParametersIgnored {
public:
    InvalidParametersIgnored() : original(_set_invalid_parameter_handler(ignore)) {}
    InvalidParametersIgnored(const InvalidParametersIgnored&) = delete;
    InvalidParametersIgnored& operator=(const InvalidParametersIgnored&) = delete;
    ~InvalidParametersIgnored() { _set_invalid_parameter_handler(original); }

private:
    static void ignore(const wchar_t*, const wchar_t*, const wchar_t*, unsigned int, std::uintptr_t) {}

    _invalid_parameter_handler original;
};

bool isOpen(int descriptor) {
    return _get_osfhandle(descriptor) != -1;
}

/// Prevents processes that this one starts from inheriting the handle of a descriptor.
void hideFromChildren(int descriptor) {
    SetHandleInformation(reinterpret_cast<HANDLE>(_get_osfhandle(descriptor)), HANDLE_FLAG_INHERIT, 0);
}

} // namespace

void MessageChannel::open() {
    const InvalidParametersIgnored guard;
    // The run-time has no query for "open for writing": if it is not, the first write fails and closes the channel.
    descriptor = vadelclip::isOpen(channelDescriptor) ? _dup(channelDescriptor) : -1;
    if (isOpen()) {
        hideFromChildren(descriptor);
        // Messages have the same bytes on every platform: a line ends with a line feed only.
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
