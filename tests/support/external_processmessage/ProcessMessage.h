/// \file
/// The same classes as in the contract of the tool, with other private members. A message keeps only a reference to its
/// text and is delivered in its destructor. If the text is destroyed before the message, the destructor reads freed
/// memory.
#pragma once

#include <string>
#include <vector>

class Message {
protected:
    Message(const char* className, int level, const std::string& text, const char* flags = "");
    explicit Message(const std::string& range);
    virtual ~Message();

    void addCall(const std::string& call);

private:
    const char* className;
    int level = 0;
    const std::string* text = nullptr; ///< The string of the caller; null in a progress range.
    const char* flags = "";
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
