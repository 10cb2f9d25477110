#include "watch/show/progress_display.hpp"

#include <boost/algorithm/string/predicate.hpp>

#include <algorithm>
#include <cstdlib>
#include <sys/ioctl.h>
#include <unistd.h>
#include <utility>

namespace vadelwatch {

namespace {

/// A run that ends sooner shows nothing.
constexpr double secondsBeforeBar = 0.5;
constexpr double secondsBeforePlainLine = 2.0;

constexpr double secondsBetweenDrawings = 0.1;
constexpr double secondsBetweenPlainLines = 30.0;
constexpr double percentBetweenPlainLines = 10.0;

/// Moves to the first column. The cursor is there already, unless something was typed, for example "^C".
constexpr std::string_view rowStart = "\r";
constexpr std::string_view eraseToRowEnd = "\033[K";

/// Erases the rest of a bar that a narrower window has broken into several rows. Some terminals cut lines instead, and
/// the last row of the screen has no row below, so the cursor position is saved and restored.
std::string eraseRowsBelow(int rows) {
    if (rows <= 0) {
        return {};
    }
    // Row by row, because some terminals keep a copy of the screen when all of it is cleared.
    std::string sequence = "\0337";
    for (int row = 0; row < rows; ++row) {
        sequence += "\033[B\033[2K";
    }
    return sequence + "\0338";
}

/// Used around a drawing, so that a line that is too long is cut at the edge: a terminal may become narrower some time
/// before it reports its new width.
constexpr std::string_view wrappingOff = "\033[?7l";
constexpr std::string_view wrappingOn = "\033[?7h";

/// Returns an empty text for a variable that is not set.
std::string_view environmentValue(const char* name) {
    const char* const value = std::getenv(name); // NOLINT(concurrency-mt-unsafe)
    return value == nullptr ? std::string_view() : std::string_view(value);
}

bool usesUtf8() {
    for (const char* const name : {"LC_ALL", "LC_CTYPE", "LANG"}) {
        const std::string_view value = environmentValue(name);
        if (!value.empty()) {
            return boost::algorithm::icontains(value, "utf-8") || boost::algorithm::icontains(value, "utf8");
        }
    }
    return false;
}

} // namespace

ProgressDisplay::ProgressDisplay(ProgressMode displayMode, BarStyle barStyle, Writer outputWriter, Width terminalWidth)
    : mode(displayMode), style(barStyle), writer(std::move(outputWriter)), width(std::move(terminalWidth)),
      nextDue(displayMode == ProgressMode::bar ? secondsBeforeBar : secondsBeforePlainLine) {}

void ProgressDisplay::showLine(std::string_view line) {
    clear();
    pending += line;
    pending += '\n';
}

void ProgressDisplay::startAtOnce() {
    if (mode == ProgressMode::bar) {
        nextDue = 0.0;
    }
}

bool ProgressDisplay::isDue(double now) const {
    return mode != ProgressMode::none && now >= nextDue;
}

void ProgressDisplay::update(const ProgressFigures& figures, double now) {
    if (!isDue(now)) {
        return;
    }
    if (mode == ProgressMode::bar) {
        draw(figures, now);
    } else {
        showPlainLine(figures, now);
    }
}

void ProgressDisplay::draw(const ProgressFigures& figures, double now) {
    // One column stays free, because many terminals start a new line when the last one is filled.
    const int columns = width();
    const std::string line = progressBarLine(figures, std::max(0, columns - 1), style);
    // Drawn over an old bar of the same width, so that it does not flicker.
    const bool over = isShown && columns == drawnColumns;
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
    isShown = true;
    drawnLine = line;
    drawnColumns = columns;
    nextDue = now + secondsBetweenDrawings;
}

void ProgressDisplay::showPlainLine(const ProgressFigures& figures, double now) {
    // Too little progress: the line is shown as soon as there is more.
    if (figures.percent && figures.phase == plainPhase && figures.percent < plainPercent + percentBetweenPlainLines) {
        return;
    }
    showLine(plainProgressLine(figures));
    plainPhase = figures.phase;
    plainPercent = figures.percent.value_or(0);
    nextDue = now + secondsBetweenPlainLines;
}

void ProgressDisplay::clear() {
    if (isShown) {
        const int columns = width();
        pending += rowStart;
        pending += eraseToRowEnd;
        pending += eraseRowsBelow(columns > 0 ? (drawnColumns - 1) / columns : 0);
        isShown = false;
    }
}

void ProgressDisplay::flush() {
    if (!pending.empty()) {
        writer(pending);
        pending.clear();
    }
}

ProgressDisplay displayOnStandardError(ProgressMode mode, OwnOutput& errors) {
    return {mode, barStyleFromEnvironment(), [&errors](std::string_view text) { errors.keep(text); },
            [] { return terminalColumns(STDERR_FILENO); }};
}

ProgressMode progressModeFor(int descriptor, std::string_view wanted) {
    if (wanted != "auto") {
        return wanted == "bar" ? ProgressMode::bar : wanted == "plain" ? ProgressMode::plain : ProgressMode::none;
    }
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
