/// \file
/// Loaded before the C library, it lets chosen allocations of a process fail, as an exhausted memory does. They count
/// from the entry of `main` to its end: what libraries do before and after it is theirs to survive.
///
/// VADELCLIP_OUTCOMES         what comes of them: see scripted_outcomes.hpp
/// VADELCLIP_FAILING_SIZE     only allocations of at least so many bytes are looked at; absent for all
/// VADELCLIP_NOTED_SIZE       each release of at least so many bytes is a line on descriptor 3, among the recorded
///                            messages; absent for none
/// VADELCLIP_FAILING_PROGRAM  only in the program of this name, not in what it starts; absent for every program

#include "scripted_outcomes.hpp"

#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <malloc.h>

// The C library's own names for its allocator: looking it up by name would allocate.
extern "C" void* __libc_malloc(std::size_t size);                // NOLINT(bugprone-reserved-identifier)
extern "C" void* __libc_calloc(std::size_t, std::size_t);        // NOLINT(bugprone-reserved-identifier)
extern "C" void* __libc_realloc(void* memory, std::size_t size); // NOLINT(bugprone-reserved-identifier)
extern "C" void __libc_free(void* memory);                       // NOLINT(bugprone-reserved-identifier)

namespace {

vadelclip::ScriptedOutcomes outcomes;

using Main = int (*)(int, char**, char**);
using Start = int (*)(Main, int, char**, void (*)(), void (*)(), void (*)(), void*);

Main mainOfProgram = nullptr;

std::size_t smallestSize = SIZE_MAX;
std::size_t smallestNotedSize = SIZE_MAX;

std::size_t sizeSetting(const char* name, std::size_t absent) {
    const char* const size = std::getenv(name);
    return size == nullptr ? absent : std::strtoul(size, nullptr, 10);
}

int mainWithFailures(int argc, char** argv, char** environment) {
    const char* const program = std::getenv("VADELCLIP_FAILING_PROGRAM");
    if (program == nullptr || std::strcmp(program, program_invocation_short_name) == 0) {
        smallestSize = sizeSetting("VADELCLIP_FAILING_SIZE", 0);
        smallestNotedSize = sizeSetting("VADELCLIP_NOTED_SIZE", SIZE_MAX);
        outcomes.begin();
    }
    const int status = mainOfProgram(argc, argv, environment);
    smallestSize = SIZE_MAX;
    return status;
}

bool isRefused(std::size_t size) {
    if (size < smallestSize) {
        return false;
    }
    if (outcomes.next() == vadelclip::ScriptedOutcomes::passes) {
        return false;
    }
    errno = ENOMEM;
    return true;
}

} // namespace

extern "C" void* malloc(std::size_t size) noexcept {
    return isRefused(size) ? nullptr : __libc_malloc(size);
}

extern "C" void* calloc(std::size_t count, std::size_t size) noexcept {
    return isRefused(count * size) ? nullptr : __libc_calloc(count, size);
}

extern "C" void* realloc(void* memory, std::size_t size) noexcept {
    return isRefused(size) ? nullptr : __libc_realloc(memory, size);
}

extern "C" void free(void* memory) noexcept {
    if (malloc_usable_size(memory) >= smallestNotedSize) {
        dprintf(3, "free\n");
    }
    __libc_free(memory);
}

// Every program enters its main function through this one.
extern "C" int __libc_start_main(Main main, int argc, char** argv, void (*init)(), void (*fini)(), // NOLINT
                                 void (*loaderFini)(), void* stackEnd) {
    mainOfProgram = main;
    const auto next = reinterpret_cast<Start>(dlsym(RTLD_NEXT, "__libc_start_main"));
    return next(mainWithFailures, argc, argv, init, fini, loaderFini, stackEnd);
}
