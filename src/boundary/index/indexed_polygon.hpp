/// \file
/// What the index knows of one polygon. Small: one cache line.
#pragma once

#include "boundary/index/ring_rows.hpp"
#include "boundary/widened_box.hpp"

#include <cstdint>

namespace vadelclip {

struct IndexedPolygon {
    /// In place of `rows.firstRow`: the polygon is asked itself, and `rows.ring` is its number in the set.
    static constexpr std::uint32_t noRows = 0xFFFFFFFF;

    WidenedBox box; ///< Its `minX` is the ring's `originX`.
    RingInRows ring;
};

} // namespace vadelclip
