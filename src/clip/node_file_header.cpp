#include "clip/node_file_header.hpp"

#include "messages/translation.hpp"

#include <string_view>

namespace vadelclip {

namespace {

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

bool isSeparator(char byte) {
    return byte == '\t' || byte == ' ' || byte == ',' || byte == ';';
}

/// Returns "x;y;z" for "xyz" and ';'.
std::string joinColumns(std::string_view columns, char separator) {
    std::string header;
    for (const char column : columns) {
        if (!header.empty()) {
            header += separator;
        }
        header += column;
    }
    return header;
}

/// Returns 1 or 2, or 0 if the line has none of the four shapes.
std::int32_t matchShape(const std::string& line, char separator) {
    if (line == joinColumns("xyz", separator) || line == joinColumns("XYZ", separator)) {
        return 1;
    }
    if (line == joinColumns("xyzg", separator) || line == joinColumns("XYZG", separator)) {
        return 2;
    }
    return 0;
}

} // namespace

bool readNodeFileHeader(std::string line, char& separator, std::int32_t& nodeFormat, std::string& errorText) {
    nodeFormat = 0;
    errorText.clear();
    if (line.empty()) {
        return false;
    }
    if (line.starts_with(byteOrderMark)) {
        line.erase(0, byteOrderMark.size());
    }
    // After a line of only the mark, or of one byte, a zero byte follows, which no test accepts.
    const char* const bytes = line.c_str();
    if ((bytes[0] | 0x20) != 'x') {
        errorText = translateMessage("First character of node file must be one of x,X");
        return false;
    }
    separator = bytes[1];
    // The two texts that begin with "ERROR:" stay English in every language, on purpose.
    if (!isSeparator(separator)) {
        errorText = "ERROR: separator must be either semikolon, comma, space or tab";
        return false;
    }
    nodeFormat = matchShape(line, separator);
    if (nodeFormat == 0) {
        // The mistake in the fourth shape and the open parenthesis are part of the text, on purpose. A file that begins
        // with Y is rejected above.
        errorText = "ERROR: Using the xyz format, the first header line must be one of x;y;z , X;Y;Z , x;y;z;g , "
                    "Y;Y;Z;G , while the separator (e.g. \";\" is variable";
        return false;
    }
    return true;
}

} // namespace vadelclip
