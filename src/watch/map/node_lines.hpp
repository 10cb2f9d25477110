/// \file
/// The lines of a node file for the map: read block by block, so that a file of any size takes the same memory.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace vadelwatch {

/// Hands out the lines of a regular file, one after another. Anything else has none, and neither has a file that cannot
/// be read: a device or a FIFO in an output's place would never end.
class NodeLineReader {
public:
    /// So much of a line is handed out, and so much memory is enough for a file without any line feed.
    static constexpr std::size_t longestLine = std::size_t{1} << 20U;

    /// The file is opened here and closed with the reader.
    explicit NodeLineReader(const std::string& path);
    NodeLineReader(const NodeLineReader&) = delete;
    NodeLineReader& operator=(const NodeLineReader&) = delete;
    ~NodeLineReader();

    /// @param line receives the next line without its line feed and without carriage returns before it: input and
    ///             output of a run may differ in these. Of a line beyond `longestLine` only its beginning. Valid until
    ///             the next call.
    /// @return false at the end. A last line without a line feed is not handed out, as it is not read in a run either.
    bool next(std::string_view& line);

private:
    bool readBlock();

    int descriptor;
    std::vector<char> buffer;
    std::size_t lineStart = 0;
    std::size_t filled = 0;
};

} // namespace vadelwatch
