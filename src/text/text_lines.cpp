#include "text/text_lines.hpp"

#include <algorithm>
#include <vector>

namespace {

#if defined(_WIN32)
/// The platform's text mode has removed the carriage return already; a second one before the line feed stays.
constexpr bool lineEndKeepsCarriageReturn = false;
#else
constexpr bool lineEndKeepsCarriageReturn = true;
#endif

constexpr std::size_t blockSize = 65536;

} // namespace

void readTextLine(std::istream& input, std::string& line) {
    // std::getline leaves its string alone when the stream has failed already.
    line.clear();
    std::getline(input, line);
    const bool endedByLineFeed = input.good();
    if (lineEndKeepsCarriageReturn && endedByLineFeed && !line.empty() && line.back() == '\r') {
        line.pop_back();
    }
}

std::uint64_t countLineFeeds(std::istream& input) {
    std::vector<char> block(blockSize);
    std::uint64_t count = 0;
    // Through istream members only: iterators over the stream buffer throw where the file is a directory.
    while (input.good()) {
        input.read(block.data(), static_cast<std::streamsize>(block.size()));
        count += static_cast<std::uint64_t>(std::count(block.data(), block.data() + input.gcount(), '\n'));
    }
    return count;
}
