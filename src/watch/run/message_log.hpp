/// \file
/// Writes the file of --log: every message with the seconds since the start, as JSON Lines.
#pragma once

#include "watch/run/message_stream.hpp"
#include "watch/show/own_output.hpp"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace vadelwatch {

/// Returns one line of the log, with its line feed: `{"seconds":1.25,"message":{...}}` with the message byte for byte,
/// or `{"seconds":1.25,"line":"..."}` for a line that is not JSON, with U+FFFD for bytes that are not UTF-8.
std::string logLine(double seconds, std::string_view line, const Message& message);

class MessageLog {
public:
    MessageLog() = default;
    MessageLog(const MessageLog&) = delete;
    MessageLog& operator=(const MessageLog&) = delete;
    ~MessageLog();

    /// Creates or empties the file. With an empty path there is no log, and every message is dropped.
    /// @return 0, or an errno if the file cannot be opened.
    int open(const std::string& path);

    /// Adds a message to the log and returns at once.
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
