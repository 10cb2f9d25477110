/// \file
/// Files whose every error is a `Failure`: nothing is lost silently between a node file and the merged output.
#pragma once

#include "process/file_state.hpp"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace vadelshard {

using vadelclip::FileState;
using vadelclip::stateOf;

/// An open file. Closed by the destructor, without a report; `close` reports.
class OpenFile {
public:
    /// Does not wait for the writer of a FIFO.
    ///
    /// @throws Failure, as all members do.
    static OpenFile forReading(const std::string& path);

    /// Creates or empties the file.
    static OpenFile forWriting(const std::string& path);

    OpenFile(const OpenFile&) = delete;
    OpenFile& operator=(const OpenFile&) = delete;
    ~OpenFile();

    /// @return a size of 0 for anything but a regular file.
    FileState state() const;

    /// Returns up to `size` bytes from a position, fewer only at the end of the file.
    std::string read(std::uint64_t position, std::size_t size) const;

    /// Calls `consume` with the bytes from `begin` to `end`, block by block. Fails if the file ends before `end`.
    void readBlocks(std::uint64_t begin, std::uint64_t end,
                    const std::function<void(std::string_view block)>& consume) const;

    void append(std::string_view bytes);

    /// Appends the bytes from `begin` to `end` of another file. Fails if it ends before `end`.
    void append(const OpenFile& source, std::uint64_t begin, std::uint64_t end);

    /// Reports a write that failed late, as network file systems do.
    void close();

    int number() const { return descriptor; }

private:
    std::size_t readInto(char* bytes, std::uint64_t position, std::size_t size) const;

    OpenFile(const std::string& filePath, int openDescriptor) : path(filePath), descriptor(openDescriptor) {}

    std::string path;
    int descriptor;
};

/// Returns the whole content of a file.
std::string readWholeFile(const std::string& path);

/// Writes a whole file. This is not atomic: the caller publishes the file by a rename.
void writeWholeFile(const std::string& path, std::string_view content);

/// Moves a file. Copies it if the new place is in another file system.
void moveFile(const std::string& from, const std::string& to);

/// Creates a hard link, or a copy where links are refused.
void linkOrCopy(const std::string& from, const std::string& to);

void makeDirectory(const std::string& path);

/// Removes a file, or a directory with its content. It may be missing.
void removeAll(const std::string& path);

/// Returns true if this process may open the file for reading. The answer may change at any time.
bool isReadable(const std::string& path);

/// Returns true if something is at this path, a dangling link included.
bool exists(const std::string& path);

} // namespace vadelshard
