/// \file
/// The expected lines of the recording message layer for the messages of the tool.
#pragma once

#include <string>
#include <vector>

namespace vadelclip {

using Calls = std::vector<std::string>;

/// The error text of a header with a wrong first character.
inline const std::string firstCharacterText = "First character of node file must be one of x,X";

/// Concatenates lists.
Calls joined(const std::vector<Calls>& parts);

/// Returns the calls of a reported error.
Calls errorCalls(const std::string& text);

/// Returns the calls of the state message at the start of a clip pass.
Calls stateCalls();

/// Returns the calls of a progress range with one step for each of `stepCount` lines.
///
/// @param values start, end and number of steps, as they are recorded.
Calls progressCalls(const std::string& values, int stepCount);

/// Returns the calls of the progress range that ends a run.
Calls closingCalls();

/// Replaces every "-nan" by "nan": the sign of a NaN has no meaning.
Calls withoutSignOfNan(Calls calls);

} // namespace vadelclip
