/// \file
/// Files of a test: a directory that goes away by itself, its whole content for comparison, and a file that changes
/// from one opening to the next.
#pragma once

#include <atomic>
#include <filesystem>
#include <functional>
#include <map>
#include <string>
#include <thread>
#include <variant>
#include <vector>

namespace vadelclip {

/// What stands in a directory: relative path to content. A directory's key ends in "/", its content is empty.
/// A symbolic link has the content "link", anything else that is no file "special".
using FileTree = std::map<std::string, std::string>;

/// What the platform puts between the parts of a path that are joined.
constexpr char joint = static_cast<char>(std::filesystem::path::preferred_separator);

/// What some editors put in front of a text in UTF-8.
inline const std::string byteOrderMark = "\xEF\xBB\xBF";

/// A fresh directory, removed at the end with everything in it.
class TemporaryDirectory {
public:
    TemporaryDirectory();
    TemporaryDirectory(const TemporaryDirectory&) = delete;
    TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;
    ~TemporaryDirectory();

    const std::string& path() const { return directory; }

    /// Full path of a name in the directory, whether it exists or not.
    std::string pathOf(const std::string& name) const;

    /// Writes a file, its directories included, and returns its full path.
    std::string write(const std::string& name, const std::string& content) const;

    /// Makes a directory, those above it included, and returns its full path.
    std::string makeDirectory(const std::string& name) const;

    /// Makes a symbolic link and returns its full path. The target is taken as it stands and need not exist.
    std::string makeLink(const std::string& name, const std::string& target) const;

    FileTree tree() const;

private:
    std::string directory;
};

/// Gives the bytes of a file; the test fails if it cannot be read.
std::string readFile(const std::string& path);

/// Undoes what the platform's text mode does to bytes that are written through it: a line feed becomes the pair.
///
/// @return the bytes as they were handed over; a line feed that text mode cannot have written becomes "<bare LF>".
std::string withoutTextMode(const std::string& bytes);

/// The same for the content of every file.
FileTree withoutTextMode(const FileTree& tree);

/// Bytes to hand over, or something to do in between.
using ServingStep = std::variant<std::string, std::function<void()>>;

/// A file that holds something else at each opening. In truth its path is a link to a FIFO, a new one for each opening.
///
/// The steps of an opening run in order, on another thread, once the file has been opened for reading. The test fails
/// if the file is not opened as often as there are openings; one opening more finds nothing. POSIX only.
class ServedFile {
public:
    ServedFile(const std::string& path, std::vector<std::vector<ServingStep>> openings);
    ServedFile(const ServedFile&) = delete;
    ServedFile& operator=(const ServedFile&) = delete;
    ~ServedFile();

private:
    void serve();
    void serveOnce(int descriptor, const std::vector<ServingStep>& steps);

    TemporaryDirectory aside;
    std::string path;
    std::string fifo;
    std::vector<std::vector<ServingStep>> openings;
    std::atomic<std::size_t> opened = 0;
    std::atomic<bool> abandoned = false;
    std::thread server;
};

} // namespace vadelclip
