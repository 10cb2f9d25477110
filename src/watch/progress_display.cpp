#include "watch/progress_display.hpp"

#include <algorithm>
#include <cstdlib>
#include <sys/ioctl.h>
#include <unistd.h>
#include <utility>

namespace {

constexpr double secondsBetweenDrawings = 0.1;

/// Back to the first column, and everything from there to the end of the screen is cleared: also the second half of a
/// bar that a narrower window broke into two.
constexpr const char* eraseBar = "\r\033[J";

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

ProgressDisplay::ProgressDisplay(ProgressMode displayMode, BarStyle barStyle, const WatchTexts& displayTexts,
                                 Writer outputWriter, Width terminalWidth)
    : mode(displayMode), style(barStyle), texts(displayTexts), writer(std::move(outputWriter)),
      width(std::move(terminalWidth)) {}

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
    const std::string line = progressBarLine(figures, std::max(0, width() - 1), style, texts);
    if (barStands && line == drawnLine) {
        return;
    }
    clear();
    drawnLine = line;
    if (!line.empty()) {
        pending += line;
        pending += '\r';
        barStands = true;
        lastDrawing = now;
    }
}

void ProgressDisplay::showPlainLine(const ProgressFigures& figures) {
    const int tens = static_cast<int>(figures.percent / 10.0);
    if (tens > shownTens) {
        shownTens = tens;
        ProgressFigures rounded = figures;
        rounded.percent = tens * 10.0;
        showLine(plainProgressLine(rounded, texts));
    }
}

void ProgressDisplay::clear() {
    if (barStands) {
        pending += eraseBar;
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
