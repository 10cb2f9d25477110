/// \file
/// The way out to the controlling process: file descriptor 3, which that process opened for the tool.
#pragma once

#include <string>

namespace vadelclip {

/// A connection that takes whole lines, or drops them when there is no one to talk to.
///
/// A failed write (the reader is gone, the disk is full) silences it for good; a slow reader is waited for.
/// That a write to a vanished reader fails and does not end the process is for the process to see to (SIGPIPE).
/// Trivially destructible, so it outlives every other object of the process.
class MessageChannel {
public:
    /// Connects to descriptor 3 if that is open for writing; drops every line otherwise. The descriptor is duplicated
    /// to a high close-on-exec one, so no file of the tool can ever land on it.
    void open();

    bool isOpen() const { return descriptor >= 0; }

    /// Hands over one line, its line feed included, in one write.
    void send(const std::string& line);

    void close();

private:
    int descriptor = -1;
};

} // namespace vadelclip
