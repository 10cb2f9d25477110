#include "process/child_process.hpp"

#include "messages/executable_path.hpp"

#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace vadelclip {

namespace {

/// Becomes the program. Runs in the child, which has only the thread that called `fork`: every call is
/// async-signal-safe.
[[noreturn]] void becomeProgram(char* const* words, const std::vector<ChildDescriptor>& descriptors, int failure,
                                pid_t parent) {
    // The signal is sent when the parent's thread that called `fork` ends: its main thread. It cannot be ignored.
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (getppid() != parent) {
        _exit(1); // The parent ended before `prctl`.
    }
    for (const ChildDescriptor& descriptor : descriptors) {
        dup2(descriptor.source, descriptor.number);
    }
    static_cast<void>(std::signal(SIGPIPE, SIG_DFL));
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
    execv(words[0], words);
    const int error = errno;
    const ssize_t written = write(failure, &error, sizeof error);
    static_cast<void>(written);
    _exit(1);
}

} // namespace

int movedUp(int descriptor) {
    const int moved = fcntl(descriptor, F_DUPFD_CLOEXEC, lowestPrivateDescriptor);
    close(descriptor);
    return moved;
}

// Does not use `posix_spawn`, which cannot request a signal at the end of the parent.
int startChild(const std::string& program, const std::vector<std::string>& arguments,
               const std::vector<ChildDescriptor>& descriptors, pid_t& pid) {
    std::vector<std::string> words{program};
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<char*> pointers;
    pointers.reserve(words.size() + 1);
    for (std::string& word : words) {
        pointers.push_back(word.data());
    }
    pointers.push_back(nullptr);
    std::array<int, 2> failure{};
    if (pipe2(failure.data(), O_CLOEXEC) != 0) {
        return errno;
    }
    const int writing = movedUp(failure[1]);
    if (writing == -1) {
        // Without this end a program that cannot be run would count as started.
        close(failure[0]);
        return EMFILE;
    }
    const pid_t parent = getpid();
    pid = fork();
    int error = pid == -1 ? errno : 0;
    if (pid == 0) {
        becomeProgram(pointers.data(), descriptors, writing, parent);
    }
    close(writing);
    // The pipe ends without a byte if the child has become the program.
    if (error == 0 && TEMP_FAILURE_RETRY(read(failure[0], &error, sizeof error)) > 0) {
        static_cast<void>(TEMP_FAILURE_RETRY(waitpid(pid, nullptr, 0)));
        pid = -1;
    }
    close(failure[0]);
    return error;
}

std::string toolPathNextToExecutable() {
    const std::string executable = executablePath();
    return executable.empty() ? std::string()
                              : std::filesystem::path(executable).replace_filename("Vadelclip").string();
}

} // namespace vadelclip
