/// \file
/// Reads lines of a text file in place: a line that is completely in the buffer is not copied and not allocated.
#pragma once

#include "text/text_mode.hpp"

#include <cstddef>
#include <cstring>
#include <fstream>
#include <istream>
#include <string>
#include <string_view>
#include <vector>

namespace vadelclip {

/// Reads a file line by line in text mode.
///
/// Returns the same lines as `readTextLine` on a file stream and ignores failures like it. A system read takes the
/// bytes that are available and never waits for a full block, so a FIFO or a growing file is read line by line.
class LineReader {
public:
    /// Opens the file. A file that cannot be opened behaves like an empty one.
    explicit LineReader(const std::string& path);

    /// Reads the next line, without its line end.
    ///
    /// @return a view into the reader, valid until the next call. It is empty if nothing can be read. The last line
    ///         of a file may lack its line feed; then a carriage return at its end is part of the line.
    std::string_view nextLine();

    /// Reads the next line if it is completely in the buffer. Views of lines read before stay valid.
    ///
    /// @return false if it is not: then only `nextLine` can read it.
    bool takeBufferedLine() {
        char* const lineFeed = findLineFeed();
        if (lineFeed == nullptr) {
            return false;
        }
        lineStart = buffer.position();
        lineLength = static_cast<std::size_t>(lineFeed - lineStart);
        buffer.setPosition(lineFeed + 1);
        lineLength -= carriageReturnsToDrop(line());
        return true;
    }

    /// Returns the line that was read last, without its line end.
    std::string_view line() const { return {lineStart, lineLength}; }

    /// Returns the line that was read last with one line feed in place of its line end.
    std::string_view lineWithLineFeed();

    void close();

private:
    /// A file buffer with access to its get area.
    class Buffer : public std::filebuf {
    public:
        char* position() const { return gptr(); }
        char* limit() const { return egptr(); }
        void setPosition(char* position) { setg(eback(), position, egptr()); }
    };

    char* findLineFeed() const {
        const auto available = static_cast<std::size_t>(buffer.limit() - buffer.position());
        return available == 0 ? nullptr : static_cast<char*>(std::memchr(buffer.position(), '\n', available));
    }

    bool refill();
    void collectLine();

    std::vector<char> block;
    Buffer buffer;
    std::istream stream; ///< Uses `buffer` and turns its exceptions into a state.
    std::string collected;
    char* lineStart = nullptr;
    std::size_t lineLength = 0;
};

} // namespace vadelclip
