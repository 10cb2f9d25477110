/// \file
/// Round numbers for the axes and the scale bar, and their labels.
#pragma once

#include <string>
#include <vector>

namespace vadelwatch {

/// The distance between two ticks: mantissa x 10^exponent, where the mantissa is 1, 2 or 5. Two integers, so that
/// multiples of a step below one are the doubles nearest to their labels.
struct TickStep {
    int mantissa = 1;
    int exponent = 0;
};

struct MapTick {
    double value = 0.0;
    std::string label;
};

double valueOf(TickStep step);

/// Returns the smallest step that is at least `least`, which is positive.
TickStep stepAtLeast(double least);

/// Returns the largest step that is at most `most`, which is positive.
TickStep stepAtMost(double most);

/// Returns the next larger or the next smaller step.
TickStep stepAbove(TickStep step);
TickStep stepBelow(TickStep step);

/// Returns all multiples of the step from `first` to `last`, both included. Labels have the same number of decimals as
/// the step.
///
/// All labels but 0 have the same power of ten if the longest label has more than 12 digits without it, and fewer with it.
std::vector<MapTick> ticksBetween(double first, double last, TickStep step);

/// Returns the label of a scale bar of this length.
std::string formatLength(TickStep step);

} // namespace vadelwatch
