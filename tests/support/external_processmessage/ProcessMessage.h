/// \file
/// The same classes as in the tool's own contract, with private parts of another kind: messages that hold their text
/// and are delivered at their end.
#pragma once

#include <string>
#include <vector>

class Message {
protected:
    Message(std::string className, std::string values);
    virtual ~Message();

    void addCall(const std::string& call);

private:
    std::string className;
    std::vector<std::string> calls;
};

class MessageSender {
public:
    static MessageSender& Instance(bool pipeMode);
    ~MessageSender();

private:
    MessageSender(bool pipeMode);
};

class ErrorMessage : public Message {
public:
    ErrorMessage(int level, const std::string& text);
};

class StateMessage : public Message {
public:
    StateMessage(int level, const std::string& text, bool active);
};

class ProgressMessage : public Message {
public:
    ProgressMessage(double startPercent, double endPercent, int stepCount);
    void OnProgress(int step, bool flag);
};

class FailedMessage : public Message {
public:
    FailedMessage(int level, const std::string& text);
};

class FinishMessage : public Message {
public:
    FinishMessage(int level, const std::string& text);
};
