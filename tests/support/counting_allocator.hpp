/// \file
/// Counts the allocations of the program it is linked into.
#pragma once

namespace vadelclip {

/// Calls of operator new since the start.
long allocationCount();

} // namespace vadelclip
