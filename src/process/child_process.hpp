/// \file
/// Starts a child process that does not outlive its parent. POSIX only.
#pragma once

#include <string>
#include <sys/types.h>
#include <vector>

namespace vadelclip {

/// A descriptor of the child: `source` of the parent becomes `number`.
struct ChildDescriptor {
    int source = -1; ///< At least `lowestPrivateDescriptor`.
    int number = -1;
};

/// Above the numbers of every child's descriptors.
constexpr int lowestPrivateDescriptor = 10;

/// Moves a descriptor to a number of at least `lowestPrivateDescriptor` that is closed on exec, and closes the old one.
///
/// @return the new number, or -1.
int movedUp(int descriptor);

/// Starts a program. In the new process no signal is blocked and SIGPIPE has its default action. The process is killed when
/// the calling thread, which must be the main thread, ends.
///
/// @param arguments   those after the program name.
/// @param descriptors are set in this order. All other descriptors are inherited as they are.
/// @param pid         receives the process.
/// @return 0, or the errno of the call that failed; then there is no process.
int startChild(const std::string& program, const std::vector<std::string>& arguments,
               const std::vector<ChildDescriptor>& descriptors, pid_t& pid);

/// Returns the path of `Vadelclip` in the directory of the running executable, empty if that is unknown.
std::string toolPathNextToExecutable();

} // namespace vadelclip
