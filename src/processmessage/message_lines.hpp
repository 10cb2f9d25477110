/// \file
/// Messages as JSON Lines in UTF-8: one object a line, keys in a fixed order. Every line includes its line feed. Bytes of a
/// text that are not UTF-8 become U+FFFD.
#pragma once

#include <string>

namespace vadelclip {

std::string errorLine(int level, const std::string& text);
std::string stateLine(int level, const std::string& text, bool active);
std::string failedLine(int level, const std::string& text);
std::string finishLine(int level, const std::string& text);

/// @param tenths progress of the whole run in tenths of a percent, 0 to 1000.
std::string progressLine(int tenths);

} // namespace vadelclip
