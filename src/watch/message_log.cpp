#include "watch/message_log.hpp"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

std::string logLine(double seconds, std::string_view line, const Message& message) {
    if (message.isJson) {
        return fmt::format("{{\"seconds\":{:.6f},\"message\":{}}}\n", seconds, line);
    }
    const std::string quoted = nlohmann::json(line).dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
    return fmt::format("{{\"seconds\":{:.6f},\"line\":{}}}\n", seconds, quoted);
}

bool MessageLog::open(const std::string& path) {
    wanted = !path.empty();
    if (wanted) {
        file.open(path, std::ios::binary);
    }
    return !wanted || file.is_open();
}

void MessageLog::add(double seconds, std::string_view line, const Message& message) {
    if (wanted) {
        file << logLine(seconds, line, message);
    }
}

void MessageLog::flush() {
    if (wanted) {
        file.flush();
    }
}

bool MessageLog::close() {
    if (wanted) {
        file.close();
    }
    return !wanted || !file.fail();
}
