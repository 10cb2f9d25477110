/// \file
/// How much a differential test compares.
#pragma once

namespace vadelclip {

/// The full number in an optimised build, a twentieth with sanitizers or without optimisation, for mutation testing, and on
/// Windows, where the streams to compare with take ten times as long.
constexpr int workload(int full) {
#if !defined(__OPTIMIZE__) || defined(VADELCLIP_SMALL_WORKLOAD) || defined(_WIN32)
    return full / 20;
#else
    return full;
#endif
}

} // namespace vadelclip
