/// \file
/// Reads the lines of regular files in bounded memory.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace vadelwatch {

struct LineCount {
    std::uint64_t bytes = 0;
    std::uint64_t lineFeeds = 0;
    bool endsInLineFeed = false; ///< False for an empty file.

    /// Returns the number of lines after the header: the first line feed ends the header, and a last line without a
    /// line feed does not count.
    std::uint64_t nodeLines() const { return lineFeeds == 0 ? 0 : lineFeeds - 1; }
};

/// Reads the lines of a regular file. Opens no other kind of file and never waits: reading a FIFO would take its bytes from
/// the tool, and reading a device might never end. A file that cannot be read has no lines.
class NodeLineReader {
public:
    /// Longer lines are truncated, so memory stays bounded even in a file without a line feed.
    static constexpr std::size_t longestLine = std::size_t{1} << 19U;

    explicit NodeLineReader(const std::string& path);
    NodeLineReader(const NodeLineReader&) = delete;
    NodeLineReader& operator=(const NodeLineReader&) = delete;
    ~NodeLineReader();

    /// @param line receives the next line without its line feed. Valid until the next call.
    /// @return false at end of file and after a failure. Ignores a last line without a line feed, as the tool does.
    bool next(std::string_view& line);

    /// Returns true if the file could not be opened or not be read to its end.
    bool hasFailed() const { return failed; }

    /// Returns the number of the lines so far, and of the bytes that have been read for them.
    const LineCount& count() const { return counted; }

private:
    int descriptor;
    bool failed;
    LineCount counted;
    std::unique_ptr<char[]> buffer; // NOLINT(modernize-avoid-c-arrays)
    std::size_t lineStart = 0;
    std::size_t filled = 0;
};

} // namespace vadelwatch
