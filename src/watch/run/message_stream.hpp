/// \file
/// Reads what the tool writes: splits streams into lines, parses messages, and finds errors that were shown already.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

namespace vadelwatch {

/// Splits a stream of bytes into lines. Blocks may end anywhere in a line. Every byte is read once.
class LineSplitter {
public:
    using LineConsumer = std::function<void(std::string_view line)>;

    /// Passes on each line that these bytes complete, without its line feed. A line is valid during the call.
    void feed(std::string_view bytes, const LineConsumer& consume);

    /// At the end of the stream: passes on the bytes after the last line feed, if there are any.
    void finish(const LineConsumer& consume);

private:
    std::string incomplete;
};

enum class MessageKind {
    error,
    state,
    progress,
    failed,
    finish,
    other,     ///< A JSON object with an unknown "type".
    unreadable ///< Not JSON, or JSON that is not a message.
};

struct Message {
    MessageKind kind = MessageKind::unreadable;
    bool isJson = false;
    std::string text;     ///< Of error, state, failed and finish.
    double percent = 0.0; ///< Of progress: 0 to 100.
};

/// Reads one line of the channel. Never fails: a line that cannot be read is `unreadable`.
Message parseMessage(std::string_view line);

/// Returns one line of the log, with its line feed: `{"seconds":1.25,"message":{...}}` with the message byte for byte,
/// or `{"seconds":1.25,"line":"..."}` for a line that is not JSON, with U+FFFD for bytes that are not UTF-8.
std::string logLine(double seconds, std::string_view line, const Message& message);

/// Remembers the console lines that were shown and finds the error messages that repeat them. The tool reports every
/// error twice, on its console and then as a message; people see it once.
///
/// The tool flushes a console line before it sends the message, so the line can be read when the message has been read.
/// A text may contain line feeds.
class ErrorEcho {
public:
    /// Remembers a console line, without its line feed. Any bytes.
    void shown(std::string_view consoleLine);

    /// Returns true if the text of an error message was shown on the console. Forgets that line and all lines before
    /// it, because messages are in the order of the console.
    bool repeats(std::string_view errorText);

private:
    /// More than the console and the channel can hold between the tool and Vadelwatch.
    static constexpr std::size_t rememberedBytes = 1 << 20;

    std::string lines;    ///< In UTF-8, each with its line feed.
    std::size_t used = 0; ///< Start of the lines that no message has repeated yet.
};

} // namespace vadelwatch
