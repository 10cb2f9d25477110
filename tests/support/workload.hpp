/// \file
/// How much a differential test compares.
#pragma once

/// The full number in an optimised build, a twentieth with sanitizers or without optimisation.
constexpr int workload(int full) {
#if defined(__SANITIZE_ADDRESS__) || !defined(__OPTIMIZE__)
    return full / 20;
#else
    return full;
#endif
}
