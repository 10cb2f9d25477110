/// \file
/// Watches one run from its first message to its end.
#pragma once

#include "watch/check/node_files.hpp"
#include "watch/run/message_stream.hpp"
#include "watch/run/run_signals.hpp"
#include "watch/run/tool_process.hpp"
#include "watch/show/own_output.hpp"
#include "watch/show/progress_display.hpp"
#include "watch/show/progress_line.hpp"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>
#include <unistd.h>
#include <vector>

namespace vadelwatch {

/// What a run reported.
struct RunRecord {
    ToolEnd end;
    int interruptedBy = 0;    ///< The last signal that asked for the end, 0 if none did.
    double seconds = 0.0;     ///< From the start of the tool to its end.
    std::uint64_t passes = 0; ///< State messages, one for each node file.
    std::string closingText;  ///< Of the finish or failed message.
    std::vector<std::string> errors;
};

/// Passes on everything that the tool writes to the display, the log and the record of the run.
class RunWatcher {
public:
    /// All arguments must outlive the watcher. The tool has just been started.
    ///
    /// @param displayOutput the output that the display writes to.
    /// @param messageLog    receives every message with the seconds since the start.
    /// @param nodeDirectory the input directory.
    RunWatcher(ToolProcess& toolProcess, ProgressDisplay& progressDisplay, OwnOutput& displayOutput,
               OwnOutput& messageLog, const NodeLineCount& nodeLineCount, const std::string& nodeDirectory);

    /// Returns when the tool has ended and everything it wrote has been read. The bar is removed. The outputs may still
    /// hold text that is not written: this function never waits for a reader, so that signals are forwarded at once.
    RunRecord watch(const RunSignals& signals);

private:
    /// One pipe from the tool, read in blocks and split into lines.
    struct Source {
        explicit Source(int pipe);

        /// Reads the bytes that are in the pipe, one block at most. Returns nothing if there are none; after the end of
        /// the stream `open` is false. Valid until the next call.
        std::string_view readBlock();

        /// Ends the stream after the bytes that have been written so far.
        void endAfterWrittenBytes();

        int descriptor;
        std::size_t readable = std::numeric_limits<std::size_t>::max(); ///< Bytes up to the end, if that is known.
        bool open = true;
        std::vector<char> block;
        LineSplitter lines;
    };

    bool mayRead() const;
    void waitForEvent(const RunSignals& signals);
    void takeSignals(const RunSignals& signals);
    bool readMessages();
    bool readConsole();
    void readTheRest();
    void takeConsoleLine(std::string_view line);
    void takeMessageLine(std::string_view line);
    void showLine(std::string_view line);
    void showProgress();
    ProgressFigures figures() const;
    double secondsSinceStart() const;

    ToolProcess& tool;
    ProgressDisplay& display;
    OwnOutput& shown;
    OwnOutput& log;
    const NodeLineCount& lineCount;
    const std::string& directory;
    std::chrono::steady_clock::time_point startTime = std::chrono::steady_clock::now();
    Source channel;
    Source console;
    ErrorEcho echo;
    RunRecord record;
    ProgressMeasure progress;
    const bool onTerminal = isatty(STDERR_FILENO) == 1;
    bool ended = false;
};

} // namespace vadelwatch
