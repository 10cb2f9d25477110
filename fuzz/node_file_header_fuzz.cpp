/// \file
/// Compares `readNodeFileHeader` with a list of every line that it accepts. The input is the line.

#include "fuzz_target.hpp"

#include "clip/node_file_header.hpp"

#include <map>

namespace vadelclip {

namespace {

/// In the outputs before a call, and still there where the parser has not written.
constexpr char untouched = '?';

/// Every accepted line without a byte order mark, and its format.
const std::map<std::string, std::int32_t>& acceptedLines() {
    static const std::map<std::string, std::int32_t> lines = {
        {"x\ty\tz", 1}, {"X\tY\tZ", 1}, {"x\ty\tz\tg", 2}, {"X\tY\tZ\tG", 2}, {"x y z", 1},   {"X Y Z", 1},
        {"x y z g", 2}, {"X Y Z G", 2}, {"x,y,z", 1},      {"X,Y,Z", 1},      {"x,y,z,g", 2}, {"X,Y,Z,G", 2},
        {"x;y;z", 1},   {"X;Y;Z", 1},   {"x;y;z;g", 2},    {"X;Y;Z;G", 2}};
    return lines;
}

bool isSeparator(char byte) {
    return std::string("\t ,;").find(byte) != std::string::npos;
}

/// The reason for rejecting a line, without the mark, that is not empty with it.
std::string reasonFor(const std::string& line) {
    if (line.empty() || (line[0] != 'x' && line[0] != 'X')) {
        return "First character of node file must be one of x,X";
    }
    if (line.size() < 2 || !isSeparator(line[1])) {
        return "ERROR: separator must be either semikolon, comma, space or tab";
    }
    return "ERROR: Using the xyz format, the first header line must be one of x;y;z , X;Y;Z , x;y;z;g , Y;Y;Z;G , "
           "while the separator (e.g. \";\" is variable";
}

/// The second byte, once the first has passed; the zero byte where the line ends there.
char separatorOf(const std::string& line) {
    if (line.empty() || (line[0] != 'x' && line[0] != 'X')) {
        return untouched;
    }
    return line.size() < 2 ? '\0' : line[1];
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string line = InputBytes(data, size).rest();
    char separator = untouched;
    std::int32_t nodeFormat = 99;
    std::string errorText = "text of an earlier line";
    const bool accepted = readNodeFileHeader(line, separator, nodeFormat, errorText);

    const std::string withoutMark = line.starts_with("\xEF\xBB\xBF") ? line.substr(3) : line;
    const auto found = acceptedLines().find(withoutMark);
    const bool expected = found != acceptedLines().end();
    requireEqual(expected, accepted, "accepted");
    requireEqual(expected ? found->second : 0, nodeFormat, "format");
    requireEqual(int{separatorOf(withoutMark)}, int{separator}, "separator");
    requireSameText(expected || line.empty() ? std::string() : reasonFor(withoutMark), errorText, "reason");
    return 0;
}

} // namespace vadelclip
