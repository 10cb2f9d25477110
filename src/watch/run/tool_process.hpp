/// \file
/// Runs the tool as a child process, with the message channel on its descriptor 3 and its console in a pipe.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <sys/types.h>
#include <vector>

namespace vadelwatch {

/// How a process ended: with an exit status, or by a signal.
struct ToolEnd {
    int exitStatus = 0;
    int signal = 0; ///< 0 unless a signal ended it.

    bool operator==(const ToolEnd&) const = default;
};

/// A running tool. Both descriptors are pipes open for reading that do not block; they belong to this object.
class ToolProcess {
public:
    ToolProcess() = default;
    ToolProcess(const ToolProcess&) = delete;
    ToolProcess& operator=(const ToolProcess&) = delete;

    /// Ends a process that is still running with SIGTERM and waits for it.
    ~ToolProcess();

    /// Starts the program. Its standard error goes to the console, as its standard output does.
    ///
    /// @param arguments those after the program name.
    /// @return 0, or the errno of the call that failed; then there is no process.
    int start(const std::string& program, const std::vector<std::string>& arguments);

    int channel() const { return channelDescriptor; }
    int console() const { return consoleDescriptor; }

    /// Sends a signal, unless `pollEnd` has returned the end of the process.
    void forward(int signal) const;

    /// Returns the number of bytes that the process has read so far from all files, 0 if that is unknown.
    std::uint64_t bytesRead() const;

    /// Returns the name of a file that the process has open in this directory, empty if there is none.
    std::string openFileIn(const std::string& directory) const;

    /// Returns how the process ended, once, or nothing while it is running. Does not wait.
    std::optional<ToolEnd> pollEnd();

private:
    pid_t pid = -1;
    int channelDescriptor = -1;
    int consoleDescriptor = -1;
};

} // namespace vadelwatch
