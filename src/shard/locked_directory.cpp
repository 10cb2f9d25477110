#include "shard/locked_directory.hpp"

#include "shard/interruption.hpp"
#include "shard/messages.hpp"
#include "shard/open_file.hpp"

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <sys/file.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace vadelshard {

namespace {

enum class LockResult { locked, unsupported, inUse, gone };

constexpr mode_t lockPermissions = 0666;

/// Returns true if the path still leads to the open file: another process may have removed it before the lock was free.
bool isStillThere(int descriptor, const std::string& path) {
    struct stat open {};
    struct stat named {};
    return fstat(descriptor, &open) == 0 && stat(path.c_str(), &named) == 0 && open.st_ino == named.st_ino &&
           open.st_dev == named.st_dev;
}

/// Opens and locks the file `lock` of a directory.
///
/// @param flags O_CREAT to make the file if it is missing, otherwise 0.
/// @param operation LOCK_EX, or LOCK_SH to find out if another process holds it; with LOCK_NB without waiting.
/// @throws Failure if this process was asked to end while it waited.
LockResult lockDirectory(const std::string& directory, int flags, int operation, int& descriptor) {
    const std::string path = directory + "/lock";
    descriptor = open(path.c_str(), O_RDWR | O_CLOEXEC | flags, lockPermissions);
    if (descriptor == -1) {
        if (errno == ENOENT || errno == ENOTDIR) {
            return LockResult::gone;
        }
        throw fileFailure(path, errno);
    }
    int result = 0;
    while ((result = flock(descriptor, operation)) != 0 && errno == EINTR) {
        failIfInterrupted();
    }
    const bool isLocked = result == 0;
    const bool isTaken = !isLocked && errno == EWOULDBLOCK;
    if (!isTaken && isStillThere(descriptor, path)) {
        return isLocked ? LockResult::locked : LockResult::unsupported;
    }
    close(descriptor);
    descriptor = -1;
    return isTaken ? LockResult::inUse : LockResult::gone;
}

/// Waits for the lock. Works without it where the file system has no locks: every result is published by a rename.
///
/// @return false if the directory is gone.
bool waitForLock(const std::string& directory, int& descriptor) {
    return lockDirectory(directory, O_CREAT, LOCK_EX, descriptor) != LockResult::gone;
}

/// Returns true if this path is that of a file or a dangling link. `mkdir` and `open` then never succeed.
bool isTakenByFile(const std::string& path) {
    namespace fs = std::filesystem;
    std::error_code ignored;
    const fs::file_type type = fs::symlink_status(path, ignored).type();
    return type != fs::file_type::not_found && type != fs::file_type::directory && !fs::is_directory(path, ignored);
}

void removeIgnoringErrors(const std::string& directory) {
    std::error_code ignored;
    std::filesystem::remove_all(directory, ignored);
}

} // namespace

LockedDirectory::LockedDirectory(const std::string& prefix) {
    do {
        directory = prefix + "XXXXXX";
        if (mkdtemp(directory.data()) == nullptr) {
            throw fileFailure(prefix, errno);
        }
        // Gone if `removeAbandoned` of another process was faster than the lock.
    } while (!waitForLock(directory, lock));
}

LockedDirectory::~LockedDirectory() {
    removeIgnoringErrors(directory);
    close(lock);
}

bool isInUse(const std::string& lockedDirectory) {
    int descriptor = -1;
    const LockResult result = lockDirectory(lockedDirectory, 0, LOCK_SH | LOCK_NB, descriptor);
    if (descriptor != -1) {
        close(descriptor);
    }
    return result == LockResult::inUse;
}

void removeAbandoned(const std::string& parent, const std::string& namePrefix) {
    std::error_code error;
    for (std::filesystem::directory_iterator entry(parent, error), end; !error && entry != end;
         entry.increment(error)) {
        const std::string path = entry->path().string();
        int descriptor = -1;
        if (!entry->path().filename().string().starts_with(namePrefix)) {
            continue;
        }
        if (lockDirectory(path, O_CREAT, LOCK_EX | LOCK_NB, descriptor) == LockResult::locked) {
            // Where locks do not reach other hosts, its process may run there. After a rename that process fails, and cannot
            // publish what is removed at the same time.
            const std::string doomed = path + ".removed";
            std::error_code ignored;
            std::filesystem::rename(path, doomed, ignored);
            removeIgnoringErrors(doomed);
        }
        if (descriptor != -1) {
            close(descriptor);
        }
    }
}

WorkLock::WorkLock(const std::string& workDirectory, bool mayCreate) : directory(workDirectory) {
    do {
        if (mayCreate && mkdir(directory.c_str(), S_IRWXU | S_IRWXG | S_IRWXO) != 0 && errno != EEXIST) {
            throw fileFailure(directory, errno);
        }
        if (!mayCreate && !exists(directory)) {
            throw fileFailure(directory, ENOENT);
        }
        if (isTakenByFile(directory)) {
            throw fileFailure(directory, ENOTDIR);
        }
    } while (!waitForLock(directory, lock));
}

WorkLock::~WorkLock() {
    close(lock);
}

void WorkLock::removeEmptyDirectory() const {
    std::error_code ignored;
    for (const auto& entry : std::filesystem::directory_iterator(directory, ignored)) {
        if (entry.path().filename() != "lock") {
            return;
        }
    }
    removeIgnoringErrors(directory);
}

} // namespace vadelshard
