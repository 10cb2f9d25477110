#include "app/standard_descriptors.hpp"

#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace vadelclip {

void guardStandardDescriptors() {
    for (int standard = STDIN_FILENO; standard <= STDERR_FILENO; ++standard) {
        if (fcntl(standard, F_GETFD) == -1) {
            // `open` returns the lowest free number, which is this one. If it fails, the descriptor stays closed.
            const int opened = open("/dev/null", O_RDWR);
            static_cast<void>(opened);
        }
    }
    static_cast<void>(signal(SIGPIPE, SIG_IGN));
}

} // namespace vadelclip
