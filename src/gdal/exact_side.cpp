#include "gdal/exact_side.hpp"

#include <boost/multiprecision/cpp_int.hpp>

#include <cmath>
#include <limits>

namespace vadelclip_gdal {

namespace {

using Rational = boost::multiprecision::cpp_rational;

int exactSideOf(Point2D from, Point2D to, Point2D point) {
    const Rational fromX(from.x);
    const Rational fromY(from.y);
    const Rational left = (Rational(to.x) - fromX) * (Rational(point.y) - fromY);
    const Rational right = (Rational(to.y) - fromY) * (Rational(point.x) - fromX);
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
