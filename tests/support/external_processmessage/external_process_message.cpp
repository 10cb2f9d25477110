/// \file
/// Appends every call to the file that the environment variable EXTERNAL_PROCESSMESSAGE_FILE names.

#include "ProcessMessage.h"

#include <cstdlib>
#include <fstream>
#include <sstream>

namespace {

void append(const std::string& line) {
    const char* const fileName = std::getenv("EXTERNAL_PROCESSMESSAGE_FILE");
    std::ofstream file(fileName != nullptr ? fileName : "", std::ios::app);
    file.imbue(std::locale::classic());
    file << line << '\n';
}

template <typename... Values>
std::string listed(const Values&... values) {
    std::ostringstream list;
    list.imbue(std::locale::classic());
    list << std::boolalpha;
    ((list << ' ' << values), ...);
    return list.str();
}

} // namespace

Message::Message(const char* className_, int level_, const std::string& text_, const char* flags_)
    : className(className_), level(level_), text(&text_), flags(flags_) {}

Message::Message(const std::string& range) : className("ProgressMessage"), calls{className + range} {}

Message::~Message() {
    if (text != nullptr) {
        append(className + listed(level, *text) + flags);
    }
    for (const std::string& call : calls) {
        append(call);
    }
    append(std::string("end ") + className);
}

void Message::addCall(const std::string& call) {
    calls.push_back(call);
}

MessageSender& MessageSender::Instance(bool pipeMode) {
    append("Instance" + listed(pipeMode));
    static MessageSender instance(pipeMode);
    return instance;
}

MessageSender::MessageSender(bool pipeMode) {
    append("MessageSender" + listed(pipeMode));
}

MessageSender::~MessageSender() {
    append("~MessageSender");
}

ErrorMessage::ErrorMessage(int level, const std::string& text) : Message("ErrorMessage", level, text) {}

StateMessage::StateMessage(int level, const std::string& text, bool active)
    : Message("StateMessage", level, text, active ? " true" : " false") {}

ProgressMessage::ProgressMessage(double startPercent, double endPercent, int stepCount)
    : Message(listed(startPercent, endPercent, stepCount)) {}

void ProgressMessage::OnProgress(int step, bool flag) {
    addCall("OnProgress" + listed(step, flag));
}

FailedMessage::FailedMessage(int level, const std::string& text) : Message("FailedMessage", level, text) {}

FinishMessage::FinishMessage(int level, const std::string& text) : Message("FinishMessage", level, text) {}
