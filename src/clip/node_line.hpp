/// \file
/// One line of a node file: x, the separator, y, and at least one byte more, which is not looked at.
#pragma once

#include "boundary/boundary_set.hpp"
#include "boundary/widened_box.hpp"

#include <string_view>

namespace vadelclip {

/// Reads x and y from a node line, unless the point is outside of an extent. If x is, y is not read: the line is dropped
/// whether y is a number or not.
///
/// White space in front of either number is skipped. Up to 99 bytes may stand between x and a separator other than
/// a blank. Numbers are read as formatted extraction does in classic notation.
///
/// @param extent the box outside of which no point is kept.
/// @param point  receives the position; unspecified after a failure.
/// @return false for a line that does not parse, that ends right after y, or whose point is outside of the extent. Such
///         a line is dropped silently.
bool readNodeLine(std::string_view line, char separator, const WidenedBox& extent, Point2D& point);

/// Does the same without an extent: every line that parses is read.
bool readNodeLine(std::string_view line, char separator, Point2D& point);

} // namespace vadelclip
