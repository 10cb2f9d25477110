#include "watch/show/progress_measure.hpp"

namespace vadelwatch {

namespace {

/// In less time than that, a few reports more or less make another figure.
constexpr double leastSeconds = 0.1;

} // namespace

void ProgressMeasure::endOfReports(double seconds) {
    if (!base && reported > 0.0) {
        base = Base{seconds, reported};
    }
}

ProgressFigures ProgressMeasure::figures(double seconds, std::optional<std::uint64_t> nodeLines) const {
    ProgressFigures figures;
    figures.percent = reported;
    figures.elapsedSeconds = seconds;
    if (reported >= 100.0) {
        figures.remainingSeconds = 0.0;
    }
    if (!base || seconds - base->seconds < leastSeconds || !(reported > base->percent)) {
        return figures;
    }
    const double secondsPerPercent = (seconds - base->seconds) / (reported - base->percent);
    figures.remainingSeconds = secondsPerPercent * (100.0 - reported);
    if (nodeLines) {
        figures.linesPerSecond = static_cast<double>(*nodeLines) / 100.0 / secondsPerPercent;
    }
    return figures;
}

} // namespace vadelwatch
