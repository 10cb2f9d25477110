/// \file
/// The lines that the recording message layer notes for what the tool sends.
#pragma once

#include <string>
#include <vector>

namespace vadelclip {

using Calls = std::vector<std::string>;

/// What a header gets whose first character is wrong.
inline const std::string firstCharacterText = "First character of node file must be one of x,X";

/// One list out of several, in order.
Calls joined(const std::vector<Calls>& parts);

/// A reported error.
Calls errorCalls(const std::string& text);

/// The state at the beginning of a clip pass.
Calls stateCalls();

/// A progress range with one step for each of `stepCount` lines.
///
/// @param values start, end and number of steps, as they are noted.
Calls progressCalls(const std::string& values, int stepCount);

/// The progress range that ends a run.
Calls closingCalls();

/// Makes "nan" of every "-nan": the sign of a not-a-number says nothing.
Calls withoutSignOfNan(Calls calls);

} // namespace vadelclip
