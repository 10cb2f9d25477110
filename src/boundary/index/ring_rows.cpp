#include "boundary/index/ring_rows.hpp"

#include "boundary/ring_walk.hpp"

namespace vadelclip {

bool RingRows::walk(std::uint32_t ring, const RingChain& chain, Point2D point, std::uint32_t& crossings) const {
    const RingExtent extent = rings[ring];
    const Point2D* const ringPoints = points.data() + extent.firstPoint;
    std::uint32_t position = chain.firstVertex;
    RingWalk ringWalk(point, ringPoints[position].x, ringPoints[position].y);
    for (std::uint32_t edge = 0; edge < chain.edgeCount(); ++edge) {
        position = position + 1 == extent.pointCount ? 0 : position + 1;
        if (ringWalk.visit(ringPoints[position].x, ringPoints[position].y)) {
            return true;
        }
    }
    crossings ^= static_cast<std::uint32_t>(ringWalk.odd);
    return false;
}

} // namespace vadelclip
