/// \file
/// Standard input, output and error, which may be closed or have no reader.
#pragma once

namespace vadelclip {

/// Opens closed standard descriptors on the null device, so that no output file gets their numbers, and ignores SIGPIPE,
/// so that a write to a pipe without a reader is an error and does not end the process.
///
/// Must be called before anything is opened or printed. Applies to the console and to the message channel.
void guardStandardDescriptors();

} // namespace vadelclip
