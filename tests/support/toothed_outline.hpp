#pragma once

#include "support/boundary_support.hpp"

namespace vadelclip {

/// Returns a comb of `count` vertical teeth of width 1 and distance 1. The tip of each is shifted by `lean`.
inline Outline teeth(int count, double lean) {
    Outline ring;
    for (int tooth = 0; tooth < count; ++tooth) {
        const double x = 2.0 * tooth;
        ring.insert(ring.end(), {{x, 0.0}, {x + lean, 16.0}, {x + lean + 1.0, 16.0}, {x + 1.0, 0.0}});
    }
    return ring;
}

} // namespace vadelclip
