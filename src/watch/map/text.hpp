/// \file
/// Names of files and directories as texts that can be drawn.
#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace vadelwatch {

/// Makes valid UTF-8 in one line: whatever is neither becomes U+FFFD. A name on disk may hold any byte, and a single
/// bad one would spoil the picture.
std::string readableText(std::string_view bytes);

/// Shortens valid UTF-8 with an ellipsis at its end until it is at most `widest` wide.
std::string fitText(std::string text, double widest, const std::function<double(const std::string&)>& widthOfText);

/// The size at which a text is at most `widest` wide: `size`, or less for a text that would be wider at that size.
double fittingSize(double size, double widthAtSize, double widest);

/// The last component of a path, also where a separator follows it.
std::string lastComponent(const std::string& path);

} // namespace vadelwatch
