/// \file
/// Doubles that are not finite.
#pragma once

#include <limits>

namespace vadelclip {

inline constexpr double infinity = std::numeric_limits<double>::infinity();
inline constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

} // namespace vadelclip
