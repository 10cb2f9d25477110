/// \file
/// Loaded before the C library, it makes every directory fail with an input/output error behind its third entry.

#include <cerrno>
#include <dirent.h>
#include <dlfcn.h>

namespace {

constexpr int goodEntries = 3;

int entriesGiven = 0;

} // namespace

extern "C" dirent64* readdir64(DIR* directory) {
    using Function = dirent64* (*)(DIR*);
    static const auto next = reinterpret_cast<Function>(dlsym(RTLD_NEXT, "readdir64"));
    if (entriesGiven == goodEntries) {
        errno = EIO;
        return nullptr;
    }
    ++entriesGiven;
    return next(directory);
}
