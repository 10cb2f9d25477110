/// \file
/// Shows the progress of a run, as a bar at the bottom of the terminal or as plain lines from time to time, and other
/// lines above it.
#pragma once

#include "watch/show/own_output.hpp"
#include "watch/show/progress_line.hpp"

#include <functional>
#include <string>
#include <string_view>

namespace vadelwatch {

enum class ProgressMode { none, plain, bar };

/// The bar is one line, and the cursor is at its start between drawings. So it can be erased completely, also after a
/// narrower window has broken it into several rows.
class ProgressDisplay {
public:
    using Writer = std::function<void(std::string_view text)>;
    using Width = std::function<int()>;

    /// @param writer receives the output.
    /// @param width  returns the columns of the terminal. Called before each drawing and erasing.
    ProgressDisplay(ProgressMode mode, BarStyle style, Writer writer, Width width);

    /// Shows a line above the bar. The next `update` draws the bar again.
    void showLine(std::string_view line);

    /// Returns true if `update` may show something, so that the figures are needed.
    ///
    /// @param now seconds since the start of the run or phase: a short one shows nothing.
    bool isDue(double now) const;

    /// Removes the wait before the first bar: an earlier phase has shown one, so it would be missing meanwhile.
    void startAtOnce();

    /// Returns true if a bar was drawn.
    bool hasDrawn() const { return drawnColumns > 0; }

    /// Takes new figures. Draws the bar at most ten times a second, or a plain line when half a minute has passed and
    /// another ten percent are done.
    void update(const ProgressFigures& figures, double now);

    /// Erases the bar. The next `update` draws it again.
    void clear();

    /// Passes the collected output to the writer.
    void flush();

private:
    void draw(const ProgressFigures& figures, double now);
    void showPlainLine(const ProgressFigures& figures, double now);

    ProgressMode mode;
    BarStyle style;
    Writer writer;
    Width width;
    std::string pending;    ///< Collected output.
    bool isShown = false;   ///< The bar is visible after the collected output.
    std::string drawnLine;  ///< The last drawing of the bar.
    int drawnColumns = 0;   ///< The width of the terminal at that time.
    double nextDue;         ///< Nothing is drawn before this time.
    std::string plainPhase; ///< Phase and percentage of the last plain line.
    double plainPercent = -100;
};

/// Returns a display on the terminal of standard error that writes to `errors`, which must outlive it.
ProgressDisplay displayOnStandardError(ProgressMode mode, OwnOutput& errors);

/// Returns how to show progress on a descriptor.
///
/// @param wanted value of --progress. "auto" is a bar on a terminal that can move its cursor, otherwise plain lines.
ProgressMode progressModeFor(int descriptor, std::string_view wanted);

/// Returns the letters that suit the character set of the environment, in colour unless NO_COLOR is set.
BarStyle barStyleFromEnvironment();

/// Returns the columns of the terminal of a descriptor, 80 if they are unknown. Returns 0 for a process in the
/// background, which must not draw over another program.
int terminalColumns(int descriptor);

} // namespace vadelwatch
