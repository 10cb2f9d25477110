/// \file
/// For the libraries that tests load in front of the C library: what each call of a process comes to, read from the
/// environment. Nothing here allocates, so that the allocator itself can be scripted.
#pragma once

#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <unistd.h>

namespace vadelclip {

/// VADELCLIP_OUTCOMES holds one entry for each call that is looked at, in their order. Calls behind the last entry pass.
///
///     .      the call passes
///     -28    it fails with this error number
///     3      it takes at most so many bytes
///     -28*   it fails, and so do all that follow
class ScriptedOutcomes {
public:
    static constexpr long passes = 0;

    ScriptedOutcomes() = default;
    ScriptedOutcomes(const ScriptedOutcomes&) = delete;
    ScriptedOutcomes& operator=(const ScriptedOutcomes&) = delete;

    /// At the end of the process the number of calls goes to the file VADELCLIP_CALL_COUNT, so that a test knows how
    /// many there are to fail.
    ~ScriptedOutcomes() {
        if (const char* const path = std::getenv("VADELCLIP_CALL_COUNT")) {
            const int descriptor = open(path, O_WRONLY | O_CREAT | O_TRUNC, 0600);
            dprintf(descriptor, "%ld", calls);
            close(descriptor);
        }
    }

    /// Until then there are no entries, so every call passes.
    void begin() {
        const char* const script = std::getenv("VADELCLIP_OUTCOMES");
        position = script == nullptr ? "" : script;
        calls = 0;
    }

    /// @return 0 for a call that passes, the most bytes it may take, or minus its error number
    long next() {
        ++calls;
        while (*position == ' ') {
            ++position;
        }
        if (*position == '.') {
            ++position;
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
