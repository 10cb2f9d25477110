/// \file
/// Watching one run from its first message to its end: everything that comes from the tool goes to the display, the log
/// and the record of what happened.
#pragma once

#include "watch/check/message_log.hpp"
#include "watch/check/node_files.hpp"
#include "watch/run/error_echo.hpp"
#include "watch/run/message_stream.hpp"
#include "watch/run/run_signals.hpp"
#include "watch/run/tool_process.hpp"
#include "watch/show/own_output.hpp"
#include "watch/show/progress_display.hpp"
#include "watch/show/progress_measure.hpp"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

namespace vadelwatch {

/// What a run has said about itself.
struct RunRecord {
    ToolEnd end;
    int interruptedBy = 0;    ///< The last signal that asked for the end, 0 if none did.
    double seconds = 0.0;     ///< From the start of the tool to its end.
    std::uint64_t passes = 0; ///< State messages: one for each node file.
    std::string closingText;  ///< Of the finish or failed message.
    std::vector<std::string> errors;
};

class RunWatcher {
public:
    /// All of these outlive the watcher. The tool has just been started.
    ///
    /// @param displayOutput where the display writes to.
    RunWatcher(ToolProcess& toolProcess, ProgressDisplay& progressDisplay, OwnOutput& displayOutput,
               MessageLog& messageLog, const NodeLineCount& nodeLineCount);

    /// Returns when the tool has ended and everything it sent has been dealt with. The display is left without a bar.
    /// What has found no room in the display's output or in the log is still kept there: nothing is waited for while
    /// the signals are taken here.
    RunRecord watch(const RunSignals& signals);

private:
    /// One pipe from the tool. It is read in blocks and cut into lines.
    struct Source {
        explicit Source(int pipe);

        /// Reads what is there, up to a block. Empty if there is nothing now; `open` is false from the end of the
        /// stream on. Valid until the next call.
        std::string_view readBlock();

        /// Ends the stream behind what has been written so far.
        void endBehindWhatIsThere();

        int descriptor;
        std::size_t readable = std::numeric_limits<std::size_t>::max(); ///< Bytes up to the end, where that is known.
        bool open = true;
        std::vector<char> block;
        LineSplitter lines;
    };

    bool mayRead() const;
    void waitForSomething(const RunSignals& signals);
    void takeSignals(const RunSignals& signals);
    bool readMessages();
    bool readConsole();
    void readTheRest();
    void finishLines();
    void takeConsoleLine(std::string_view line);
    void takeMessageLine(std::string_view line);
    void takeMessage(const Message& message, std::string_view line);
    void showProgress();
    ProgressFigures figures() const;
    double secondsSinceStart() const;

    ToolProcess& tool;
    ProgressDisplay& display;
    OwnOutput& shown;
    MessageLog& log;
    const NodeLineCount& lineCount;
    std::chrono::steady_clock::time_point startTime = std::chrono::steady_clock::now();
    Source channel;
    Source console;
    ErrorEcho echo;
    RunRecord record;
    ProgressMeasure progress;
    bool ended = false;
};

} // namespace vadelwatch
