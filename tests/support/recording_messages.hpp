/// \file
/// A replacement for the messaging library that records every call with its exact values.
///
/// Each call is one line: the class or function, then the values (doubles with 17 digits, flags as true and false,
/// a line feed in a text as \n and a backslash as \\). The destructor of an object is "end <class>".
#pragma once

#include <string>
#include <vector>

namespace vadelclip {

/// Returns all calls since the last `clearRecordedCalls`, in order.
const std::vector<std::string>& recordedCalls();

void clearRecordedCalls();

} // namespace vadelclip
