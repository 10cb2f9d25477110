/// \file
/// One number from a text, exactly as a string stream would read it in classic notation.
#pragma once

#include <cstddef>
#include <string_view>

namespace vadelclip {

/// What reading a number gave.
struct NumberReading {
    double value;       ///< What the stream would have stored: 0.0 or the largest double after most failures.
    bool failed;        ///< The stream's fail(): no number at the start of the text, or one out of range.
    std::size_t length; ///< Bytes read, white space in front included. Only set where `failed` is false.
};

/// Reads a double from the start of a text: same bits, same failures and same extent as formatted extraction from a
/// fresh string stream with default flags. White space in front is skipped.
///
/// The stream is in the good state afterwards if `!failed && length < text.size()`.
///
/// Decimals with up to 19 digits take one exact division (W. D. Clinger, How to Read Floating Point Numbers Accurately,
/// 1990), longer ones and those with an exponent std::from_chars; only what that refuses, numbers out of range above
/// all, goes through a stream, which allocates memory.
NumberReading readNumber(std::string_view text);

} // namespace vadelclip
