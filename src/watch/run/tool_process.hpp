/// \file
/// The tool as a child process: started with the message channel on its descriptor 3 and its console in a pipe.
#pragma once

#include "watch/watch_options.hpp"

#include <optional>
#include <string>
#include <sys/types.h>
#include <vector>

namespace vadelwatch {

/// How a process ended: by itself with a status, or by a signal.
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

    /// Never leaves a process behind: one that has not been seen to end is asked to by SIGTERM and waited for.
    ~ToolProcess();

    /// Starts the program; its standard error goes the way of its standard output.
    ///
    /// @param arguments what stands behind the program name.
    /// @return 0, or the errno of what failed; then there is no process.
    int start(const std::string& program, const std::vector<std::string>& arguments);

    int channel() const { return channelDescriptor; }
    int console() const { return consoleDescriptor; }

    /// Sends a signal, unless the process has been waited for already.
    void forward(int signal) const;

    /// Asks whether the process has ended, without waiting for it.
    std::optional<ToolEnd> pollEnd();

private:
    pid_t pid = -1;
    int channelDescriptor = -1;
    int consoleDescriptor = -1;
};

/// The path of `Vadelclip` in the directory of the running executable; empty if that is unknown.
std::string toolPathBesideExecutable();

/// The tool's arguments: three positional ones first, options behind them.
std::vector<std::string> toolArguments(const WatchOptions& options);

} // namespace vadelwatch
