#include "watch/run/message_log.hpp"

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
    close();
}

int MessageLog::open(const std::string& path) {
    if (path.empty()) {
        return 0;
    }
    constexpr mode_t everybody = 0666; // less the umask
    descriptor = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC | O_NOCTTY, everybody);
    if (descriptor == -1) {
        return errno;
    }
    output.emplace(descriptor);
    return 0;
}

void MessageLog::add(double seconds, std::string_view line, const Message& message) {
    if (output) {
        output->keep(logLine(seconds, line, message));
    }
}

int MessageLog::close() {
    if (!output) {
        return 0;
    }
    output->write({});
    const int failure = output->failure();
    output.reset();
    // Some file systems report only now that there was no space.
    const int closing = ::close(descriptor) == 0 ? 0 : errno;
    return failure != 0 ? failure : closing;
}

} // namespace vadelwatch
