/// \file
/// What people see while a run goes on: a bar at the foot of the terminal, or a plain line every ten percent, and
/// whole lines in between.
#pragma once

#include "watch/show/progress_line.hpp"

#include <functional>
#include <string>
#include <string_view>

namespace vadelwatch {

enum class ProgressMode { none, plain, bar };

/// The bar is a single line, and the cursor stands at its beginning whenever nothing is being written. So it goes away
/// without a trace, also where the terminal has broken it into two because the window became narrower.
class ProgressDisplay {
public:
    using Writer = std::function<void(std::string_view text)>;
    using Width = std::function<int()>;

    /// @param writer takes what is to be seen.
    /// @param width  gives the columns of the terminal; asked before each drawing and erasing.
    ProgressDisplay(ProgressMode mode, BarStyle style, Writer writer, Width width);

    /// Shows a line above the bar. The bar comes back with the next `update`.
    void showLine(std::string_view line);

    /// Takes new figures, and shows them if it is time: the bar at most ten times a second, a plain line when another
    /// ten percent are done.
    ///
    /// @param now seconds on a clock that only goes forward.
    void update(const ProgressFigures& figures, double now);

    /// Removes the bar. It comes back with the next `update`.
    void clear();

    /// Hands over what has been collected.
    void flush();

private:
    void draw(const ProgressFigures& figures, double now);
    void showPlainLine(const ProgressFigures& figures);

    ProgressMode mode;
    BarStyle style;
    Writer writer;
    Width width;
    std::string pending;     ///< Collected output.
    bool barStands = false;  ///< The bar is to be seen, or will be with the collected output.
    std::string drawnLine;   ///< The bar as it was drawn last,
    int drawnColumns = 0;    ///< and the width of the terminal then.
    double lastDrawing = -1; ///< Time of the last drawing.
    int shownTens = 0;       ///< Tens of percent that have had their plain line.
};

/// How to show progress on a descriptor: as a bar on a terminal that can move its cursor, as plain lines otherwise.
ProgressMode progressModeFor(int descriptor);

/// Letters by the character set of the environment, colour unless NO_COLOR forbids it.
BarStyle barStyleFromEnvironment();

/// Columns of the terminal behind a descriptor; 80 where it does not say, 0 while the process is in the background,
/// where it must not draw over what another program shows.
int terminalColumns(int descriptor);

} // namespace vadelwatch
