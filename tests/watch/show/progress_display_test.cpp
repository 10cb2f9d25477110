#include "watch/show/progress_display.hpp"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fcntl.h>
#include <string>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>

namespace vadelwatch {

namespace {

/// A display that records its output.
class RecordedDisplay {
public:
    explicit RecordedDisplay(ProgressMode mode)
        : display(
              mode, {}, [this](std::string_view text) { shown += text; }, [this] { return columns; }) {}

    /// Returns the output since the last call.
    std::string take() {
        display.flush();
        std::string text;
        text.swap(shown);
        return text;
    }

    std::string shown;
    int columns = 20;
    ProgressDisplay display;
};

ProgressFigures at(double percent) {
    ProgressFigures figures;
    figures.percent = percent;
    return figures;
}

std::string drawing(const std::string& line) {
    return "\r\033[?7l" + line + "\033[K\r\033[?7h";
}

/// A pseudo-terminal with this number of columns.
class PseudoTerminal {
public:
    explicit PseudoTerminal(unsigned short columns) : master(posix_openpt(O_RDWR | O_NOCTTY)) {
        EXPECT_EQ(0, grantpt(master));
        EXPECT_EQ(0, unlockpt(master));
        const winsize size{24, columns, 0, 0};
        EXPECT_EQ(0, ioctl(master, TIOCSWINSZ, &size));
    }
    PseudoTerminal(const PseudoTerminal&) = delete;
    PseudoTerminal& operator=(const PseudoTerminal&) = delete;
    ~PseudoTerminal() { close(master); }

    /// Without O_NOCTTY the terminal becomes the controlling terminal of the session.
    int openTerminal(int flags) const { return open(ptsname(master), O_RDWR | flags); }

private:
    int master;
};

/// Starts a session and returns the columns for a process in its foreground or background.
int columnsInSession(const PseudoTerminal& pseudoTerminal, bool background) {
    setsid();
    const int terminal = pseudoTerminal.openTerminal(0);
    if (!background) {
        return terminalColumns(terminal);
    }
    const pid_t child = fork();
    if (child == 0) {
        setpgid(0, 0);
        std::exit(terminalColumns(terminal));
    }
    int status = 0;
    waitpid(child, &status, 0);
    return WEXITSTATUS(status);
}

/// Returns the letters of a bar for these values of LC_ALL, LC_CTYPE and LANG; nullptr for a variable that is not set.
BarLetters lettersUnder(const char* all, const char* characters, const char* language) {
    const std::pair<const char*, const char*> settings[] = {
        {"LC_ALL", all}, {"LC_CTYPE", characters}, {"LANG", language}};
    for (const auto& [name, value] : settings) {
        if (value == nullptr) {
            unsetenv(name);
        } else {
            setenv(name, value, 1);
        }
    }
    return barStyleFromEnvironment().letters;
}

const std::string tenPercent = drawing("=---------   10.0 %");
const std::string twentyPercent = drawing("==--------   20.0 %");

} // namespace

TEST(ProgressDisplay, drawsAtMostTenTimesASecond) {
    RecordedDisplay recorded(ProgressMode::bar);
    recorded.display.update(at(10.0), 1.0);
    EXPECT_EQ(tenPercent, recorded.take());
    recorded.display.update(at(20.0), 1.09);
    EXPECT_EQ("", recorded.take());
    recorded.display.update(at(20.0), 1.11);
    EXPECT_EQ(twentyPercent, recorded.take());
}

TEST(ProgressDisplay, doesNotRepeatSameDrawing) {
    RecordedDisplay recorded(ProgressMode::bar);
    recorded.display.update(at(10.0), 1.0);
    recorded.take();
    recorded.display.update(at(10.01), 2.0);
    EXPECT_EQ("", recorded.take());
}

TEST(ProgressDisplay, lineReplacesBar) {
    RecordedDisplay recorded(ProgressMode::bar);
    recorded.display.showLine("before");
    EXPECT_EQ("before\n", recorded.take());
    recorded.display.update(at(10.0), 1.0);
    recorded.take();
    recorded.display.showLine("first");
    recorded.display.showLine("second");
    EXPECT_EQ("\r\033[Kfirst\nsecond\n", recorded.take());
    recorded.display.update(at(10.0), 1.2);
    EXPECT_EQ(tenPercent, recorded.take());
}

TEST(ProgressDisplay, clearErasesBar) {
    RecordedDisplay recorded(ProgressMode::bar);
    recorded.display.update(at(10.0), 1.0);
    recorded.take();
    recorded.display.clear();
    EXPECT_EQ("\r\033[K", recorded.take());
    recorded.display.clear();
    EXPECT_EQ("", recorded.take());
}

TEST(ProgressDisplay, erasesRowsInNarrowerWindow) {
    RecordedDisplay recorded(ProgressMode::bar);
    recorded.display.update(at(10.0), 1.0);
    recorded.take();
    recorded.columns = 9;
    recorded.display.update(at(10.0), 1.2);
    // Twenty columns take three rows of nine.
    EXPECT_EQ("\r\033[K\0337\033[B\033[2K\033[B\033[2K\0338" + drawing(" 10.0 %"), recorded.take());
    recorded.columns = 20;
    recorded.display.update(at(10.0), 1.4);
    EXPECT_EQ("\r\033[K" + tenPercent, recorded.take());
}

TEST(ProgressDisplay, drawsNothingWithoutColumns) {
    RecordedDisplay recorded(ProgressMode::bar);
    recorded.display.update(at(10.0), 1.0);
    recorded.take();
    recorded.columns = 0;
    recorded.display.update(at(20.0), 1.2);
    EXPECT_EQ("\r\033[K", recorded.take());
    recorded.display.update(at(30.0), 1.4);
    EXPECT_EQ("", recorded.take());
}

TEST(ProgressDisplay, drawsNoBarInFirstHalfSecond) {
    RecordedDisplay recorded(ProgressMode::bar);
    recorded.display.update(at(10.0), 0.49);
    EXPECT_EQ("", recorded.take());
    recorded.display.update(at(10.0), 0.5);
    EXPECT_EQ(tenPercent, recorded.take());
}

TEST(ProgressDisplay, drawsAtOnceAfterAnotherBar) {
    RecordedDisplay display(ProgressMode::bar);
    EXPECT_FALSE(display.display.hasDrawn());
    display.display.startAtOnce();
    display.display.update(at(10), 0.0);
    EXPECT_EQ(tenPercent, display.take());
    display.display.clear();
    EXPECT_TRUE(display.display.hasDrawn());
}

TEST(ProgressDisplay, showsFirstPlainLineAfterTwoSeconds) {
    RecordedDisplay recorded(ProgressMode::plain);
    recorded.display.update(at(5.0), 1.99);
    EXPECT_EQ("", recorded.take());
    recorded.display.update(at(5.0), 2.0);
    EXPECT_EQ(plainProgressLine(at(5.0)) + "\n", recorded.take());
}

TEST(ProgressDisplay, plainLineNeedsHalfMinuteAndTenPercent) {
    RecordedDisplay recorded(ProgressMode::plain);
    recorded.display.update(at(5.0), 2.0);
    recorded.take();
    recorded.display.update(at(90.0), 31.9);
    EXPECT_EQ("", recorded.take());
    recorded.display.update(at(14.9), 60.0);
    EXPECT_EQ("", recorded.take());
    recorded.display.update(at(15.0), 60.1);
    EXPECT_EQ(plainProgressLine(at(15.0)) + "\n", recorded.take());
    recorded.display.update(at(100.0), 90.0);
    EXPECT_EQ("", recorded.take());
}

TEST(ProgressDisplay, phaseWithoutPercentageHasPlainLines) {
    RecordedDisplay recorded(ProgressMode::plain);
    ProgressFigures figures;
    figures.phase = "drawing";
    int lines = 0;
    for (double now = 0.0; now < 100.0; now += 0.5) {
        recorded.display.update(figures, now);
        lines += recorded.take().empty() ? 0 : 1;
    }
    // At 2, 32, 62 and 92 seconds.
    EXPECT_EQ(4, lines);
}

TEST(ProgressDisplay, newPhaseMayStartAtLowerPercentage) {
    RecordedDisplay recorded(ProgressMode::plain);
    ProgressFigures figures = at(90.0);
    figures.phase = "counting";
    recorded.display.update(figures, 2.0);
    recorded.take();
    figures = at(1.0);
    figures.phase = "clipping";
    recorded.display.update(figures, 32.0);
    EXPECT_EQ(plainProgressLine(figures) + "\n", recorded.take());
}

TEST(ProgressDisplay, showsOnlyLinesWithoutProgress) {
    RecordedDisplay recorded(ProgressMode::none);
    recorded.display.update(at(50.0), 1.0);
    recorded.display.showLine("error");
    recorded.display.update(at(100.0), 2.0);
    recorded.display.clear();
    EXPECT_EQ("error\n", recorded.take());
}

TEST(ProgressMode, isAsWanted) {
    const PseudoTerminal wide(133);
    const int terminal = wide.openTerminal(O_NOCTTY);
    const int nothing = open("/dev/null", O_RDWR);
    setenv("TERM", "xterm", 1);
    EXPECT_EQ(ProgressMode::bar, progressModeFor(terminal, "auto"));
    EXPECT_EQ(ProgressMode::plain, progressModeFor(nothing, "auto"));
    EXPECT_EQ(ProgressMode::bar, progressModeFor(nothing, "bar"));
    EXPECT_EQ(ProgressMode::plain, progressModeFor(terminal, "plain"));
    EXPECT_EQ(ProgressMode::none, progressModeFor(terminal, "none"));
    close(nothing);
    close(terminal);
}

TEST(TerminalColumns, areThoseOfTheTerminal) {
    const PseudoTerminal wide(133);
    const int terminal = wide.openTerminal(O_NOCTTY);
    EXPECT_EQ(133, terminalColumns(terminal));
    close(terminal);
}

TEST(TerminalColumns, areEightyIfUnknown) {
    const PseudoTerminal unknown(0);
    const int terminal = unknown.openTerminal(O_NOCTTY);
    EXPECT_EQ(80, terminalColumns(terminal));
    close(terminal);
    const int nothing = open("/dev/null", O_RDWR);
    EXPECT_EQ(80, terminalColumns(nothing));
    close(nothing);
}

TEST(TerminalColumns, areNoneInTheBackground) {
    const PseudoTerminal wide(133);
    EXPECT_EXIT(std::exit(columnsInSession(wide, false)), testing::ExitedWithCode(133), "");
    EXPECT_EXIT(std::exit(columnsInSession(wide, true)), testing::ExitedWithCode(0), "");
}

TEST(BarStyle, usesFirstVariableThatIsNotEmpty) {
    EXPECT_EQ(BarLetters::plain, lettersUnder(nullptr, nullptr, nullptr));
    EXPECT_EQ(BarLetters::plain, lettersUnder("", "", ""));
    for (const char* const set : {"de_DE.UTF-8", "C.utf8", "en_GB.utf-8", "de_AT.UTF8"}) {
        EXPECT_EQ(BarLetters::drawn, lettersUnder(set, "C", "C")) << set;
        EXPECT_EQ(BarLetters::drawn, lettersUnder("", set, "C")) << set;
        EXPECT_EQ(BarLetters::drawn, lettersUnder(nullptr, nullptr, set)) << set;
        EXPECT_EQ(BarLetters::plain, lettersUnder("C", set, set)) << set;
    }
    EXPECT_EQ(BarLetters::plain, lettersUnder("de_DE.ISO-8859-1", nullptr, nullptr));
}

} // namespace vadelwatch
