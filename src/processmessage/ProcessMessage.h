/// \file
/// The messaging library between the tool and the process that controls it, as a contract.
///
/// A message is sent by constructing an object on the stack and letting it end; there is no send call. The tool
/// never looks at a message again. Every text is a narrow string of the caller, which outlives the message.
///
/// The name of this header is the library's own. A build may link another library with the same classes in place of
/// the layer in this directory; README.md here says how.
#ifndef PROCESSMESSAGE_H
#define PROCESSMESSAGE_H

#include <string>

/// Base of all messages. No message class has a destructor of its own: each object ends through this one.
class Message {
public:
    Message(const Message&) = delete;
    Message& operator=(const Message&) = delete;

protected:
    Message() = default;
    virtual ~Message();
};

/// The one sender of the process. It is made before the first message and destroyed at process exit.
class MessageSender {
public:
    /// Creates the sender on the first call and returns it. Only the first call's argument counts.
    ///
    /// @param pipeMode true connects the sender to the controlling process, false drops every message.
    static MessageSender& Instance(bool pipeMode);

    MessageSender(const MessageSender&) = delete;
    MessageSender& operator=(const MessageSender&) = delete;
    ~MessageSender();

private:
    explicit MessageSender(bool pipeMode);
};

/// Something went wrong. Delivered by construction.
class ErrorMessage : public Message {
public:
    ErrorMessage(int level, const std::string& text);
};

/// The tool has entered a new stage of its work. Delivered by construction.
class StateMessage : public Message {
public:
    StateMessage(int level, const std::string& text, bool active);
};

/// A range of the run's progress. Lives as long as the range.
class ProgressMessage : public Message {
public:
    /// Opens a range. All values are accepted, not-a-number, infinities and zero or negative step counts included.
    ///
    /// @param startPercent,endPercent the range in percent of the whole run.
    /// @param stepCount               number of steps in the range.
    ProgressMessage(double startPercent, double endPercent, int stepCount);

    /// Reports that the range has reached a step. Called once per node line, so it costs a comparison unless a
    /// report is due.
    ///
    /// @param step counts from 0; `stepCount` is the end of the range.
    void OnProgress(int step, bool flag);

private:
    double startPercent;
    double endPercent;
    int stepCount;
    int nextDueStep; ///< The first step that makes a report necessary. INT_MAX stands for "none".
};

/// The run ended without a result. One of this and FinishMessage is the last message of every run.
class FailedMessage : public Message {
public:
    FailedMessage(int level, const std::string& text);
};

/// The run ended with its result complete.
class FinishMessage : public Message {
public:
    FinishMessage(int level, const std::string& text);
};

#endif
