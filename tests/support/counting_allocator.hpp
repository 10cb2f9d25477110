/// \file
/// Counts the allocations of the program it is linked into.
#pragma once

/// Calls of operator new since the start.
long allocationCount();
