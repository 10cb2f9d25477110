/// \file
/// Reads one line of a node file: x, the separator, y, and at least one further byte, which is not checked.
#pragma once

#include "boundary/boundary_set.hpp"
#include "boundary/widened_box.hpp"

#include <string_view>

namespace vadelclip {

/// Reads x and y from a node line and compares them with an extent. If x is outside, y is not read: the line is
/// dropped whether or not y is a number.
///
/// Skips white space before each number. Accepts up to 99 other bytes between x and the separator, unless the separator
/// is a space. Reads numbers as formatted extraction in the classic locale does.
///
/// @param extent the box outside of which no point is kept.
/// @param point  receives the position; unspecified after a failure.
/// @return false for a line that does not parse, that ends right after y, or whose point is outside of the extent. Such
///         a line is dropped silently.
bool readNodeLine(std::string_view line, char separator, const WidenedBox& extent, Point2D& point);

/// Does the same without an extent: every line that parses is read.
bool readNodeLine(std::string_view line, char separator, Point2D& point);

} // namespace vadelclip
