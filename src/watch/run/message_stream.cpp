#include "watch/run/message_stream.hpp"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <optional>

namespace vadelwatch {

namespace {

using Json = nlohmann::json;

MessageKind kindOf(const std::string& type) {
    if (type == "error") {
        return MessageKind::error;
    }
    if (type == "state") {
        return MessageKind::state;
    }
    if (type == "progress") {
        return MessageKind::progress;
    }
    if (type == "failed") {
        return MessageKind::failed;
    }
    return type == "finish" ? MessageKind::finish : MessageKind::other;
}

/// Returns the string under a key, or nothing.
std::optional<std::string> textAt(const Json& object, const char* key) {
    const auto found = object.find(key);
    if (found == object.end() || !found->is_string()) {
        return std::nullopt;
    }
    return found->get<std::string>();
}

void readProgress(const Json& object, Message& message) {
    const auto percent = object.find("percent");
    if (percent == object.end() || !percent->is_number()) {
        message.kind = MessageKind::unreadable;
        return;
    }
    message.percent = std::clamp(percent->get<double>(), 0.0, 100.0);
}

void readText(const Json& object, Message& message) {
    const std::optional<std::string> text = textAt(object, "text");
    if (!text) {
        message.kind = MessageKind::unreadable;
        return;
    }
    message.text = *text;
}

/// Replaces bytes that are not UTF-8 by U+FFFD, exactly as the tool does in its messages: with the same library.
std::string asUtf8(std::string_view bytes) {
    const std::string quoted = Json(bytes).dump(-1, ' ', false, Json::error_handler_t::replace);
    return Json::parse(quoted).get<std::string>();
}

} // namespace

void LineSplitter::feed(std::string_view bytes, const LineConsumer& consume) {
    std::size_t lineFeed = bytes.find('\n');
    while (lineFeed != std::string_view::npos) {
        if (incomplete.empty()) {
            consume(bytes.substr(0, lineFeed));
        } else {
            incomplete += bytes.substr(0, lineFeed);
            consume(incomplete);
            incomplete.clear();
        }
        bytes.remove_prefix(lineFeed + 1);
        lineFeed = bytes.find('\n');
    }
    incomplete += bytes;
}

void LineSplitter::finish(const LineConsumer& consume) {
    if (!incomplete.empty()) {
        consume(incomplete);
        incomplete.clear();
    }
}

Message parseMessage(std::string_view line) {
    Message message;
    const Json object = Json::parse(line, nullptr, false);
    message.isJson = !object.is_discarded();
    if (!object.is_object()) {
        return message;
    }
    const std::optional<std::string> type = textAt(object, "type");
    if (!type) {
        return message;
    }
    message.kind = kindOf(*type);
    if (message.kind == MessageKind::progress) {
        readProgress(object, message);
    } else if (message.kind != MessageKind::other) {
        readText(object, message);
    }
    return message;
}

void ErrorEcho::shown(std::string_view consoleLine) {
    lines += asUtf8(consoleLine);
    lines += '\n';
    if (lines.size() - used > rememberedBytes) {
        used = lines.find('\n', lines.size() - rememberedBytes / 2) + 1;
    }
    // Not for every line, so that each byte is moved at most once.
    if (used > rememberedBytes) {
        lines.erase(0, used);
        used = 0;
    }
}

bool ErrorEcho::repeats(std::string_view errorText) {
    const std::string wanted = std::string(errorText) + '\n';
    std::size_t at = lines.find(wanted, used);
    while (at != std::string::npos && at > used && lines[at - 1] != '\n') {
        at = lines.find(wanted, at + 1);
    }
    if (at == std::string::npos) {
        return false;
    }
    used = at + wanted.size();
    return true;
}

} // namespace vadelwatch
