/// \file
/// Starts to load memory that is needed soon.
#pragma once

// Not a function: GCC 12 drops calls of a function that only prefetches.
#ifdef __GNUC__
#define PREFETCH(address) __builtin_prefetch(address)
#else
#define PREFETCH(address) static_cast<void>(address)
#endif
