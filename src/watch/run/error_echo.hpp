/// \file
/// The tool says every error twice: on its console, then as a message. People see it once.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace vadelwatch {

/// Remembers the console lines that were shown and finds the error messages that repeat them.
///
/// The tool flushes a console line before it sends the message, so by the time a message has been read, its line can be
/// read too. A text may have line feeds of its own.
class ErrorEcho {
public:
    /// A console line, without its line feed, that has been shown. Any bytes.
    void shown(std::string_view consoleLine);

    /// Whether the text of an error message has been shown on the console; that line is then used up, together with
    /// those before it, as messages keep the order of the console.
    bool repeats(std::string_view errorText);

private:
    /// More than the console and the channel can hold between the tool and us.
    static constexpr std::size_t rememberedBytes = 1 << 20;

    std::string lines;    ///< As UTF-8, each with its line feed.
    std::size_t used = 0; ///< Where the lines begin that no message has repeated yet.
};

} // namespace vadelwatch
