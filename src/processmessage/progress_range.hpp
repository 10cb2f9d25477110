/// \file
/// Converts a step of a progress range to tenths of a percent.
#pragma once

namespace vadelclip {

/// A range of the progress of the whole run, in percent, divided into `stepCount` steps. Any value is valid.
struct ProgressRange {
    double startPercent;
    double endPercent;
    int stepCount;
};

/// Tenths of a percent of a finished run.
constexpr int finishedTenths = 1000;

/// No progress has been written yet; also the result for a range that reports nothing.
constexpr int noTenths = -1;

/// No step of the range needs a report.
constexpr int noDueStep = 2147483647;

/// Returns the progress at a step in tenths of a percent, rounded down, so that only the end of the run is 100.0.
///
/// @param step counts from 0. The result never decreases as the step grows.
/// @return `noTenths` to `finishedTenths`; `noTenths` for every step of a range that is empty, falls, or is not finite.
int tenthsAt(const ProgressRange& range, int step);

/// Returns the first step whose progress must be written if `writtenTenths` was written last.
///
/// This is the first step above `writtenTenths`. If there is none and the range ends the run, it is the last step: the end
/// of the run is always written.
///
/// @return `noDueStep` if there is none.
int firstDueStep(const ProgressRange& range, int writtenTenths);

} // namespace vadelclip
