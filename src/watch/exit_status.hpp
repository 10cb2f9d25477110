/// \file
/// Every exit status of Vadelwatch. docs/vadelwatch.md lists the same ones.
#pragma once

namespace vadelwatch {

/// The tool finished and the output adds up.
constexpr int finishedStatus = 0;

/// The tool's own status for every failure it handles.
constexpr int toolFailedStatus = 1;

/// Wrong arguments, or a log, map or summary that cannot be written.
constexpr int usageErrorStatus = 2;

/// The tool finished, and what stands in the output directory does not add up to the count it wrote.
constexpr int checkFailedStatus = 3;

/// The tool could not be started, was ended by a signal, or ended with a status that is none of its own.
constexpr int abnormalEndStatus = 4;

} // namespace vadelwatch
