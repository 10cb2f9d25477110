/// \file
/// From a step of a progress range to the tenth of a percent that is shown for it.
#pragma once

namespace vadelclip {

/// A range of the whole run's progress, in percent, walked in `stepCount` steps. All values are accepted.
struct ProgressRange {
    double startPercent;
    double endPercent;
    int stepCount;
};

/// Tenths of a percent of a finished run.
constexpr int finishedTenths = 1000;

/// "No progress has been written yet"; also the tenths of a range that shows nothing.
constexpr int noTenths = -1;

/// "No step of this range makes a report necessary."
constexpr int noDueStep = 2147483647;

/// Gives the progress at a step, in tenths of a percent, rounded down, so that nothing but the end of the run reads
/// as 100.0.
///
/// @param step counts from 0; a larger step never gives a smaller result.
/// @return `noTenths` to `finishedTenths`; `noTenths` for every step of a range that is empty, falls, or is not finite.
int tenthsAt(const ProgressRange& range, int step);

/// Gives the first step of the range whose progress has to be written after `writtenTenths` was.
///
/// That is the first one beyond `writtenTenths`, or the range's end where that finishes the run: the end of the run
/// is written in every case.
///
/// @return `noDueStep` if there is none.
int firstDueStep(const ProgressRange& range, int writtenTenths);

} // namespace vadelclip
