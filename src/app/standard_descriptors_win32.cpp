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

// Nothing has to be done about vanished readers: writing to them is no more than an error here.
void guardStandardDescriptors() {
    // To ask whether a descriptor is open would end the process where it is not. But the lowest free number is taken
    // each time. If it cannot be opened, all goes on as it was.
    int opened = openNullDevice();
    while (opened >= 0 && opened <= lastStandardDescriptor) {
        opened = openNullDevice();
    }
    if (opened > lastStandardDescriptor) {
        _close(opened);
    }
}

} // namespace vadelclip
