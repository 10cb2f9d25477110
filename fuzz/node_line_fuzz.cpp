/// \file
/// `readNodeLine` against one string stream. The input is the separator and behind it the line.

#include "fuzz_target.hpp"

#include "clip/node_line.hpp"
#include "support/plain_text_support.hpp"

namespace vadelclip {

namespace {

/// One of the four, whatever the byte is.
char separatorFrom(std::uint8_t byte) {
    const std::string separators = "\t ,;";
    const std::size_t position = separators.find(static_cast<char>(byte));
    return separators[position == std::string::npos ? byte % separators.size() : position];
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    InputBytes input(data, size);
    const char separator = separatorFrom(input.byte());
    const std::string line = input.rest();
    Point2D expected{};
    Point2D got{};
    const bool expectedRead = readNodeLinePlainly(line, separator, expected);
    requireEqual(expectedRead, readNodeLine(line, separator, got), "parses");
    if (expectedRead) {
        requireSameBits(expected.x, got.x, "x");
        requireSameBits(expected.y, got.y, "y");
    }
    return 0;
}

} // namespace vadelclip
