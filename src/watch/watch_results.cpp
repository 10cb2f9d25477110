#include "watch/watch_results.hpp"

#include "watch/exit_status.hpp"
#ifdef VADELWATCH_MAP
#include "watch/map/picture.hpp"
#include "watch/map/picture_file.hpp"
#endif
#include "watch/run/phase_watch.hpp"
#include "watch/run_summary_json.hpp"
#include "watch/show/messages.hpp"
#include "watch/show/progress_display.hpp"

#include <fmt/chrono.h>

#include <cstring>
#include <ctime>
#include <exception>
#include <filesystem>
#include <limits>
#include <system_error>

namespace vadelwatch {

namespace {

/// Reports that one of our own files is missing or incomplete. Does not change the status of a failed run.
void reportFailure(WatchContext& watch, RunSummary& summary, const std::string& text) {
    writeErrors(watch, {text});
    if (summary.exitStatus == finishedStatus) {
        summary.exitStatus = usageErrorStatus;
        summary.failure = text;
    }
}

/// Returns the columns of the terminal. Without a terminal they are unlimited.
std::size_t summaryColumns() {
    constexpr std::size_t unlimited = std::numeric_limits<std::size_t>::max();
    const int columns = isatty(STDOUT_FILENO) == 1 ? terminalColumns(STDOUT_FILENO) : 0;
    return columns > 0 ? static_cast<std::size_t>(columns) : unlimited;
}

} // namespace

void writeErrors(WatchContext& watch, const std::vector<std::string>& lines) {
    for (const std::string& line : lines) {
        // Texts of the tool are among them. `shownName` changes nothing that is already safe.
        watch.errors.write((isatty(STDERR_FILENO) == 1 ? shownName(line) : line) + "\n");
    }
}

void writeInterruption(WatchContext& watch, RunSummary summary, int signal, const std::string& sentence) {
    writeErrors(watch, {sentence});
    if (watch.options.json) {
        // The status that a shell reports for a process ended by this signal.
        summary.exitStatus = 128 + signal;
        summary.record.interruptedBy = signal;
        summary.failure = sentence;
        summary.whyNoMap = sentence;
        watch.output.write(summaryJson(summary));
    }
}

void closeLog(WatchContext& watch, RunSummary& summary) {
    const int error = watch.log.close();
    if (error != 0) {
        reportFailure(watch, summary,
                      formatMessage("Vadelwatch: cannot write {0}: {1}", watch.options.logPath, std::strerror(error)));
    }
}

// cppcheck-suppress constParameter ; changed only in a build with the map
void drawWantedMap(WatchContext& watch, RunSummary& summary) {
    const std::string& map = watch.options.mapPath;
    if (map.empty()) {
        summary.whyNoMap = translateMessage("not asked for");
        return;
    }
#ifdef VADELWATCH_MAP
    if (!summary.finished) {
        summary.whyNoMap = translateMessage("the run did not finish");
        std::error_code error;
        if (std::filesystem::is_regular_file(map, error)) {
            writeErrors(watch, {formatMessage("Vadelwatch: no map was drawn; {0} is from an earlier run.", map)});
        }
        return;
    }
    MapRequest request{watch.lineCount.nodeFiles(), watch.directories.input, watch.directories.output,
                       watch.options.boundaryFilePath, map};
    request.showsElevation = watch.options.mapColour == "elevation";
    request.size = readPictureSize(watch.options.mapSize).value_or(PictureSize());
    request.date = fmt::format("{:%Y-%m-%d %H:%M}", fmt::localtime(std::time(nullptr)));
    if (!summary.check->addsUp) {
        request.warning =
            translateMessage("Do not rely on this map: the output does not add up to total_node_count.txt");
    }
    std::string problem;
    try {
        PhaseWatch drawing(
            watch.progressMode, watch.barWasShown, watch.errors, translateMessage("drawing"), [&](int signal) {
                writeInterruption(watch, summary, signal,
                                  formatMessage("Vadelwatch: interrupted, so the map {0} was not drawn.", map));
            });
        request.nodes = summary.nodesRead.value_or(0);
        request.showPercent = [&drawing](double percent) { drawing.show(percent); };
        problem = drawMap(request);
    } catch (const std::exception& failure) {
        // For example, memory has run out. The run itself has finished.
        problem = formatMessage("The map {0} cannot be drawn: {1}.", map, failure.what());
    }
    summary.whyNoMap = problem;
    if (!problem.empty()) {
        reportFailure(watch, summary, "Vadelwatch: " + problem);
    }
#endif
}

void printSummary(WatchContext& watch, RunSummary& summary) {
    if (watch.options.json) {
        watch.output.write(summaryJson(summary));
    } else if (summary.check && !watch.options.quiet) {
        const bool onTerminal = isatty(STDOUT_FILENO) == 1;
        const bool hasColour = progressModeFor(STDOUT_FILENO, "auto") == ProgressMode::bar;
        if (onTerminal) {
            summary.record.closingText = shownName(summary.record.closingText);
        }
        watch.output.write(summaryText(summary, summaryColumns(), hasColour && barStyleFromEnvironment().colour));
    }
    if (watch.output.failure() != 0 && !watch.output.readerHasGone()) {
        reportFailure(
            watch, summary,
            formatMessage("Vadelwatch: cannot write the summary: {0}", std::strerror(watch.output.failure())));
    }
}

} // namespace vadelwatch
