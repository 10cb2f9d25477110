#include "watch/watch_run.hpp"

#include "process/child_process.hpp"
#include "watch/check/boundary_facts.hpp"
#include "watch/check/input_report.hpp"
#include "watch/check/output_check.hpp"
#include "watch/check/own_files.hpp"
#include "watch/exit_status.hpp"
#include "watch/run/phase_watch.hpp"
#include "watch/run/run_signals.hpp"
#include "watch/run/run_watcher.hpp"
#include "watch/run/tool_process.hpp"
#include "watch/show/messages.hpp"
#include "watch/show/progress_display.hpp"
#include "watch/run_summary.hpp"
#include "watch/watch_results.hpp"

#include <boost/algorithm/string/replace.hpp>
#include <fmt/chrono.h>

#include <algorithm>
#include <cstring>
#include <ctime>
#include <exception>
#include <filesystem>
#include <string>
#include <system_error>
#include <unistd.h>
#include <vector>

namespace vadelwatch {

namespace {

/// Returns the reason if a file of our own must not be written to this path, because the run uses it. Otherwise empty.
std::string whyNotThere(const WatchContext& watch, const std::string& path) {
    if (isInputOfRun(path, watch.directories.input, watch.options.boundaryFilePath)) {
        return translateMessage("the run reads it");
    }
    if (isSameFile(path, watch.directories.output)) {
        return translateMessage("the run makes its output directory there");
    }
    return {};
}

/// Reports that one of our own files cannot be written.
///
/// @return false.
bool refuse(WatchContext& watch, const std::string& path, const std::string& reason) {
    watch.errors.write(formatMessage("Vadelwatch: cannot write {0}: {1}", path, reason) + "\n");
    return false;
}

bool prepareMap(WatchContext& watch, const std::string& map) {
    const std::string reason = whyNotThere(watch, map);
    if (!reason.empty()) {
        return refuse(watch, map, reason);
    }
    const int error = whyUnwritable(map);
    if (error != 0) {
        return refuse(watch, map, std::strerror(error));
    }
    return true;
}

bool prepareLog(WatchContext& watch, const std::string& log) {
    const std::string reason = whyNotThere(watch, log);
    if (!reason.empty()) {
        return refuse(watch, log, reason);
    }
    for (const std::string& path : {watch.options.mapPath, watch.options.worldFilePath}) {
        if (!path.empty() && isSameFile(log, path)) {
            return refuse(watch, log, translateMessage("the map is written there"));
        }
    }
    const int error = watch.log.open(log);
    if (error != 0) {
        return refuse(watch, log, std::strerror(error));
    }
    return true;
}

/// Checks the map path and opens the log before the run starts, so that a bad path fails at once. The log is last,
/// because opening it empties the file.
///
/// @return false after a report, if one of them cannot be written, or would replace a file of the run or the other one.
bool prepareFiles(WatchContext& watch) {
    const std::string& map = watch.options.mapPath;
    const std::string& log = watch.options.logPath;
    const std::string& worldFile = watch.options.worldFilePath;
    return (map.empty() || prepareMap(watch, map)) && (worldFile.empty() || prepareMap(watch, worldFile)) &&
           (log.empty() || prepareLog(watch, log));
}

/// @return false after a report, if the tool cannot be started.
bool startTool(WatchContext& watch, ToolProcess& tool) {
    const std::string program = vadelclip::toolPathBesideExecutable();
    if (program.empty()) {
        watch.failure = translateMessage("Vadelwatch: cannot find Vadelclip: /proc/self/exe cannot be read");
        watch.errors.keep(watch.failure + "\n");
        return false;
    }
    const int error = tool.start(program, toolArguments(watch.options));
    if (error != 0) {
        watch.failure = formatMessage("Vadelwatch: cannot start {0}: {1}", program, std::strerror(error));
        watch.errors.keep(watch.failure + "\n");
        return false;
    }
    return true;
}

/// Starts the tool and watches it until it ends. Never waits for a reader of the output, because signals do not end
/// this process meanwhile.
///
/// @return false after a report, if the tool could not be started or not be watched to its end. It is not running then.
bool watchTool(WatchContext& watch, RunRecord& record) {
    const RunSignals signals;
    ProgressDisplay display(
        watch.progressMode, barStyleFromEnvironment(), [&watch](std::string_view text) { watch.errors.keep(text); },
        [] { return terminalColumns(STDERR_FILENO); });
    ToolProcess tool;
    if (!startTool(watch, tool)) {
        return false;
    }
    try {
        watch.lineCount.start(watch.directories.input);
        RunWatcher watcher(tool, display, watch.errors, watch.log, watch.lineCount, watch.directories.input);
        record = watcher.watch(signals);
        return true;
    } catch (const std::exception& error) {
        display.clear();
        display.flush();
        watch.failure =
            formatMessage("Vadelwatch: watching the run failed ({0}), so Vadelclip was ended.", error.what());
        watch.errors.keep(watch.failure + " " + incompleteOutput(watch.directories.output) + "\n");
        return false;
    }
}

RunSummary summaryOf(const RunRecord& record, const WatchContext& watch) {
    RunSummary summary;
    summary.closingText = record.closingText;
    summary.exitStatus = statusOf(record.end);
    summary.finished = summary.exitStatus == finishedStatus;
    summary.filesRead = record.passes;
    summary.seconds = record.seconds;
    summary.outputDirectory = watch.directories.output;
    summary.errors = record.errors;
    summary.signal = record.end.signal;
    summary.interruptedBy = record.interruptedBy;
    summary.options = watch.options;
    return summary;
}

/// Returns lines that may explain why the tool failed, and completes the summary.
std::vector<std::string> explainFailedRun(const RunRecord& record, WatchContext& watch, RunSummary& summary) {
    const std::vector<std::string> ending = endingLines(record, watch.directories.output);
    summary.failure = !record.errors.empty() ? record.errors.front() : ending.empty() ? "" : ending.front();
    if (summary.exitStatus != toolFailedStatus || record.interruptedBy != 0) {
        return {};
    }
    watch.lineCount.stop();
    watch.lineCount.wait();
    summary.input = reportEntries(watch.lineCount.nodeFiles());
    const std::string boundary = whyBoundaryNotFound(watch.options.boundaryFilePath);
    if (boundary.empty()) {
        return summary.input.entries == summary.input.passedOver.size() && !watch.options.quiet
                   ? inputSentences(summary.input)
                   : std::vector<std::string>{};
    }
    summary.failure = boundary;
    return {"Vadelwatch: " + boundary};
}

/// Checks the output of a finished run, reports on its input, and completes the summary.
///
/// @return lines about the difference, none if everything adds up.
std::vector<std::string> checkFinishedRun(const RunRecord& record, WatchContext& watch, RunSummary& summary) {
    const PhaseWatch checking(
        watch.progressMode, watch.errors, translateMessage("checking"),
        formatMessage("Vadelwatch: interrupted, so the output in {0} was not checked.", watch.directories.output));
    watch.lineCount.wait();
    const OutputCheck check = checkOutput(watch.directories.output);
    summary.filesWritten = check.files.size();
    summary.nodesRead = watch.lineCount.nodeLines();
    summary.nodesKept = check.nodeLines;
    summary.nodeCount = check.nodeCount;
    summary.addsUp = check.addsUp;
    if (!check.addsUp) {
        summary.exitStatus = checkFailedStatus;
    }
    const RunEvidence evidence{watch.lineCount.nodeFiles(), record.errors.size(), watch.directories.output};
    const Difference difference = findDifference(check, evidence);
    summary.failure = difference.size;
    summary.suspects = difference.suspects;
    summary.input = reportInput(watch.lineCount.nodeFiles(), check, watch.options.boundaryFilePath);
    return describeDifference(difference);
}

/// Returns the time in UTC as in 2026-11-22T09:30:00Z.
std::string timeText(std::time_t time) {
    return fmt::format("{:%Y-%m-%dT%H:%M:%SZ}", fmt::gmtime(time));
}

/// If the tool refused an output directory that existed, prints the command that removes it.
void hintAtOldOutput(WatchContext& watch, const RunRecord& record) {
    const std::string& output = watch.directories.output;
    const bool isNamed = std::any_of(record.errors.begin(), record.errors.end(), [&output](const std::string& error) {
        return error.find(output) != std::string::npos;
    });
    if (isNamed) {
        std::string quoted = boost::algorithm::replace_all_copy(output, "'", "'\\''");
        quoted.insert(quoted.begin(), '\'');
        quoted.push_back('\'');
        writeErrors(watch,
                    {formatMessage("Vadelwatch: if {0} is no longer needed, remove it: rm -r -- {1}", output, quoted)});
    }
}

void reportToolLanguage(WatchContext& watch) {
    const WatchOptions& options = watch.options;
    if (!options.quiet && toolLanguage(options) != options.language) {
        writeErrors(watch, {formatMessage("Vadelwatch: Vadelclip gets -lang={0}, because it does not accept {1}.",
                                          *toolLanguage(options), *options.language)});
    }
}

/// Concludes a run whose tool could not be started or not be watched to its end.
void concludeUnwatchedRun(WatchContext& watch, RunSummary& summary) {
    summary.failure = watch.failure;
    summary.exitStatus = abnormalEndStatus;
    summary.finished = false;
    closeLog(watch, summary);
    drawWantedMap(watch, summary);
    printSummary(watch, summary);
}

/// Checks the output of a finished run, closes the log, prints the summary and draws the map.
void concludeRun(WatchContext& watch, const RunRecord& record, RunSummary& summary) {
    std::vector<std::string> difference;
    if (summary.finished) {
        difference = checkFinishedRun(record, watch, summary);
    } else {
        writeErrors(watch, explainFailedRun(record, watch, summary));
    }
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
    const std::string startTime = timeText(std::time(nullptr));
    RunRecord record;
    const bool watched = watchTool(watch, record);
    watch.errors.write({});
    RunSummary summary = summaryOf(record, watch);
    summary.startTime = startTime;
    if (!watched) {
        concludeUnwatchedRun(watch, summary);
        return summary.exitStatus;
    }
    writeErrors(watch, endingLines(record, watch.directories.output));
    if (outputExisted && summary.exitStatus == toolFailedStatus) {
        hintAtOldOutput(watch, record);
    }
    concludeRun(watch, record, summary);
    return summary.exitStatus;
}

} // namespace vadelwatch
