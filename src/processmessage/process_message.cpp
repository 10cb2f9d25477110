/// \file
/// Our own layer behind ProcessMessage.h: JSON Lines to the controlling process in pipe mode, nothing otherwise.
/// Every message is delivered by its construction; its end does nothing.

#include <ProcessMessage.h>

#include "processmessage/message_channel.hpp"
#include "processmessage/message_lines.hpp"
#include "processmessage/progress_range.hpp"

namespace {

/// What the sender holds. It stands outside the sender, because messages have no way to it.
struct SenderState {
    vadelclip::MessageChannel channel;
    int writtenTenths = vadelclip::noTenths;
};

constinit SenderState sender;

} // namespace

// The flags and levels have no meaning of their own here: they travel to the controlling process as they are.

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
    // A step of another file may have shown this much already; only the end of the run is shown in every case.
    if (tenths > sender.writtenTenths || (tenths == vadelclip::finishedTenths && step >= stepCount)) {
        sender.channel.send(vadelclip::progressLine(tenths));
        sender.writtenTenths = tenths;
    }
    nextDueStep = sender.channel.isOpen() ? vadelclip::firstDueStep(range, sender.writtenTenths) : vadelclip::noDueStep;
}
