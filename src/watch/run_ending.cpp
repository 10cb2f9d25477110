#include "watch/run_ending.hpp"

#include "watch/exit_status.hpp"

#include <cstring>

namespace {

/// The name of a signal without its "SIG".
std::string signalName(int number) {
    const char* const name = sigabbrev_np(number);
    return name == nullptr ? std::to_string(number) : name;
}

std::string abnormalEnd(const RunRecord& record, const WatchTexts& texts) {
    if (record.interruptedBy != 0) {
        return filledIn(texts.interrupted, {signalName(record.interruptedBy)});
    }
    const ToolEnd& end = record.end;
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

std::string endingLine(const RunRecord& record, const std::string& outputDirectory, const WatchTexts& texts) {
    if (statusOf(record.end) == toolFailedStatus) {
        return record.closingText;
    }
    return abnormalEnd(record, texts) + filledIn(texts.notComplete, {outputDirectory});
}
