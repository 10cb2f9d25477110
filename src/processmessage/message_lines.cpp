#include "processmessage/message_lines.hpp"

#include <nlohmann/json.hpp>

namespace {

using Json = nlohmann::ordered_json;

std::string toLine(const Json& message) {
    return message.dump(-1, ' ', false, Json::error_handler_t::replace) + '\n';
}

Json textMessage(const char* type, int level, const std::string& text) {
    return {{"type", type}, {"level", level}, {"text", text}};
}

} // namespace

std::string errorLine(int level, const std::string& text) {
    return toLine(textMessage("error", level, text));
}

std::string stateLine(int level, const std::string& text, bool active) {
    Json message = textMessage("state", level, text);
    message["active"] = active;
    return toLine(message);
}

std::string failedLine(int level, const std::string& text) {
    return toLine(textMessage("failed", level, text));
}

std::string finishLine(int level, const std::string& text) {
    return toLine(textMessage("finish", level, text));
}

std::string progressLine(int tenths) {
    return toLine({{"type", "progress"}, {"percent", tenths / 10.0}});
}
