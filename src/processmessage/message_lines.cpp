#include "processmessage/message_lines.hpp"

#include <nlohmann/json.hpp>

namespace vadelclip {

namespace {

using Json = nlohmann::json;

/// Only texts and numbers go through the JSON library, because destroying one of its objects allocates memory: without
/// memory the process would end.
std::string quoted(const std::string& text) {
    return Json(text).dump(-1, ' ', false, Json::error_handler_t::replace);
}

/// Returns the members of every message with a text, without the closing brace.
std::string textMembers(const char* type, int level, const std::string& text) {
    return std::string(R"({"type":")") + type + R"(","level":)" + std::to_string(level) + R"(,"text":)" + quoted(text);
}

} // namespace

std::string errorLine(int level, const std::string& text) {
    return textMembers("error", level, text) + "}\n";
}

std::string stateLine(int level, const std::string& text, bool active) {
    return textMembers("state", level, text) + R"(,"active":)" + (active ? "true" : "false") + "}\n";
}

std::string failedLine(int level, const std::string& text) {
    return textMembers("failed", level, text) + "}\n";
}

std::string finishLine(int level, const std::string& text) {
    return textMembers("finish", level, text) + "}\n";
}

std::string progressLine(int tenths) {
    return R"({"type":"progress","percent":)" + Json(tenths / 10.0).dump() + "}\n";
}

} // namespace vadelclip
