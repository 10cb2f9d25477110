#include "watch/map_axes.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

namespace {

/// The widest label that is written without a power of ten: digits, not counting sign and point.
constexpr int longestPlainLabel = 12;

/// multiple x mantissa x 10^exponent. A negative power divides, because 0.1 is no double but 10 is.
double multipleOf(TickStep step, double multiple) {
    const double digits = multiple * step.mantissa;
    return step.exponent < 0 ? digits / std::pow(10.0, -step.exponent) : digits * std::pow(10.0, step.exponent);
}

/// The place of the first digit: 2 for 345.6, -2 for 0.0345.
int placeOf(double value) {
    return value == 0.0 ? 0 : static_cast<int>(std::floor(std::log10(std::abs(value))));
}

std::string withDecimalPoint(std::string number, char decimalPoint) {
    std::replace(number.begin(), number.end(), '.', decimalPoint);
    return number;
}

std::string formatTick(double value, TickStep step, int largestPlace, char decimalPoint) {
    const int decimals = std::max(0, -step.exponent);
    if (value == 0.0) {
        // Zero needs no decimals, and a negative one no sign.
        return "0";
    }
    if (std::max(0, largestPlace) + 1 + decimals <= longestPlainLabel) {
        return withDecimalPoint(fmt::format("{:.{}f}", value, decimals), decimalPoint);
    }
    return withDecimalPoint(fmt::format("{:.{}e}", value, std::max(0, placeOf(value) - step.exponent)), decimalPoint);
}

} // namespace

double valueOf(TickStep step) {
    return multipleOf(step, 1.0);
}

TickStep stepAtLeast(double least) {
    TickStep step{1, placeOf(least) - 1};
    while (valueOf(step) < least) {
        step = stepAbove(step);
    }
    return step;
}

TickStep stepAtMost(double most) {
    TickStep step{1, placeOf(most) + 1};
    while (valueOf(step) > most) {
        step = stepBelow(step);
    }
    return step;
}

TickStep stepAbove(TickStep step) {
    switch (step.mantissa) {
    case 1:
        return {2, step.exponent};
    case 2:
        return {5, step.exponent};
    default:
        return {1, step.exponent + 1};
    }
}

TickStep stepBelow(TickStep step) {
    switch (step.mantissa) {
    case 5:
        return {2, step.exponent};
    case 2:
        return {1, step.exponent};
    default:
        return {5, step.exponent - 1};
    }
}

std::vector<MapTick> ticksBetween(double first, double last, TickStep step, char decimalPoint) {
    const int largestPlace = placeOf(std::max(std::abs(first), std::abs(last)));
    std::vector<MapTick> ticks;
    double multiple = std::ceil(first / valueOf(step));
    while (multipleOf(step, multiple) <= last) {
        const double value = multipleOf(step, multiple);
        ticks.push_back({value, formatTick(value, step, largestPlace, decimalPoint)});
        ++multiple;
    }
    return ticks;
}

std::string formatLength(TickStep step, char decimalPoint) {
    return formatTick(valueOf(step), step, placeOf(valueOf(step)), decimalPoint);
}
