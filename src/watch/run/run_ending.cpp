#include "watch/run/run_ending.hpp"

#include "watch/exit_status.hpp"

#include <cstring>

namespace vadelwatch {

namespace {

/// The name of a signal without its "SIG".
std::string signalName(int number) {
    const char* const name = sigabbrev_np(number);
    return name == nullptr ? std::to_string(number) : name;
}

/// How the tool ended when a signal had asked it to.
std::string interruptedEnd(const RunRecord& record, const WatchTexts& texts) {
    const std::string signal = signalName(record.interruptedBy);
    if (record.end.signal != 0) {
        return filledIn(texts.interrupted, {signal});
    }
    if (record.end.exitStatus == finishedStatus) {
        return filledIn(texts.interruptedFinished, {signal});
    }
    return filledIn(texts.interruptedStatus, {signal, std::to_string(record.end.exitStatus)});
}

std::string abnormalEnd(const ToolEnd& end, const WatchTexts& texts) {
    if (end.signal != 0) {
        return filledIn(texts.endedBySignal, {signalName(end.signal), std::to_string(end.signal)});
    }
    return filledIn(texts.unknownStatus, {std::to_string(end.exitStatus)});
}

} // namespace

int statusOf(const ToolEnd& end) {
    const bool itsOwn = end.signal == 0 && (end.exitStatus == finishedStatus || end.exitStatus == toolFailedStatus);
    return itsOwn ? end.exitStatus : abnormalEndStatus;
}

std::vector<std::string> endingLines(const RunRecord& record, const std::string& outputDirectory,
                                     const WatchTexts& texts) {
    const int status = statusOf(record.end);
    std::vector<std::string> lines;
    if (status == toolFailedStatus && !record.closingText.empty()) {
        lines.push_back(record.closingText);
    }
    if (record.interruptedBy != 0) {
        lines.push_back(interruptedEnd(record, texts));
    } else if (status == abnormalEndStatus) {
        lines.push_back(abnormalEnd(record.end, texts));
    } else {
        return lines;
    }
    if (status != finishedStatus) {
        lines.back() += filledIn(texts.notComplete, {outputDirectory});
    }
    return lines;
}

} // namespace vadelwatch
