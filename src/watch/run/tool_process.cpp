#include "watch/run/tool_process.hpp"

#include "process/child_process.hpp"

#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>

namespace vadelwatch {

namespace {

constexpr int channelNumber = 3;

struct Pipe {
    int reading = -1;
    int writing = -1;
};

/// Both ends are closed on exec.
Pipe makePipe() {
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) {
        return {};
    }
    return {vadelclip::movedUp(ends[0]), vadelclip::movedUp(ends[1])};
}

} // namespace

ToolProcess::~ToolProcess() {
    // First, because a tool that waits for space in a pipe can then end. Closing -1 has no effect, here and below.
    close(channelDescriptor);
    close(consoleDescriptor);
    if (pid != -1) {
        kill(pid, SIGTERM);
        static_cast<void>(TEMP_FAILURE_RETRY(waitpid(pid, nullptr, 0)));
    }
}

int ToolProcess::start(const std::string& program, const std::vector<std::string>& arguments) {
    const Pipe channelPipe = makePipe();
    const Pipe consolePipe = makePipe();
    channelDescriptor = channelPipe.reading;
    consoleDescriptor = consolePipe.reading;
    int error = EMFILE;
    if (channelPipe.writing != -1 && consolePipe.writing != -1) {
        fcntl(channelDescriptor, F_SETFL, O_RDONLY | O_NONBLOCK);
        fcntl(consoleDescriptor, F_SETFL, O_RDONLY | O_NONBLOCK);
        error = vadelclip::startChild(program, arguments,
                                      {{channelPipe.writing, channelNumber},
                                       {consolePipe.writing, STDOUT_FILENO},
                                       {consolePipe.writing, STDERR_FILENO}},
                                      pid);
    }
    close(channelPipe.writing);
    close(consolePipe.writing);
    return error;
}

void ToolProcess::forward(int signal) const {
    if (pid != -1) {
        kill(pid, signal);
    }
}

std::uint64_t ToolProcess::bytesRead() const {
    std::ifstream figures("/proc/" + std::to_string(pid) + "/io");
    std::string label;
    std::uint64_t bytes = 0;
    return figures >> label >> bytes && label == "rchar:" ? bytes : 0;
}

std::string ToolProcess::openFileIn(const std::string& directory) const {
    namespace fs = std::filesystem;
    std::error_code error;
    for (fs::directory_iterator entry("/proc/" + std::to_string(pid) + "/fd", error), end; !error && entry != end;
         entry.increment(error)) {
        std::error_code ignored;
        const fs::path target = fs::read_symlink(entry->path(), ignored);
        if (target.is_absolute() && fs::equivalent(target.parent_path(), directory, ignored)) {
            return target.filename().string();
        }
    }
    return {};
}

std::optional<ToolEnd> ToolProcess::pollEnd() {
    int status = 0;
    if (pid == -1 || waitpid(pid, &status, WNOHANG) != pid) {
        return std::nullopt;
    }
    pid = -1;
    return WIFSIGNALED(status) ? ToolEnd{0, WTERMSIG(status)} : ToolEnd{WEXITSTATUS(status), 0};
}

} // namespace vadelwatch
