#include "watch/run/tool_process.hpp"

#include "messages/executable_path.hpp"

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <exception>
#include <fcntl.h>
#include <filesystem>
#include <spawn.h>
#include <sys/wait.h>
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

/// Both ends are closed on exec. Only the reading end does not block.
Pipe makePipe() {
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) {
        return {};
    }
    const Pipe made{movedUp(ends[0]), movedUp(ends[1])};
    if (made.reading != -1) {
        fcntl(made.reading, F_SETFL, O_RDONLY | O_NONBLOCK);
    }
    return made;
}

void closeIfOpen(int descriptor) {
    if (descriptor != -1) {
        close(descriptor);
    }
}

/// How the child's descriptors and signals differ from ours.
class SpawnSettings {
public:
    SpawnSettings(const Pipe& channel, const Pipe& console) {
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_adddup2(&actions, channel.writing, channelNumber);
        posix_spawn_file_actions_adddup2(&actions, console.writing, STDOUT_FILENO);
        posix_spawn_file_actions_adddup2(&actions, console.writing, STDERR_FILENO);

        posix_spawnattr_init(&attributes);
        sigset_t signals;
        sigemptyset(&signals);
        // No signal is blocked in the tool, and SIGPIPE has its default action again.
        posix_spawnattr_setsigmask(&attributes, &signals);
        sigaddset(&signals, SIGPIPE);
        posix_spawnattr_setsigdefault(&attributes, &signals);
        posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
    }
    SpawnSettings(const SpawnSettings&) = delete;
    SpawnSettings& operator=(const SpawnSettings&) = delete;
    ~SpawnSettings() {
        posix_spawn_file_actions_destroy(&actions);
        posix_spawnattr_destroy(&attributes);
    }

    posix_spawn_file_actions_t actions{};
    posix_spawnattr_t attributes{};
};

void endProcess(pid_t pid) {
    kill(pid, SIGTERM);
    static_cast<void>(TEMP_FAILURE_RETRY(waitpid(pid, nullptr, 0)));
}

/// For a process that ends without its destructors: a library calls std::terminate if an exception, for example for
/// missing memory, leaves a function that is declared not to throw.
std::atomic<pid_t> runningTool = -1;
std::terminate_handler formerHandler = nullptr;

void terminateWithTool() {
    if (runningTool != -1) {
        endProcess(runningTool);
    }
    formerHandler();
}

void endWithProcess(pid_t pid) {
    runningTool = pid;
    if (formerHandler == nullptr) {
        formerHandler = std::set_terminate(terminateWithTool);
    }
}

} // namespace

ToolProcess::~ToolProcess() {
    // First, because a tool that waits for space in a pipe can then end.
    closeIfOpen(channelDescriptor);
    closeIfOpen(consoleDescriptor);
    if (pid != -1) {
        endProcess(pid);
        runningTool = -1;
    }
}

int ToolProcess::start(const std::string& program, const std::vector<std::string>& arguments) {
    const Pipe channelPipe = makePipe();
    const Pipe consolePipe = makePipe();
    channelDescriptor = channelPipe.reading;
    consoleDescriptor = consolePipe.reading;
    int error = EMFILE;
    if (channelPipe.writing != -1 && consolePipe.writing != -1) {
        std::vector<std::string> words{program};
        words.insert(words.end(), arguments.begin(), arguments.end());
        std::vector<char*> pointers;
        pointers.reserve(words.size() + 1);
        for (std::string& word : words) {
            pointers.push_back(word.data());
        }
        pointers.push_back(nullptr);
        const SpawnSettings settings(channelPipe, consolePipe);
        error = posix_spawn(&pid, program.c_str(), &settings.actions, &settings.attributes, pointers.data(), environ);
    }
    closeIfOpen(channelPipe.writing);
    closeIfOpen(consolePipe.writing);
    if (error != 0) {
        pid = -1;
    } else {
        endWithProcess(pid);
    }
    return error;
}

void ToolProcess::forward(int signal) const {
    if (pid != -1) {
        kill(pid, signal);
    }
}

std::optional<ToolEnd> ToolProcess::pollEnd() {
    int status = 0;
    if (pid == -1 || waitpid(pid, &status, WNOHANG) != pid) {
        return std::nullopt;
    }
    pid = -1;
    runningTool = -1;
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
