#include "app/standard_descriptors.hpp"

#include <fcntl.h>
#include <io.h>

namespace vadelclip {

namespace {

constexpr int lastStandardDescriptor = 2;

int openNullDevice() {
    return _open("NUL", _O_RDWR);
}

} // namespace

// Windows has no SIGPIPE: a write to a pipe without a reader is only an error.
void guardStandardDescriptors() {
    // A query about a closed descriptor would end the process. Each `_open` returns the lowest free number instead. If it
    // fails, the descriptors stay closed.
    int opened = openNullDevice();
    while (opened >= 0 && opened <= lastStandardDescriptor) {
        opened = openNullDevice();
    }
    if (opened > lastStandardDescriptor) {
        _close(opened);
    }
}

} // namespace vadelclip
