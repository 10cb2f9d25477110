#include "watch/watch_run.hpp"

#include "process/child_process.hpp"
#include "watch/check/input_report.hpp"
#include "watch/check/outlines.hpp"
#include "watch/check/output_difference.hpp"
#include "watch/check/own_files.hpp"
#include "watch/exit_status.hpp"
#include "watch/run/phase_watch.hpp"
#include "watch/run/run_signals.hpp"
#include "watch/run/run_watcher.hpp"
#include "watch/run/tool_process.hpp"
#include "watch/run_summary.hpp"
#include "watch/show/messages.hpp"
#include "watch/show/progress_display.hpp"
#include "watch/watch_results.hpp"

#include <boost/algorithm/string/replace.hpp>
#include <fmt/chrono.h>

#include <algorithm>
#include <cstring>
#include <ctime>
#include <exception>
#include <filesystem>
#include <optional>
#include <string>
#include <system_error>
#include <unistd.h>
#include <vector>

namespace vadelwatch {

namespace {

/// Returns why a file of our own cannot be written to this path, empty if it can.
std::string whyRefused(const WatchContext& watch, const std::string& path) {
    if (isInputOfRun(path, watch.directories.input, watch.options.boundaryFilePath)) {
        return translateMessage("the run reads it");
    }
    if (isSameFile(path, watch.directories.output)) {
        return translateMessage("the run makes its output directory there");
    }
    const int error = whyUnwritable(path);
    return error == 0 ? "" : std::strerror(error);
}

/// Checks the map path and opens the log before the run starts, so that a bad path fails at once. The log is last,
/// because opening it empties the file.
///
/// @return false after a report, if one of them cannot be written, or would replace a file of the run or the other one.
bool prepareFiles(WatchContext& watch) {
    const WatchOptions& options = watch.options;
    for (const std::string& path : {options.mapPath, options.worldFilePath, options.logPath}) {
        std::string reason = path.empty() ? "" : whyRefused(watch, path);
        if (reason.empty() && !path.empty() && path == options.logPath) {
            if (isSameFile(path, options.mapPath) || isSameFile(path, options.worldFilePath)) {
                reason = translateMessage("the map is written there");
            } else if (const int error = watch.log.open(path)) {
                reason = std::strerror(error);
            }
        }
        if (!reason.empty()) {
            watch.errors.write(formatMessage("Vadelwatch: cannot write {0}: {1}", path, reason) + "\n");
            return false;
        }
    }
    return true;
}

/// Starts the tool.
///
/// @return why it could not be started, empty on success.
std::string startTool(const WatchContext& watch, ToolProcess& tool) {
    const std::string program = vadelclip::toolPathNextToExecutable();
    if (program.empty()) {
        return translateMessage("Vadelwatch: cannot find Vadelclip: /proc/self/exe cannot be read");
    }
    const int error = tool.start(program, toolArguments(watch.options));
    return error == 0 ? "" : formatMessage("Vadelwatch: cannot start {0}: {1}", program, std::strerror(error));
}

/// Starts the tool and watches it until it ends. Never waits for a reader of the output, because signals do not end
/// this process meanwhile.
///
/// @return why the tool could not be started or not be watched to its end, after a report; it is not running then. Empty
///         on success.
std::string watchTool(WatchContext& watch, RunRecord& record) {
    const RunSignals signals;
    ProgressDisplay display = displayOnStandardError(watch.progressMode, watch.errors);
    ToolProcess tool;
    std::string failure = startTool(watch, tool);
    std::string consequence;
    try {
        if (failure.empty()) {
            watch.lineCount.start(watch.directories.input);
            RunWatcher watcher(tool, display, watch.errors, watch.log, watch.lineCount, watch.directories.input);
            record = watcher.watch(signals);
            watch.barWasShown = display.hasDrawn();
            return {};
        }
    } catch (const std::exception& error) {
        display.clear();
        display.flush();
        failure = formatMessage("Vadelwatch: watching the run failed ({0}), so Vadelclip was ended.", error.what());
        consequence = " " + incompleteOutput(watch.directories.output);
    }
    watch.errors.keep(failure + consequence + "\n");
    return failure;
}

/// Returns a hint if the input path has no parent: the tool finds no directory then, for example for "in" or "..".
std::string hintAtParent(const std::string& inputPath) {
    const bool isBare = !inputPath.empty() && inputPath.find('/') == std::string::npos;
    return isBare ? formatMessage("the input directory needs a parent in its name: try ./{0}", inputPath) : "";
}

/// Returns lines that may explain why the tool failed, and completes the summary.
std::vector<std::string> explainFailedRun(WatchContext& watch, RunSummary& summary) {
    const std::vector<std::string>& errors = summary.record.errors;
    const std::vector<std::string> ending = endingLines(summary.record, watch.directories.output);
    summary.failure = !errors.empty() ? errors.front() : ending.empty() ? "" : ending.front();
    if (summary.exitStatus != toolFailedStatus || summary.record.interruptedBy != 0) {
        return {};
    }
    watch.lineCount.stop();
    watch.lineCount.wait();
    summary.input = reportEntries(watch.lineCount.nodeFiles());
    // The tool reads the boundary file first.
    std::string reason = whyBoundaryNotFound(watch.options.boundaryFilePath);
    if (reason.empty()) {
        reason = hintAtParent(watch.options.inputDirectoryPath);
    }
    if (!reason.empty()) {
        summary.failure = reason;
        return {"Vadelwatch: " + reason};
    }
    const bool hasNoNodeFile = summary.input.entries == summary.input.passedOver.size();
    return hasNoNodeFile && !watch.options.quiet ? inputSentences(summary.input) : std::vector<std::string>{};
}

/// Checks the output of a finished run, reports on its input, and completes the summary.
///
/// @return lines about the difference, none if everything adds up.
std::vector<std::string> checkFinishedRun(WatchContext& watch, RunSummary& summary) {
    PhaseWatch checking(watch.progressMode, watch.barWasShown, watch.errors, translateMessage("checking"),
                        [&watch, unchecked = summary](int signal) {
                            writeInterruption(
                                watch, unchecked, signal,
                                formatMessage("Vadelwatch: interrupted, so the output in {0} was not checked.",
                                              watch.directories.output));
                        });
    watch.lineCount.wait();
    summary.nodesRead = watch.lineCount.nodeLines();
    const OutputCheck& check = summary.check.emplace(
        checkOutput(watch.directories.output, [&checking](double percent) { checking.show(percent); }));
    if (!check.addsUp) {
        summary.exitStatus = checkFailedStatus;
    }
    const RunEvidence evidence{watch.lineCount.nodeFiles(), summary.record.errors.size(), watch.directories.output};
    const Difference difference = findDifference(check, evidence);
    summary.failure = difference.size;
    summary.suspects = difference.suspects;
    summary.input = reportInput(watch.lineCount.nodeFiles(), check, watch.options.boundaryFilePath);
    return describeDifference(difference);
}

/// Returns true if a command that removes the output directory is safe to print: it removes no input, `rm` accepts the
/// name, and the name is shown as it is.
bool isRemovable(const WatchContext& watch) {
    const std::filesystem::path output = watch.directories.output;
    const std::filesystem::path name = output.has_filename() ? output : output.parent_path();
    return name.filename() != "." && name.filename() != ".." && shownName(output.native()) == output.native() &&
           !isWithin(watch.directories.input, output) && !isWithin(watch.options.boundaryFilePath, output);
}

/// If the tool refused an output directory that existed, prints the command that removes it.
void hintAtOldOutput(WatchContext& watch, const RunRecord& record) {
    const std::string& output = watch.directories.output;
    const bool isNamed = std::ranges::any_of(
        record.errors, [&output](const std::string& error) { return error.find(output) != std::string::npos; });
    if (isNamed && isRemovable(watch)) {
        const std::string quoted = fmt::format("'{}'", boost::algorithm::replace_all_copy(output, "'", "'\\''"));
        writeErrors(watch,
                    {formatMessage("Vadelwatch: if {0} is no longer needed, remove it: rm -r -- {1}", output, quoted)});
    }
}

void reportToolLanguage(WatchContext& watch) {
    const WatchOptions& options = watch.options;
    const std::optional<std::string> language = vadelclip::toolLanguage(options.language);
    if (!options.quiet && language != options.language) {
        writeErrors(watch, {formatMessage("Vadelwatch: Vadelclip gets -lang={0}, because it does not accept {1}.",
                                          *language, *options.language)});
    }
}

/// Closes the log, prints the summary and draws the map.
void concludeRun(WatchContext& watch, RunSummary& summary, const std::vector<std::string>& difference) {
    closeLog(watch, summary);
    // The map needs the most time and memory: if it fails, everything that people read is written.
    if (!watch.options.json) {
        printSummary(watch, summary);
    }
    writeErrors(watch, difference);
    drawWantedMap(watch, summary);
    // The object holds the exit status, and the map may change it.
    if (watch.options.json) {
        printSummary(watch, summary);
    }
}

} // namespace

int watchRun(const WatchOptions& options) {
    WatchContext watch(options);
    if (!prepareFiles(watch)) {
        return usageErrorStatus;
    }
    reportToolLanguage(watch);
    std::error_code error;
    const bool outputExisted = std::filesystem::exists(watch.directories.output, error);
    RunSummary summary;
    summary.options = options;
    summary.outputDirectory = watch.directories.output;
    summary.startTime = fmt::format("{:%Y-%m-%dT%H:%M:%SZ}", fmt::gmtime(std::time(nullptr)));
    summary.failure = watchTool(watch, summary.record);
    // Waits until the lines of the run are written: signals end the process again.
    watch.errors.write({});
    std::vector<std::string> difference;
    if (!summary.failure.empty()) {
        summary.exitStatus = abnormalEndStatus;
    } else {
        summary.exitStatus = statusOf(summary.record.end);
        summary.finished = summary.exitStatus == finishedStatus;
        writeErrors(watch, endingLines(summary.record, watch.directories.output));
        if (outputExisted && summary.exitStatus == toolFailedStatus) {
            hintAtOldOutput(watch, summary.record);
        }
        if (summary.finished) {
            difference = checkFinishedRun(watch, summary);
        } else {
            writeErrors(watch, explainFailedRun(watch, summary));
        }
    }
    concludeRun(watch, summary, difference);
    return summary.exitStatus;
}

} // namespace vadelwatch
