/// \file
/// Code that runs in a process of its own, with a channel to this one as its descriptor 3.
#pragma once

#include <functional>
#include <ostream>
#include <string>

namespace vadelclip {

struct ChildOutcome {
    int status = 0;     ///< Exit status, or minus the number of the signal that ended the process.
    std::string output; ///< All that came through the channel.

    bool operator==(const ChildOutcome&) const = default;
};

std::ostream& operator<<(std::ostream& output, const ChildOutcome& outcome);

enum class Reader { prompt, slow };

/// Runs a function in a child process with a pipe as its descriptor 3, to the end of the child.
///
/// A child that hangs is ended by SIGALRM.
ChildOutcome runWithPipe(const std::function<void()>& inChild, Reader reader = Reader::prompt);

/// The same, and the function gets a second descriptor of the pipe, for when it replaces descriptor 3.
ChildOutcome runWithPipe(const std::function<void(int aside)>& inChild, Reader reader = Reader::prompt);

/// The same with a socket that keeps packets apart: behind what came by one write stands "|".
ChildOutcome runWithPackets(const std::function<void()>& inChild);

/// Whether two descriptors are open on the same file. False if one of them is closed.
bool sameFile(int firstDescriptor, int secondDescriptor);

} // namespace vadelclip
