/// \file
/// Lines and numbers read the plain way, by streams and without a short cut. What the tool's readers are compared with.
#pragma once

#include "boundary/boundary_set.hpp"
#include "text/number_text.hpp"

#include <sstream>
#include <string>
#include <vector>

namespace vadelclip {

/// Formatted extraction from a fresh string stream with default flags.
class PlainNumberReader {
public:
    NumberReading read(const std::string& text);

private:
    std::istringstream stream;
};

/// The same value to the last bit, the same failure and the same extent.
bool sameReading(const NumberReading& a, const NumberReading& b);

std::string describe(const NumberReading& reading);

/// What `readNodeLine` reads, by one string stream.
bool readNodeLinePlainly(const std::string& line, char separator, Point2D& point);

/// Everything before the last line feed, cut at line feeds; a carriage return before one goes with it.
std::vector<std::string> terminatedLines(const std::string& content);

/// What stands behind the last line feed.
std::string unterminatedLine(const std::string& content);

} // namespace vadelclip
