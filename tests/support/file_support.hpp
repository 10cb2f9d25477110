/// \file
/// Files for tests: a directory that removes itself, its whole content for comparison, and a file whose content differs
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

/// The entries of a directory: relative path to content. The key of a directory ends in "/", its content is empty.
/// The content of a symbolic link is "link", the content of any other special file is "special".
using FileTree = std::map<std::string, std::string>;

/// The separator that the platform puts between the parts of a joined path.
constexpr char joint = static_cast<char>(std::filesystem::path::preferred_separator);

/// The bytes that some editors put before a text in UTF-8.
inline const std::string byteOrderMark = "\xEF\xBB\xBF";

/// A new directory that its destructor removes with all content.
class TemporaryDirectory {
public:
    TemporaryDirectory();
    TemporaryDirectory(const TemporaryDirectory&) = delete;
    TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;
    ~TemporaryDirectory();

    const std::string& path() const { return directory; }

    /// Returns the full path of a name in the directory. The file need not exist.
    std::string pathOf(const std::string& name) const;

    /// Writes a file and returns its full path. Creates its directories.
    std::string write(const std::string& name, const std::string& content) const;

    /// Creates a directory and its parents, and returns its full path.
    std::string makeDirectory(const std::string& name) const;

    /// Creates a symbolic link and returns its full path. The target is used unchanged and need not exist.
    std::string makeLink(const std::string& name, const std::string& target) const;

    FileTree tree() const;

private:
    std::string directory;
};

/// Returns the bytes of a file. The test fails if it cannot be read.
std::string readFile(const std::string& path);

/// Reverts text mode, which writes a carriage return before each line feed on Windows.
///
/// @return the bytes before text mode; a line feed that text mode cannot have written becomes "<bare LF>".
std::string withoutTextMode(const std::string& bytes);

/// The same for the content of every file.
FileTree withoutTextMode(const FileTree& tree);

/// Bytes to write, or a function to call.
using ServingStep = std::variant<std::string, std::function<void()>>;

/// A file whose content differs from one opening to the next. Its path is a link to a FIFO, a new one for each opening.
///
/// The steps of an opening run in order, on another thread, after the file has been opened for reading. The test fails
/// if the file is opened less often than `openings` has entries. A further opening fails. POSIX only.
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
