#include "watch/exit_status.hpp"

#include "watch/show/messages.hpp"

#include <cstring>

namespace vadelwatch {

namespace {

/// Returns the name of a signal without its "SIG".
std::string signalName(int number) {
    const char* const name = sigabbrev_np(number);
    return name == nullptr ? std::to_string(number) : name;
}

std::string abnormalEnd(const ToolEnd& end) {
    if (end.signal != 0) {
        return formatMessage("Vadelwatch: Vadelclip was ended by signal {1} (SIG{0}).", signalName(end.signal),
                             std::to_string(end.signal));
    }
    return formatMessage("Vadelwatch: Vadelclip ended abnormally, with exit status {0}.",
                         std::to_string(end.exitStatus));
}

/// Returns the line about the end of a tool that this signal asked to end.
std::string interruptedEnd(const ToolEnd& end, const std::string& signal) {
    if (end.signal != 0) {
        return formatMessage("Vadelwatch: interrupted by SIG{0}, Vadelclip has ended.", signal);
    }
    return end.exitStatus == finishedStatus
               ? formatMessage("Vadelwatch: interrupted by SIG{0}, but Vadelclip finished.", signal)
               : formatMessage("Vadelwatch: interrupted by SIG{0}, Vadelclip has ended with exit status {1}.", signal,
                               std::to_string(end.exitStatus));
}

} // namespace

int statusOf(const ToolEnd& end) {
    const bool isKnown = end.signal == 0 && (end.exitStatus == finishedStatus || end.exitStatus == toolFailedStatus);
    return isKnown ? end.exitStatus : abnormalEndStatus;
}

std::string incompleteOutput(const std::string& outputDirectory) {
    return formatMessage("The output in {0} is not complete.", outputDirectory);
}

std::vector<std::string> endingLines(const RunRecord& record, const std::string& outputDirectory) {
    const int status = statusOf(record.end);
    std::vector<std::string> lines;
    if (status == toolFailedStatus && !record.closingText.empty()) {
        lines.push_back(record.closingText);
    }
    if (record.interruptedBy != 0 || status == abnormalEndStatus) {
        lines.push_back(record.interruptedBy == 0 ? abnormalEnd(record.end)
                                                  : interruptedEnd(record.end, signalName(record.interruptedBy)));
        lines.back() += status == finishedStatus ? "" : ' ' + incompleteOutput(outputDirectory);
    }
    return lines;
}

} // namespace vadelwatch
