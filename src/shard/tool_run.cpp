#include "shard/tool_run.hpp"

#include "process/child_process.hpp"
#include "shard/interruption.hpp"
#include "shard/messages.hpp"
#include "shard/open_file.hpp"

#include <cerrno>
#include <sys/types.h>
#include <sys/wait.h>
#include <unistd.h>

namespace vadelshard {

namespace {

constexpr int channelNumber = 3;
constexpr int statusOfSignals = 128; // as in shells

int run(const std::vector<std::string>& arguments, const std::vector<vadelclip::ChildDescriptor>& descriptors) {
    const std::string program = vadelclip::toolPathNextToExecutable();
    pid_t pid = -1;
    {
        const BlockedInterruption blocked;
        failIfInterrupted(); // A later signal finds the process to kill.
        const int error = vadelclip::startChild(program, arguments, descriptors, pid);
        if (error != 0) {
            throw fileFailure(program, error);
        }
        setProcessToInterrupt(pid);
    }
    int status = 0;
    const auto ended = TEMP_FAILURE_RETRY(waitpid(pid, &status, 0));
    setProcessToInterrupt(-1);
    if (ended == -1) {
        throw fileFailure(program, errno);
    }
    failIfInterrupted();
    return WIFSIGNALED(status) ? statusOfSignals + WTERMSIG(status) : WEXITSTATUS(status);
}

} // namespace

int runTool(const std::vector<std::string>& arguments) {
    return run(arguments, {});
}

int runTool(const std::vector<std::string>& arguments, const std::string& consoleFile, const std::string& messageFile) {
    const OpenFile console = OpenFile::forWriting(consoleFile);
    const OpenFile messages = OpenFile::forWriting(messageFile);
    return run(
        arguments,
        {{messages.number(), channelNumber}, {console.number(), STDOUT_FILENO}, {console.number(), STDERR_FILENO}});
}

} // namespace vadelshard
