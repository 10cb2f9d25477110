/// \file
/// Our own implementation of ProcessMessage.h: JSON Lines to the controlling process in pipe mode, nothing otherwise.
/// The constructor of a message delivers it; the destructor does nothing.

#include <ProcessMessage.h>

#include "processmessage/message_channel.hpp"
#include "processmessage/message_lines.hpp"
#include "processmessage/progress_range.hpp"

namespace {

/// The state of the sender. It is not a member, because messages have no access to the sender.
struct SenderState {
    vadelclip::MessageChannel channel;
    int writtenTenths = vadelclip::noTenths;
};

constinit SenderState sender;

} // namespace

// This layer does not interpret levels and the `active` flag: it passes them to the controlling process unchanged.

Message::~Message() = default;

MessageSender& MessageSender::Instance(bool pipeMode) {
    static MessageSender instance(pipeMode);
    return instance;
}

MessageSender::MessageSender(bool pipeMode) {
    if (pipeMode) {
        sender.channel.open();
    }
}

MessageSender::~MessageSender() {
    sender.channel.close();
}

ErrorMessage::ErrorMessage(int level, const std::string& text) {
    if (sender.channel.isOpen()) {
        sender.channel.send(vadelclip::errorLine(level, text));
    }
}

StateMessage::StateMessage(int level, const std::string& text, bool active) {
    if (sender.channel.isOpen()) {
        sender.channel.send(vadelclip::stateLine(level, text, active));
    }
}

FailedMessage::FailedMessage(int level, const std::string& text) {
    if (sender.channel.isOpen()) {
        sender.channel.send(vadelclip::failedLine(level, text));
    }
}

FinishMessage::FinishMessage(int level, const std::string& text) {
    if (sender.channel.isOpen()) {
        sender.channel.send(vadelclip::finishLine(level, text));
    }
}

ProgressMessage::ProgressMessage(double startPercent_, double endPercent_, int stepCount_)
    : startPercent(startPercent_), endPercent(endPercent_), stepCount(stepCount_), nextDueStep(vadelclip::noDueStep) {
    if (sender.channel.isOpen()) {
        nextDueStep = vadelclip::firstDueStep({startPercent, endPercent, stepCount}, sender.writtenTenths);
    }
}

void ProgressMessage::OnProgress(int step, bool) {
    if (step < nextDueStep) {
        return;
    }
    const vadelclip::ProgressRange range{startPercent, endPercent, stepCount};
    const int tenths = vadelclip::tenthsAt(range, step);
    // The range of another file may have reported this value before. Only the end of the run is always reported.
    if (tenths > sender.writtenTenths || (tenths == vadelclip::finishedTenths && step >= stepCount)) {
        sender.channel.send(vadelclip::progressLine(tenths));
        sender.writtenTenths = tenths;
    }
    nextDueStep = sender.channel.isOpen() ? vadelclip::firstDueStep(range, sender.writtenTenths) : vadelclip::noDueStep;
}
