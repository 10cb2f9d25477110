/// \file
/// Reads the outcomes of the calls of a process from the environment, for libraries that tests load before the C
/// library. Nothing here allocates, so that the outcomes can also be those of the allocator.
#pragma once

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <unistd.h>

namespace vadelclip {

/// VADELCLIP_OUTCOMES has one entry for each chosen call, in order. Calls after the last entry pass.
///
///     .      the call passes
///     S      the process stops itself before the call, which passes as soon as the process is continued
///     -28    it fails with this error number
///     3      it reads or writes at most this many bytes
///     -28*   it fails, and so do all later calls
class ScriptedOutcomes {
public:
    static constexpr long passes = 0;

    ScriptedOutcomes() = default;
    ScriptedOutcomes(const ScriptedOutcomes&) = delete;
    ScriptedOutcomes& operator=(const ScriptedOutcomes&) = delete;

    /// Writes the number of calls, which is the number of calls that can fail, to the file VADELCLIP_CALL_COUNT at the end
    /// of the process.
    ~ScriptedOutcomes() {
        if (const char* const path = std::getenv("VADELCLIP_CALL_COUNT")) {
            const int descriptor = open(path, O_WRONLY | O_CREAT | O_TRUNC, 0600);
            dprintf(descriptor, "%ld", calls);
            close(descriptor);
        }
    }

    /// Reads the entries. Every call before this one passes.
    void start() {
        const char* const script = std::getenv("VADELCLIP_OUTCOMES");
        position = script == nullptr ? "" : script;
        calls = 0;
    }

    /// Returns 0 for a call that passes, the max number of bytes of a limited call, or minus the error number.
    long next() {
        ++calls;
        while (*position == ' ') {
            ++position;
        }
        if (*position == '.' || *position == 'S') {
            if (*position++ == 'S') {
                static_cast<void>(std::raise(SIGSTOP));
            }
            return passes;
        }
        char* end = nullptr;
        const long outcome = std::strtol(position, &end, 10);
        if (*end != '*') {
            position = end;
        }
        return outcome;
    }

private:
    const char* position = "";
    long calls = 0;
};

} // namespace vadelclip
