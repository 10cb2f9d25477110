#include "watch/check/message_log.hpp"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <cerrno>
#include <fcntl.h>
#include <sys/types.h>
#include <unistd.h>

namespace vadelwatch {

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

int MessageLog::open(const std::string& path) {
    if (path.empty()) {
        return 0;
    }
    constexpr mode_t everybody = 0666; // as far as the umask lets them
    descriptor = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC | O_NOCTTY, everybody);
    const int error = descriptor == -1 ? errno : 0;
    file = OwnOutput(descriptor);
    return error;
}

void MessageLog::add(double seconds, std::string_view line, const Message& message) {
    if (descriptor != -1) {
        file.keep(logLine(seconds, line, message));
    }
}

int MessageLog::close() {
    file.write({});
    // Some file systems tell only now that there was no space.
    const int closing = descriptor == -1 || ::close(descriptor) == 0 ? 0 : errno;
    descriptor = -1;
    return file.failure() != 0 ? file.failure() : closing;
}

} // namespace vadelwatch
