/// \file
/// Plain reference implementations that read lines and numbers by streams.
#pragma once

#include "boundary/boundary_set.hpp"
#include "text/number_text.hpp"

#include <sstream>
#include <string>
#include <vector>

namespace vadelclip {

/// Reads by formatted extraction from a string stream with default flags.
class PlainNumberReader {
public:
    NumberReading read(const std::string& text);

private:
    std::istringstream stream;
};

/// Returns true if value (to the last bit), failure and length are equal.
bool sameReading(const NumberReading& a, const NumberReading& b);

std::string describe(const NumberReading& reading);

/// Reads a line as `readNodeLine` does, by one string stream.
bool readNodeLinePlainly(const std::string& line, char separator, Point2D& point);

/// Returns the lines that end in a line feed, without the line feed and one carriage return before it.
std::vector<std::string> terminatedLines(const std::string& content);

/// Returns the bytes after the last line feed.
std::string unterminatedLine(const std::string& content);

} // namespace vadelclip
