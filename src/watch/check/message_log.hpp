/// \file
/// The file of --log: every message as it came, with the seconds since the start, as JSON Lines.
#pragma once

#include "watch/run/message_stream.hpp"
#include "watch/show/own_output.hpp"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace vadelwatch {

/// One line of the log, its line feed included: `{"seconds":1.25,"message":{...}}` with the message byte for byte, or
/// `{"seconds":1.25,"line":"..."}` for a line that is not JSON, with U+FFFD for what is not UTF-8.
std::string logLine(double seconds, std::string_view line, const Message& message);

class MessageLog {
public:
    MessageLog() = default;
    MessageLog(const MessageLog&) = delete;
    MessageLog& operator=(const MessageLog&) = delete;
    ~MessageLog();

    /// Empties or creates the file. An empty path is no log: everything is accepted and dropped.
    /// @return 0, or the errno of a file that cannot be opened.
    int open(const std::string& path);

    void add(double seconds, std::string_view line, const Message& message);

    /// Returns the number of bytes that are not written yet.
    std::size_t waitingBytes() const { return output ? output->waitingBytes() : 0; }

    /// Waits until every line is written and closes the file.
    /// @return 0, or the errno of the write or close that failed.
    int close();

private:
    int descriptor = -1;
    std::optional<OwnOutput> output;
};

} // namespace vadelwatch
