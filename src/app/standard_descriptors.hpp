/// \file
/// Standard input, output and error, which the tool takes as it finds them: closed, or with no one behind them.
#pragma once

namespace vadelclip {

/// Prepares the process for output to whoever may have gone away: opens closed standard descriptors on the null
/// device, so that no output file can become the console, and makes writing to a vanished reader an error instead of
/// the end of the process. It holds for the console and for the message channel alike.
///
/// To be called before anything is opened or printed.
void guardStandardDescriptors();

} // namespace vadelclip
