#include "watch/map/axes.hpp"

#include "watch/show/messages.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

namespace vadelwatch {

namespace {

/// Labels of up to this many digits, without sign and point, never have a power of ten.
constexpr int maxPlainDigits = 12;

/// Returns multiple x mantissa x 10^exponent. Divides for a negative exponent, because 10 is a double and 0.1 is not.
double multipleOf(TickStep step, double multiple) {
    const double digits = multiple * step.mantissa;
    return step.exponent < 0 ? digits / std::pow(10.0, -step.exponent) : digits * std::pow(10.0, step.exponent);
}

/// Returns the place of the first digit: 2 for 345.6, -2 for 0.0345.
int placeOf(double value) {
    return value == 0.0 ? 0 : static_cast<int>(std::floor(std::log10(std::abs(value))));
}

/// Returns the number of digits of an integer, without its sign.
int digitsOf(double number) {
    return static_cast<int>(fmt::format("{:.0f}", std::abs(number)).size());
}

/// The format of all labels of an axis.
struct LabelForm {
    int exponent = 0; ///< The common power of ten. Unused for labels without one.
    int decimals = 0;
    bool plain = true;
};

/// @param largest the largest label as a multiple of the last decimal place of the step.
LabelForm formOfLabels(double largest, TickStep step) {
    const int place = digitsOf(largest) - 1 + step.exponent;
    const int decimals = std::max(0, -step.exponent);
    const int plainDigits = std::max(0, place) + 1 + decimals;
    if (plainDigits <= maxPlainDigits || plainDigits <= digitsOf(largest)) {
        return {0, decimals, true};
    }
    return {place, digitsOf(largest) - 1, false};
}

/// @param units the number as a multiple of the last decimal place of the step: 250 for 0.250.
std::string formatTick(double units, TickStep step, LabelForm form) {
    if (units == 0.0) {
        // Zero has no decimals, and negative zero no sign.
        return "0";
    }
    if (form.plain) {
        return withGroups(decimalNumber(multipleOf({1, step.exponent}, units), form.decimals));
    }
    // The decimal sign is inserted into the digits, because a double may not be able to hold the common power of ten.
    std::string digits = fmt::format("{:0{}.0f}", std::abs(units), form.decimals + 1);
    if (form.decimals > 0) {
        digits.insert(1, 1, decimalSign());
    }
    return fmt::format("{}{}e{:+03d}", units < 0.0 ? "-" : "", digits, form.exponent);
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
    const TickStep step = stepAtLeast(most);
    return valueOf(step) > most ? stepBelow(step) : step;
}

TickStep stepAbove(TickStep step) {
    return step.mantissa == 5 ? TickStep{1, step.exponent + 1} : TickStep{step.mantissa == 1 ? 2 : 5, step.exponent};
}

TickStep stepBelow(TickStep step) {
    return step.mantissa == 1 ? TickStep{5, step.exponent - 1} : TickStep{step.mantissa / 2, step.exponent};
}

std::vector<MapTick> ticksBetween(double first, double last, TickStep step) {
    std::vector<double> multiples;
    double multiple = std::ceil(first / valueOf(step));
    while (multipleOf(step, multiple) <= last) {
        multiples.push_back(multiple);
        ++multiple;
    }
    if (multiples.empty()) {
        return {};
    }
    const double largest = std::max(std::abs(multiples.front()), std::abs(multiples.back()));
    const LabelForm form = formOfLabels(largest * step.mantissa, step);
    std::vector<MapTick> ticks;
    ticks.reserve(multiples.size());
    for (const double each : multiples) {
        ticks.push_back({multipleOf(step, each), formatTick(each * step.mantissa, step, form)});
    }
    return ticks;
}

std::string formatLength(TickStep step) {
    return formatTick(step.mantissa, step, formOfLabels(step.mantissa, step));
}

} // namespace vadelwatch
