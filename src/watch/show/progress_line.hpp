/// \file
/// How progress looks in one line of a given width.
#pragma once

#include <optional>
#include <string>

namespace vadelwatch {

struct ProgressFigures {
    double percent = 0.0;
    std::optional<double> linesPerSecond; ///< Unknown until the lines have been counted and some are done.
    double elapsedSeconds = 0.0;
    std::optional<double> remainingSeconds;
};

enum class BarLetters {
    plain, ///< "=" and "-": every terminal has them.
    drawn  ///< The lines of Unicode, for terminals in UTF-8.
};

struct BarStyle {
    BarLetters letters = BarLetters::plain;
    bool colour = false;
};

/// The bar with its figures, exactly as many columns wide as are given, or less; never more.
///
/// Where there is little room, the words go first, then the rate, then the times, and the bar last of all.
/// @param columns what may be filled, from 0 on.
std::string progressBarLine(const ProgressFigures& figures, int columns, const BarStyle& style);

/// The line that takes the bar's place without a terminal.
std::string plainProgressLine(const ProgressFigures& figures);

/// "1:05", or "1:01:05" from an hour on; seconds are cut, not rounded.
std::string clockText(double seconds);

} // namespace vadelwatch
