#include "processmessage/progress_range.hpp"

#include <algorithm>
#include <cmath>

namespace vadelclip {

int tenthsAt(const ProgressRange& range, int step) {
    const double span = range.endPercent - range.startPercent;
    if (!std::isfinite(span) || !(span > 0.0) || range.stepCount <= 0) {
        return noTenths;
    }
    const double percent = range.startPercent + span * step / range.stepCount;
    const double tenths = std::floor(percent * 10.0);
    return static_cast<int>(std::clamp<double>(tenths, noTenths, finishedTenths));
}

int firstDueStep(const ProgressRange& range, int writtenTenths) {
    const int lastTenths = tenthsAt(range, range.stepCount);
    if (lastTenths <= writtenTenths) {
        return lastTenths == finishedTenths ? range.stepCount : noDueStep;
    }
    int low = 0;
    int high = range.stepCount;
    while (low < high) {
        const int middle = low + (high - low) / 2;
        if (tenthsAt(range, middle) > writtenTenths) {
            high = middle;
        } else {
            low = middle + 1;
        }
    }
    return low;
}

} // namespace vadelclip
