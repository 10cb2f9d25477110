/// \file
/// Locks that the system releases when their process ends, so that what a killed process has left can be recognised.
#pragma once

#include <string>

namespace vadelshard {

/// A new directory, locked by this object and removed with it.
class LockedDirectory {
public:
    /// @param prefix path and beginning of the name. Six characters are added.
    explicit LockedDirectory(const std::string& prefix);
    LockedDirectory(const LockedDirectory&) = delete;
    LockedDirectory& operator=(const LockedDirectory&) = delete;
    ~LockedDirectory();

    const std::string& path() const { return directory; }

private:
    std::string directory;
    int lock = -1;
};

/// Returns true if the process that made the directory is running. Returns false if the file system has no locks.
bool isInUse(const std::string& lockedDirectory);

/// Removes the directories in `parent` whose name begins with `namePrefix` and that are not in use.
void removeAbandoned(const std::string& parent, const std::string& namePrefix);

/// Makes a work directory unless it is there, and holds its lock. Waits for another process that holds it.
class WorkLock {
public:
    /// @param mayCreate without it a missing directory is a `Failure`.
    WorkLock(const std::string& directory, bool mayCreate);
    WorkLock(const WorkLock&) = delete;
    WorkLock& operator=(const WorkLock&) = delete;
    ~WorkLock();

    /// Removes the directory if nothing but the lock is in it.
    void removeEmptyDirectory() const;

private:
    std::string directory;
    int lock = -1;
};

} // namespace vadelshard
