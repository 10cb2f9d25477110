/// \file
/// How many comparisons a differential test makes.
#pragma once

namespace vadelclip {

/// Returns the full number in an optimised build. Returns a twentieth of it with sanitizers, without optimisation, and
/// on other platforms: in an emulator the reference streams need ten times as long.
constexpr int workload(int full) {
#if !defined(__OPTIMIZE__) || defined(VADELCLIP_SMALL_WORKLOAD) || defined(_WIN32)
    return full / 20;
#else
    return full;
#endif
}

} // namespace vadelclip
