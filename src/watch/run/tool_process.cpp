#include "watch/run/tool_process.hpp"

#include "messages/executable_path.hpp"

#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>

namespace vadelwatch {

namespace {

constexpr int channelNumber = 3;

/// Above the numbers of the child's descriptors.
constexpr int lowestPrivateDescriptor = 10;

struct Pipe {
    int reading = -1;
    int writing = -1;
};

int movedUp(int descriptor) {
    const int moved = fcntl(descriptor, F_DUPFD_CLOEXEC, lowestPrivateDescriptor);
    close(descriptor);
    return moved;
}

/// Both ends are closed on exec.
Pipe makePipe() {
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) {
        return {};
    }
    return {movedUp(ends[0]), movedUp(ends[1])};
}

/// Becomes the tool. Runs in the child, which has only the thread that called `fork`: every call is async-signal-safe.
[[noreturn]] void becomeTool(char* const* words, const Pipe& channel, const Pipe& console, const Pipe& failure,
                             pid_t parent) {
    // The signal is sent when the parent's thread that called `fork` ends: its main thread. It cannot be ignored.
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (getppid() != parent) {
        _exit(1); // The parent ended before that call.
    }
    dup2(channel.writing, channelNumber);
    dup2(console.writing, STDOUT_FILENO);
    dup2(console.writing, STDERR_FILENO);
    // No signal is blocked in the tool, and SIGPIPE has its default action again.
    static_cast<void>(std::signal(SIGPIPE, SIG_DFL));
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
    execv(words[0], words);
    const int error = errno;
    const ssize_t written = write(failure.writing, &error, sizeof error);
    static_cast<void>(written);
    _exit(1);
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

// Not `posix_spawn`, which cannot ask for a signal at the end of the parent.
int ToolProcess::start(const std::string& program, const std::vector<std::string>& arguments) {
    const Pipe channelPipe = makePipe();
    const Pipe consolePipe = makePipe();
    const Pipe failurePipe = makePipe();
    channelDescriptor = channelPipe.reading;
    consoleDescriptor = consolePipe.reading;
    int error = EMFILE;
    if (channelPipe.writing != -1 && consolePipe.writing != -1 && failurePipe.writing != -1) {
        fcntl(channelDescriptor, F_SETFL, O_RDONLY | O_NONBLOCK);
        fcntl(consoleDescriptor, F_SETFL, O_RDONLY | O_NONBLOCK);
        std::vector<std::string> words{program};
        words.insert(words.end(), arguments.begin(), arguments.end());
        std::vector<char*> pointers;
        pointers.reserve(words.size() + 1);
        for (std::string& word : words) {
            pointers.push_back(word.data());
        }
        pointers.push_back(nullptr);
        const pid_t parent = getpid();
        pid = fork();
        error = pid == -1 ? errno : 0;
        if (pid == 0) {
            becomeTool(pointers.data(), channelPipe, consolePipe, failurePipe, parent);
        }
    }
    close(channelPipe.writing);
    close(consolePipe.writing);
    close(failurePipe.writing);
    // Ends without a byte when the child has become the tool.
    if (error == 0 && TEMP_FAILURE_RETRY(read(failurePipe.reading, &error, sizeof error)) > 0) {
        static_cast<void>(TEMP_FAILURE_RETRY(waitpid(pid, nullptr, 0)));
        pid = -1;
    }
    close(failurePipe.reading);
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
    if (WIFSIGNALED(status)) {
        return ToolEnd{0, WTERMSIG(status)};
    }
    return ToolEnd{WEXITSTATUS(status), 0};
}

std::string toolPathBesideExecutable() {
    const std::string executable = vadelclip::executablePath();
    return executable.empty() ? std::string()
                              : std::filesystem::path(executable).replace_filename("Vadelclip").string();
}

} // namespace vadelwatch
