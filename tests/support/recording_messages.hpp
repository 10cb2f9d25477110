/// \file
/// A replacement of the messaging library that notes every call it gets, with its exact values.
///
/// Each call is one line: the class or function, then the values (doubles with 17 digits, flags as true and false,
/// a line feed in a text as \n and a backslash as \\). The end of an object is "end <class>".
#pragma once

#include <string>
#include <vector>

namespace vadelclip {

/// All calls since the last `clearRecordedCalls`, in order.
const std::vector<std::string>& recordedCalls();

void clearRecordedCalls();

} // namespace vadelclip
