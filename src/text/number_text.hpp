/// \file
/// Reads one number from a text, exactly as a string stream in the classic locale does.
#pragma once

#include <cstddef>
#include <string_view>

namespace vadelclip {

/// The result of reading a number.
struct NumberReading {
    double value;       ///< What the stream stores. After most failures: 0.0 or the largest double.
    std::size_t length; ///< Bytes read, including white space before the number. 0 after a failure.

    /// The stream's fail(): the text does not begin with a number, or it is out of range.
    bool failed() const { return length == 0; }
};

/// Reads a double from the start of a text, after white space. The value, the failures and the number of bytes are the
/// same as with formatted extraction from a new string stream with default flags.
///
/// The stream would be in the good state afterwards if `!failed() && length < text.size()`.
///
/// Decimals of up to 19 digits are converted by one exact division (W. D. Clinger, How to Read Floating Point Numbers
/// Accurately, 1990). Longer ones and those with an exponent are converted by std::from_chars. What it refuses, mainly
/// numbers out of range, is read by a stream, which allocates memory.
NumberReading readNumber(std::string_view text);

} // namespace vadelclip
