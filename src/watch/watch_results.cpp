#include "watch/watch_results.hpp"

#include "watch/exit_status.hpp"
#ifdef VADELWATCH_MAP
#include "watch/map/picture.hpp"
#endif
#include "watch/show/messages.hpp"
#include "watch/show/progress_display.hpp"

#include <cstring>
#include <exception>
#include <limits>
#include <unistd.h>

namespace vadelwatch {

namespace {

/// Reports that one of our own files is missing or incomplete. The status of a failed run stays.
void reportFailure(WatchContext& watch, RunSummary& summary, const std::string& text) {
    writeErrors(watch, {text});
    if (summary.exitStatus == finishedStatus) {
        summary.exitStatus = usageErrorStatus;
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
        watch.errors.write(line + "\n");
    }
}

void closeLog(WatchContext& watch, RunSummary& summary) {
    const int error = watch.log.close();
    if (error != 0) {
        reportFailure(watch, summary,
                      formatMessage("Vadelwatch: cannot write {0}: {1}", watch.options.logPath, std::strerror(error)));
    }
}

#ifdef VADELWATCH_MAP
void drawWantedMap(WatchContext& watch, RunSummary& summary) {
    if (watch.options.mapPath.empty()) {
        return;
    }
    std::string problem;
    try {
        problem = drawMap(
            {watch.directories.input, watch.directories.output, watch.options.boundaryFilePath, watch.options.mapPath});
    } catch (const std::exception& error) {
        // For example without memory. The run itself has finished.
        problem = formatMessage("The map {0} cannot be drawn: {1}.", watch.options.mapPath, error.what());
    }
    if (!problem.empty()) {
        reportFailure(watch, summary, "Vadelwatch: " + problem);
    }
}
#else
void drawWantedMap(WatchContext&, RunSummary&) {}
#endif

void printSummary(WatchContext& watch, RunSummary& summary) {
    if (watch.options.json) {
        watch.output.write(summaryJson(summary));
    } else if (summary.finished && !watch.options.quiet) {
        watch.output.write(summaryText(summary, summaryColumns()));
    }
    if (watch.output.failure() != 0 && !watch.output.readerHasGone()) {
        reportFailure(
            watch, summary,
            formatMessage("Vadelwatch: cannot write the summary: {0}", std::strerror(watch.output.failure())));
    }
}

} // namespace vadelwatch
