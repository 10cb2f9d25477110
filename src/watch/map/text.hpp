/// \file
/// Prepares names of files and directories for drawing.
#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace vadelwatch {

/// Returns valid UTF-8 in one line: control characters and other bytes become U+FFFD. A file name may have any byte,
/// and one that is not UTF-8 would make the drawing fail.
std::string readableText(std::string_view bytes);

/// Shortens valid UTF-8 with an ellipsis in its middle until it is at most `widest` wide.
std::string fitText(std::string text, double widest, const std::function<double(const std::string&)>& widthOfText);

/// Returns the size at which a text is at most `widest` wide: `size`, or less if the text is wider at that size.
double fittingSize(double size, double widthAtSize, double widest);

/// Returns the last component of a path, also if a separator follows it.
std::string lastComponent(const std::string& path);

} // namespace vadelwatch
