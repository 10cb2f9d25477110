#include "text/text_lines.hpp"

#include "text/text_mode.hpp"

#include <algorithm>
#include <vector>

namespace vadelclip {

namespace {

constexpr std::size_t blockSize = 65536;

/// Bytes that are counted at once. A count of 128 fits into one byte, so the compiler adds bytes.
constexpr std::size_t chunkSize = 128;

} // namespace

void readTextLine(std::istream& input, std::string& line) {
    // std::getline does not change its string if the stream has already failed.
    line.clear();
    std::getline(input, line);
    const bool endedByLineFeed = input.good();
    if (endedByLineFeed) {
        line.resize(line.size() - carriageReturnsToDrop(line));
    }
}

std::uint64_t countLineFeeds(const char* bytes, std::size_t size) {
    std::uint64_t count = 0;
    for (; size >= chunkSize; bytes += chunkSize, size -= chunkSize) {
        std::uint8_t inChunk = 0;
        for (std::size_t i = 0; i < chunkSize; ++i) {
            inChunk = static_cast<std::uint8_t>(inChunk + (bytes[i] == '\n' ? 1 : 0));
        }
        count += inChunk;
    }
    return count + static_cast<std::uint64_t>(std::count(bytes, bytes + size, '\n'));
}

std::uint64_t countLineFeeds(std::istream& input) {
    std::vector<char> block(blockSize);
    std::uint64_t count = 0;
    // Uses istream members only, because iterators over the stream buffer throw if the file is a directory.
    // Reads only what one system read has returned, so that a later read error does not discard these bytes.
    while (input.peek() != std::istream::traits_type::eof()) {
        const auto available = static_cast<std::size_t>(input.rdbuf()->in_avail());
        input.read(block.data(), static_cast<std::streamsize>(std::min(available, block.size())));
        count += countLineFeeds(block.data(), static_cast<std::size_t>(input.gcount()));
    }
    return count;
}

} // namespace vadelclip
