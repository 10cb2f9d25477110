/// \file
/// One line of a node file: x, the separator, y, and at least one byte more, which is not looked at.
#pragma once

#include "boundary/boundary_set.hpp"

#include <string_view>

namespace vadelclip {

/// Reads x and y from a node line.
///
/// White space in front of either number is skipped. Up to 99 bytes may stand between x and a separator other than
/// a blank. Numbers are read as formatted extraction does in classic notation.
///
/// @param point receives the position; unspecified after a failure.
/// @return false for a line that does not parse or that ends right behind y. Such a line is dropped in silence.
bool readNodeLine(std::string_view line, char separator, Point2D& point);

} // namespace vadelclip
