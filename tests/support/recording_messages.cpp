#include "support/recording_messages.hpp"

#include <ProcessMessage.h>

#include <cstdio>
#include <cstdlib>
#include <map>
#include <stdexcept>
#include <unistd.h>

namespace {

struct Recorder {
    std::vector<std::string> calls;
    std::map<const Message*, std::string> liveMessages;
    bool writesToDescriptor = false; ///< In an executable: writes each call to descriptor 3 at once.
};

Recorder& recorder() {
    // Never destroyed, because the destructor of the sender records a call at process exit.
    static Recorder* const instance = new Recorder;
    return *instance;
}

/// Simulates a library that fails: the first call equal to VADELCLIP_RECORDING_THROWS throws after it is recorded.
void throwIfChosen(const std::string& call) {
    static bool thrown = false;
    const char* const throwing = std::getenv("VADELCLIP_RECORDING_THROWS");
    if (!thrown && throwing != nullptr && call == throwing) {
        thrown = true;
        throw std::runtime_error("thrown by " + call);
    }
}

void record(const std::string& call) {
    recorder().calls.push_back(call);
    if (recorder().writesToDescriptor) {
        const std::string line = call + '\n';
        const auto written = write(3, line.data(), static_cast<unsigned int>(line.size()));
        static_cast<void>(written);
    }
}

void recordObject(const Message* message, const std::string& className, const std::string& values) {
    recorder().liveMessages[message] = className;
    record(className + " " + values);
    throwIfChosen(className + " " + values);
}

std::string escaped(const std::string& text) {
    std::string result;
    for (const char byte : text) {
        if (byte == '\\') {
            result += "\\\\";
        } else if (byte == '\n') {
            result += "\\n";
        } else {
            result += byte;
        }
    }
    return result;
}

std::string exact(double value) {
    char digits[40];
    std::snprintf(digits, sizeof digits, "%.17g", value);
    return digits;
}

std::string levelAndText(int level, const std::string& text) {
    return std::to_string(level) + " " + escaped(text);
}

const char* flagText(bool flag) {
    return flag ? "true" : "false";
}

} // namespace

const std::vector<std::string>& vadelclip::recordedCalls() {
    return recorder().calls;
}

void vadelclip::clearRecordedCalls() {
    recorder().calls.clear();
}

Message::~Message() {
    record("end " + recorder().liveMessages[this]);
    recorder().liveMessages.erase(this);
}

MessageSender& MessageSender::Instance(bool pipeMode) {
    static MessageSender instance(pipeMode);
    return instance;
}

MessageSender::MessageSender(bool pipeMode) {
    recorder().writesToDescriptor = true;
    const std::string call = pipeMode ? "MessageSender 1" : "MessageSender 0";
    record(call);
    throwIfChosen(call);
}

MessageSender::~MessageSender() {
    record("~MessageSender");
}

ErrorMessage::ErrorMessage(int level, const std::string& text) {
    recordObject(this, "ErrorMessage", levelAndText(level, text));
}

StateMessage::StateMessage(int level, const std::string& text, bool active) {
    recordObject(this, "StateMessage", std::to_string(level) + " " + flagText(active) + " " + escaped(text));
}

ProgressMessage::ProgressMessage(double startPercent_, double endPercent_, int stepCount_)
    : startPercent(startPercent_), endPercent(endPercent_), stepCount(stepCount_), nextDueStep(0) {
    recordObject(this, "ProgressMessage",
                 exact(startPercent) + " " + exact(endPercent) + " " + std::to_string(stepCount));
}

void ProgressMessage::OnProgress(int step, bool flag) {
    const std::string call = "OnProgress " + std::to_string(step) + " " + flagText(flag);
    record(call);
    throwIfChosen(call);
}

FailedMessage::FailedMessage(int level, const std::string& text) {
    recordObject(this, "FailedMessage", levelAndText(level, text));
}

FinishMessage::FinishMessage(int level, const std::string& text) {
    recordObject(this, "FinishMessage", levelAndText(level, text));
}
