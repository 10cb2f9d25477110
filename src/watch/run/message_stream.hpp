/// \file
/// From the bytes of the channel to messages: lines first, then what each line says.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

namespace vadelwatch {

/// Cuts a stream of bytes into lines, however the bytes are spread over the blocks. Every byte is looked at once.
class LineSplitter {
public:
    using LineConsumer = std::function<void(std::string_view line)>;

    /// Hands over each line that these bytes complete, without its line feed. A line is valid during the call.
    void feed(std::string_view bytes, const LineConsumer& consume);

    /// At the end of the stream: hands over what stands behind the last line feed, if there is anything.
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
    other,     ///< A JSON object with a "type" that we do not know.
    unreadable ///< Not JSON, or JSON that is no message.
};

struct Message {
    MessageKind kind = MessageKind::unreadable;
    bool isJson = false;
    std::string text;     ///< Of error, state, failed and finish.
    double percent = 0.0; ///< Of progress: 0 to 100.
};

/// Reads one line of the channel. Never fails: what cannot be read is `unreadable`.
Message parseMessage(std::string_view line);

/// Replaces what is not UTF-8 by U+FFFD, in the same way as the sender of messages does.
std::string asUtf8(std::string_view bytes);

} // namespace vadelwatch
