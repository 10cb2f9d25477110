#include "watch/message_log.hpp"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <fcntl.h>
#include <sys/types.h>
#include <unistd.h>

std::string logLine(double seconds, std::string_view line, const Message& message) {
    if (message.isJson) {
        return fmt::format("{{\"seconds\":{:.6f},\"message\":{}}}\n", seconds, line);
    }
    const std::string quoted = nlohmann::json(line).dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
    return fmt::format("{{\"seconds\":{:.6f},\"line\":{}}}\n", seconds, quoted);
}

MessageLog::~MessageLog() {
    if (descriptor != -1) {
        ::close(descriptor);
    }
}

bool MessageLog::open(const std::string& path) {
    if (path.empty()) {
        return true;
    }
    constexpr mode_t everybody = 0666; // as far as the umask lets them
    descriptor = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC | O_NOCTTY, everybody);
    file = OwnOutput(descriptor);
    return descriptor != -1;
}

void MessageLog::add(double seconds, std::string_view line, const Message& message) {
    if (descriptor != -1) {
        file.keep(logLine(seconds, line, message));
    }
}

bool MessageLog::close() {
    file.write({});
    // Some file systems tell only now that there was no space.
    const bool closed = descriptor == -1 || ::close(descriptor) == 0;
    descriptor = -1;
    return closed && file.failure() == 0;
}
