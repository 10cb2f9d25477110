#include "watch/run/message_stream.hpp"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <map>

namespace vadelwatch {

namespace {

using Json = nlohmann::json;

/// Returns the bytes as a JSON string, with U+FFFD for what is not UTF-8, exactly as the tool does in its messages.
std::string quoted(std::string_view bytes) {
    return Json(bytes).dump(-1, ' ', false, Json::error_handler_t::replace);
}

} // namespace

void LineSplitter::feed(std::string_view bytes, const LineConsumer& consume) {
    std::size_t end = incomplete.size();
    incomplete += bytes;
    std::size_t start = 0;
    while ((end = incomplete.find('\n', end)) != std::string::npos) {
        consume(std::string_view(incomplete).substr(start, end - start));
        start = ++end;
    }
    incomplete.erase(0, start);
}

void LineSplitter::finish(const LineConsumer& consume) {
    if (!incomplete.empty()) {
        consume(incomplete);
        incomplete.clear();
    }
}

Message parseMessage(std::string_view line) {
    static const std::map<std::string, MessageKind> kinds{{"error", MessageKind::error},
                                                          {"state", MessageKind::state},
                                                          {"progress", MessageKind::progress},
                                                          {"failed", MessageKind::failed},
                                                          {"finish", MessageKind::finish}};
    Message message;
    const Json object = Json::parse(line, nullptr, false);
    message.isJson = !object.is_discarded();
    try {
        const auto kind = kinds.find(object.at("type").get<std::string>());
        if (kind == kinds.end()) {
            message.kind = MessageKind::other;
            return message;
        }
        if (kind->second == MessageKind::progress) {
            message.percent = std::clamp(object.at("percent").get<double>(), 0.0, 100.0);
        } else {
            message.text = object.at("text").get<std::string>();
        }
        message.kind = kind->second;
    } catch (const Json::exception&) {
        // A key is missing or has another type, so the message stays unreadable.
    }
    return message;
}

std::string logLine(double seconds, std::string_view line, const Message& message) {
    return message.isJson ? fmt::format("{{\"seconds\":{:.6f},\"message\":{}}}\n", seconds, line)
                          : fmt::format("{{\"seconds\":{:.6f},\"line\":{}}}\n", seconds, quoted(line));
}

void ErrorEcho::shown(std::string_view consoleLine) {
    lines += Json::parse(quoted(consoleLine)).get<std::string>();
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
