/// \file
/// The messaging library between the tool and the process that controls it, as a contract.
///
/// A message is sent by an object on the stack that is constructed and destroyed; there is no send call. A library may
/// deliver it in either. Every text is a narrow string of the caller, which must outlive the message.
///
/// The library defines the name of this header. A build may link another library with the same classes in place of the
/// layer in this directory: see README.md.
#ifndef PROCESSMESSAGE_H
#define PROCESSMESSAGE_H

#include <string>

/// Base of all messages. No other message class declares a destructor.
class Message {
public:
    Message(const Message&) = delete;
    Message& operator=(const Message&) = delete;

protected:
    Message() = default;
    virtual ~Message();
};

/// The sender of the process. Created before the first message and destroyed at process exit.
class MessageSender {
public:
    /// Creates the sender on the first call and returns it. Later calls ignore the argument.
    ///
    /// @param pipeMode true connects the sender to the controlling process, false drops every message.
    static MessageSender& Instance(bool pipeMode);

    MessageSender(const MessageSender&) = delete;
    MessageSender& operator=(const MessageSender&) = delete;
    ~MessageSender();

private:
    explicit MessageSender(bool pipeMode);
};

/// An error.
class ErrorMessage : public Message {
public:
    ErrorMessage(int level, const std::string& text);
};

/// A new stage of the run.
class StateMessage : public Message {
public:
    StateMessage(int level, const std::string& text, bool active);
};

/// A range of the progress of the run. The object exists during the range.
class ProgressMessage : public Message {
public:
    /// Opens a range. Any value is valid, including not-a-number, infinities and step counts of zero or less.
    ///
    /// @param startPercent,endPercent the range in percent of the whole run.
    /// @param stepCount               number of steps in the range.
    ProgressMessage(double startPercent, double endPercent, int stepCount);

    /// Reports that the range has reached a step. Called for every node line, so it costs one comparison unless a report
    /// is due.
    ///
    /// @param step counts from 0; `stepCount` is the end of the range.
    void OnProgress(int step, bool flag);

private:
    double startPercent;
    double endPercent;
    int stepCount;
    int nextDueStep; ///< The first step that needs a report; INT_MAX if none does.
};

/// The run has failed. This or FinishMessage is the last message of every run.
class FailedMessage : public Message {
public:
    FailedMessage(int level, const std::string& text);
};

/// The run has finished and its result is complete.
class FinishMessage : public Message {
public:
    FinishMessage(int level, const std::string& text);
};

#endif
