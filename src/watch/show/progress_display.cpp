#include "watch/show/progress_display.hpp"

#include <algorithm>
#include <cstdlib>
#include <sys/ioctl.h>
#include <unistd.h>
#include <utility>

namespace vadelwatch {

namespace {

constexpr double secondsBetweenDrawings = 0.1;

/// To the first column: the cursor stands there, unless something was typed, "^C" for instance.
constexpr std::string_view rowStart = "\r";
constexpr std::string_view eraseToRowEnd = "\033[K";

/// What a narrower window has moved to the next rows. In a window that cuts lines there is nothing to erase, and the
/// last row of the screen has no next one: the cursor comes back from wherever it got to.
std::string eraseRowsBelow(int rows) {
    if (rows <= 0) {
        return {};
    }
    // Row by row: clearing all of the screen makes some terminals keep a copy of it.
    std::string sequence = "\0337";
    for (int row = 0; row < rows; ++row) {
        sequence += "\033[B\033[2K";
    }
    return sequence + "\0338";
}

/// Around a drawing: a line that turns out too long is cut at the edge and does not go on in the next row. Terminals may
/// become narrower some time before they say so.
constexpr std::string_view wrappingOff = "\033[?7l";
constexpr std::string_view wrappingOn = "\033[?7h";

/// A value that is not empty, or nothing.
std::string_view environmentValue(const char* name) {
    const char* const value = std::getenv(name); // NOLINT(concurrency-mt-unsafe)
    return value == nullptr ? std::string_view() : std::string_view(value);
}

bool usesUtf8() {
    for (const char* const name : {"LC_ALL", "LC_CTYPE", "LANG"}) {
        const std::string_view value = environmentValue(name);
        if (!value.empty()) {
            return value.find("UTF-8") != std::string_view::npos || value.find("utf8") != std::string_view::npos ||
                   value.find("utf-8") != std::string_view::npos || value.find("UTF8") != std::string_view::npos;
        }
    }
    return false;
}

} // namespace

ProgressDisplay::ProgressDisplay(ProgressMode displayMode, BarStyle barStyle, Writer outputWriter, Width terminalWidth)
    : mode(displayMode), style(barStyle), writer(std::move(outputWriter)), width(std::move(terminalWidth)) {}

void ProgressDisplay::showLine(std::string_view line) {
    clear();
    pending += line;
    pending += '\n';
}

void ProgressDisplay::update(const ProgressFigures& figures, double now) {
    if (mode == ProgressMode::plain) {
        showPlainLine(figures);
    } else if (mode == ProgressMode::bar && (lastDrawing < 0 || now - lastDrawing >= secondsBetweenDrawings)) {
        draw(figures, now);
    }
}

void ProgressDisplay::draw(const ProgressFigures& figures, double now) {
    // One column stays free: many terminals go to the next line when the last one is filled.
    const int columns = width();
    const std::string line = progressBarLine(figures, std::max(0, columns - 1), style);
    // Drawn over the old one where that is as wide, so that nothing flickers.
    const bool over = barStands && columns == drawnColumns;
    if (over && line == drawnLine) {
        return;
    }
    if (!over) {
        clear();
    }
    if (line.empty()) {
        return;
    }
    for (const std::string_view part :
         {rowStart, wrappingOff, std::string_view(line), eraseToRowEnd, rowStart, wrappingOn}) {
        pending += part;
    }
    barStands = true;
    drawnLine = line;
    drawnColumns = columns;
    lastDrawing = now;
}

void ProgressDisplay::showPlainLine(const ProgressFigures& figures) {
    const int tens = static_cast<int>(figures.percent / 10.0);
    if (tens > shownTens) {
        shownTens = tens;
        ProgressFigures rounded = figures;
        rounded.percent = tens * 10.0;
        showLine(plainProgressLine(rounded));
    }
}

void ProgressDisplay::clear() {
    if (barStands) {
        const int columns = width();
        pending += rowStart;
        pending += eraseToRowEnd;
        pending += eraseRowsBelow(columns > 0 ? (drawnColumns - 1) / columns : 0);
        barStands = false;
    }
}

void ProgressDisplay::flush() {
    if (!pending.empty()) {
        writer(pending);
        pending.clear();
    }
}

ProgressMode progressModeFor(int descriptor) {
    const std::string_view terminal = environmentValue("TERM");
    const bool movesCursor = !terminal.empty() && terminal != "dumb";
    return isatty(descriptor) == 1 && movesCursor ? ProgressMode::bar : ProgressMode::plain;
}

BarStyle barStyleFromEnvironment() {
    return {usesUtf8() ? BarLetters::drawn : BarLetters::plain, environmentValue("NO_COLOR").empty()};
}

int terminalColumns(int descriptor) {
    constexpr int usualColumns = 80;
    const pid_t foreground = tcgetpgrp(descriptor);
    if (foreground != -1 && foreground != getpgrp()) {
        return 0;
    }
    winsize size{};
    if (ioctl(descriptor, TIOCGWINSZ, &size) != 0 || size.ws_col == 0) {
        return usualColumns;
    }
    return size.ws_col;
}

} // namespace vadelwatch
