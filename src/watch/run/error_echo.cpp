#include "watch/run/error_echo.hpp"

#include "watch/run/message_stream.hpp"

namespace vadelwatch {

void ErrorEcho::shown(std::string_view consoleLine) {
    // As the text of a message would come: bytes that are not UTF-8 are replaced in it.
    lines += asUtf8(consoleLine);
    lines += '\n';
    if (lines.size() - used > rememberedBytes) {
        used = lines.find('\n', lines.size() - rememberedBytes / 2) + 1;
    }
    // Rarely, so that every byte is moved once at most.
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
