/// \file
/// Round numbers for the axes and the scale bar, and how they are written.
#pragma once

#include <string>
#include <vector>

namespace vadelwatch {

/// The distance of two ticks: mantissa x 10^exponent, the mantissa being 1, 2 or 5. Kept in two parts, so that
/// multiples of a step below one are the doubles nearest to what their labels say.
struct TickStep {
    int mantissa = 1;
    int exponent = 0;
};

struct MapTick {
    double value = 0.0;
    std::string label;
};

double valueOf(TickStep step);

/// The smallest step that is no smaller than `least`, which is positive.
TickStep stepAtLeast(double least);

/// The largest step that is no larger than `most`, which is positive.
TickStep stepAtMost(double most);

/// The next larger and the next smaller step.
TickStep stepAbove(TickStep step);
TickStep stepBelow(TickStep step);

/// All multiples of the step from `first` to `last`, both included, with as many decimals as the step has. Where the
/// longest would have more than 12 digits that way, and fewer with a power of ten, all but 0 are written with the same one.
///
/// @param decimalPoint the decimal sign of the labels.
std::vector<MapTick> ticksBetween(double first, double last, TickStep step, char decimalPoint = '.');

/// A length as it stands at the scale bar.
std::string formatLength(TickStep step, char decimalPoint = '.');

} // namespace vadelwatch
