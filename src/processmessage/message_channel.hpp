/// \file
/// The connection to the controlling process: file descriptor 3, which that process has opened.
#pragma once

#include <string>

namespace vadelclip {

/// A connection that sends whole lines, or drops them if it is not open.
///
/// After a failed write (no reader, disk full) it drops every further line. It waits for a slow reader. The caller must
/// ignore SIGPIPE, or a write to a pipe without a reader ends the process. Trivially destructible, so it can be used until
/// the process ends.
class MessageChannel {
public:
    /// Opens the connection if descriptor 3 is open for writing. Uses a high close-on-exec duplicate of it, so that no
    /// file of the tool gets its number.
    void open();

    bool isOpen() const { return descriptor >= 0; }

    /// Sends one line, which includes its line feed, in one write.
    void send(const std::string& line);

    void close();

private:
    int descriptor = -1;
};

} // namespace vadelclip
