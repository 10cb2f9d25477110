#include "gdal/exact_side.hpp"

#include <boost/multiprecision/cpp_int.hpp>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>

namespace vadelclip_gdal {

namespace {

using boost::multiprecision::cpp_int;

constexpr int mantissaBits = std::numeric_limits<double>::digits;

/// Every finite double is a whole multiple of the smallest positive one.
cpp_int multipleOfSmallest(double value) {
    constexpr int smallestExponent = std::numeric_limits<double>::min_exponent - mantissaBits;
    int exponent = 0;
    static_cast<void>(std::frexp(value, &exponent));
    const int shift = std::max(0, exponent - mantissaBits - smallestExponent);
    cpp_int multiple = static_cast<std::int64_t>(std::ldexp(value, -smallestExponent - shift));
    multiple <<= shift;
    return multiple;
}

int exactSideOf(Point2D from, Point2D to, Point2D point) {
    const cpp_int fromX = multipleOfSmallest(from.x);
    const cpp_int fromY = multipleOfSmallest(from.y);
    const cpp_int left = (multipleOfSmallest(to.x) - fromX) * (multipleOfSmallest(point.y) - fromY);
    const cpp_int right = (multipleOfSmallest(to.y) - fromY) * (multipleOfSmallest(point.x) - fromX);
    return left.compare(right);
}

} // namespace

int sideOf(Point2D from, Point2D to, Point2D point) {
    const double left = (to.x - from.x) * (point.y - from.y);
    const double right = (to.y - from.y) * (point.x - from.x);
    const double size = std::abs(left) + std::abs(right);
    // Three roundings in each value: the error is below 3.01 x 2^-53 of the size (J. R. Shewchuk, Adaptive Precision
    // Floating-Point Arithmetic, 1997). The bound does not hold near the limits of doubles.
    constexpr double roundings = 2 * std::numeric_limits<double>::epsilon();
    if (size > 1e-280 && size < 1e300 && std::abs(left - right) > roundings * size) {
        return left > right ? 1 : -1;
    }
    const int sign = exactSideOf(from, to, point);
    return (sign > 0 ? 1 : 0) - (sign < 0 ? 1 : 0);
}

} // namespace vadelclip_gdal
