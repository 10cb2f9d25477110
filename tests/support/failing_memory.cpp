/// \file
/// Loaded before the C library, this library makes chosen allocations of a process fail. Allocations before the start
/// and after the end of `main` do not count, because the tool cannot handle their failures.
///
/// VADELCLIP_OUTCOMES         outcomes of the allocations: see scripted_outcomes.hpp
/// VADELCLIP_FAILING_SIZE     only allocations of at least this many bytes; absent for all
/// VADELCLIP_NOTED_SIZE       writes a line to descriptor 3, among the recorded messages, for each release of at least
///                            this many bytes; absent for none
/// VADELCLIP_FAILING_PROGRAM  only in the program of this name, not in its children; absent for every program

#include "scripted_outcomes.hpp"

#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <malloc.h>

// Internal names of the allocator of the C library, because a lookup by name would allocate.
extern "C" void* __libc_malloc(std::size_t size);                // NOLINT(bugprone-reserved-identifier)
extern "C" void* __libc_calloc(std::size_t, std::size_t);        // NOLINT(bugprone-reserved-identifier)
extern "C" void* __libc_realloc(void* memory, std::size_t size); // NOLINT(bugprone-reserved-identifier)
extern "C" void __libc_free(void* memory);                       // NOLINT(bugprone-reserved-identifier)

namespace {

vadelclip::ScriptedOutcomes outcomes;

using Main = int (*)(int, char**, char**);
using Start = int (*)(Main, int, char**, void (*)(), void (*)(), void (*)(), void*);

Main mainOfProgram = nullptr;

std::size_t minFailingSize = SIZE_MAX;
std::size_t minNotedSize = SIZE_MAX;

std::size_t sizeSetting(const char* name, std::size_t absent) {
    const char* const size = std::getenv(name);
    return size == nullptr ? absent : std::strtoul(size, nullptr, 10);
}

int mainWithFailures(int argc, char** argv, char** environment) {
    const char* const program = std::getenv("VADELCLIP_FAILING_PROGRAM");
    if (program == nullptr || std::strcmp(program, program_invocation_short_name) == 0) {
        minFailingSize = sizeSetting("VADELCLIP_FAILING_SIZE", 0);
        minNotedSize = sizeSetting("VADELCLIP_NOTED_SIZE", SIZE_MAX);
        outcomes.start();
    }
    const int status = mainOfProgram(argc, argv, environment);
    minFailingSize = SIZE_MAX;
    return status;
}

bool isRefused(std::size_t size) {
    if (size < minFailingSize) {
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
    if (malloc_usable_size(memory) >= minNotedSize) {
        dprintf(3, "free\n");
    }
    __libc_free(memory);
}

// The start code of every program calls this function, which calls main.
extern "C" int __libc_start_main(Main main, int argc, char** argv, void (*init)(), void (*fini)(), // NOLINT
                                 void (*loaderFini)(), void* stackEnd) {
    mainOfProgram = main;
    const auto next = reinterpret_cast<Start>(dlsym(RTLD_NEXT, "__libc_start_main"));
    return next(mainWithFailures, argc, argv, init, fini, loaderFini, stackEnd);
}
