/// \file
/// Lines of a text file, read in place: no copy and no allocation for a line that lies in the buffer as a whole.
#pragma once

#include <fstream>
#include <istream>
#include <string>
#include <string_view>
#include <vector>

namespace vadelclip {

/// Reads a file line by line in text mode, with the same lines, the same order of system reads (as much as is there,
/// never waiting for a full block) and the same silence about failures as `readTextLine` on a file stream.
class LineReader {
public:
    /// Opens the file. A file that cannot be opened looks empty.
    explicit LineReader(const std::string& path);

    /// Reads the next line, without its line end.
    ///
    /// @return a view into the reader, valid until the next call. Empty where nothing can be read. The last line of
    ///         a file may lack its line feed; a carriage return at its end stays.
    std::string_view nextLine();

    /// Gives the line of the last call of `nextLine` with one line feed behind it, whatever its line end was.
    std::string_view lineWithLineFeed();

    void close();

private:
    /// A file buffer that shows its get area.
    class Buffer : public std::filebuf {
    public:
        char* position() const { return gptr(); }
        char* limit() const { return egptr(); }
        void setPosition(char* position) { setg(eback(), position, egptr()); }
    };

    char* findLineFeed();
    bool refill();
    void collectLine();

    std::vector<char> block;
    Buffer buffer;
    std::istream stream; ///< Over `buffer`; turns its exceptions into a state.
    std::string collected;
    char* lineStart = nullptr;
    std::size_t lineLength = 0;
};

} // namespace vadelclip
