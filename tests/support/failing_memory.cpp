/// \file
/// Loaded before the C library, it lets chosen allocations of a process fail, as an exhausted memory does. They count
/// from the entry of `main` on: what libraries do before it is theirs to survive.

#include "scripted_outcomes.hpp"

#include <cerrno>
#include <cstddef>
#include <dlfcn.h>

// The C library's own names for its allocator: looking it up by name would allocate.
extern "C" void* __libc_malloc(std::size_t size);                // NOLINT(bugprone-reserved-identifier)
extern "C" void* __libc_calloc(std::size_t, std::size_t);        // NOLINT(bugprone-reserved-identifier)
extern "C" void* __libc_realloc(void* memory, std::size_t size); // NOLINT(bugprone-reserved-identifier)

namespace {

ScriptedOutcomes outcomes;

using Main = int (*)(int, char**, char**);
using Start = int (*)(Main, int, char**, void (*)(), void (*)(), void (*)(), void*);

Main mainOfProgram = nullptr;

int mainWithFailures(int argc, char** argv, char** environment) {
    outcomes.begin();
    return mainOfProgram(argc, argv, environment);
}

bool isRefused() {
    if (outcomes.next() == ScriptedOutcomes::passes) {
        return false;
    }
    errno = ENOMEM;
    return true;
}

} // namespace

extern "C" void* malloc(std::size_t size) noexcept {
    return isRefused() ? nullptr : __libc_malloc(size);
}

extern "C" void* calloc(std::size_t count, std::size_t size) noexcept {
    return isRefused() ? nullptr : __libc_calloc(count, size);
}

extern "C" void* realloc(void* memory, std::size_t size) noexcept {
    return isRefused() ? nullptr : __libc_realloc(memory, size);
}

// Every program enters its main function through this one.
extern "C" int __libc_start_main(Main main, int argc, char** argv, void (*init)(), void (*fini)(), // NOLINT
                                 void (*loaderFini)(), void* stackEnd) {
    mainOfProgram = main;
    const auto next = reinterpret_cast<Start>(dlsym(RTLD_NEXT, "__libc_start_main"));
    return next(mainWithFailures, argc, argv, init, fini, loaderFini, stackEnd);
}
