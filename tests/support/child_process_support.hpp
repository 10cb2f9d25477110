/// \file
/// Runs code in a child process whose descriptor 3 is a channel to this process.
#pragma once

#include <functional>
#include <ostream>
#include <string>

namespace vadelclip {

struct ChildOutcome {
    int status = 0;     ///< Exit status, or minus the number of the signal that ended the process.
    std::string output; ///< All bytes from the channel.

    bool operator==(const ChildOutcome&) const = default;
};

std::ostream& operator<<(std::ostream& output, const ChildOutcome& outcome);

enum class Reader { prompt, slow };

/// Runs a function in a child process with a pipe as its descriptor 3, and waits for the child.
///
/// SIGALRM ends a child that hangs.
ChildOutcome runWithPipe(const std::function<void()>& inChild, Reader reader = Reader::prompt);

/// The same, for a function that replaces descriptor 3: `aside` is a second descriptor of the pipe.
ChildOutcome runWithPipe(const std::function<void(int aside)>& inChild, Reader reader = Reader::prompt);

/// The same with a socket that preserves packets: the output has a "|" after the bytes of each write.
ChildOutcome runWithPackets(const std::function<void()>& inChild);

/// Returns true if two descriptors are open on the same file, and false if one of them is closed.
bool sameFile(int firstDescriptor, int secondDescriptor);

} // namespace vadelclip
