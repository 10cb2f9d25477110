/// \file
/// The spans of polygons without area.

#include "boundary/boundary_edge.hpp"
#include "boundary/index/row_spans.hpp"
#include "boundary/widened_box.hpp"

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

namespace vadelclip {

void RowSpans::addThin(const CellEntry& entry) {
    const BoundingBox& box = set.polygons[entry.first].boundingBox;
    if (box.minY != box.maxY) {
        addSegment(entry);
    } else if (const std::int32_t row = rows->place(box.minY); rows->has(row)) {
        const WidenedBox widened(box);
        const std::int32_t firstColumn = std::max(columns->place(widened.minX), 0);
        const std::int32_t lastColumn = std::min(columns->place(widened.maxX), columns->count() - 1);
        if (firstColumn <= lastColumn) {
            addSpan(entry, row, firstColumn, lastColumn);
        }
    }
}

/// Adds a two-vertex polygon to the cells where its distance from a point may be exactly zero.
///
/// That takes s = px * normal.x + py * normal.y to be zero (boundary_edge.hpp). Every operation in s is monotone in x
/// and in y, rounding included, so its values at two corners of a cell bound all values in the cell.
void RowSpans::addSegment(const CellEntry& entry) {
    const BoundaryPolygon& segment = set.polygons[entry.first];
    std::vector<BoundaryEdge> edges;
    appendEdges(edges, segment.vertexIndices, set.vertices);
    const Point2D start = edges.front().start;
    const Point2D normal = edges.front().normal;
    const WidenedBox box(segment.boundingBox);
    const double sign = normal.x < 0.0 ? -1.0 : 1.0; // so that s never falls when x rises
    const auto s = [&](double x, double y) {
        const double inBox = std::clamp(x, box.minX, box.maxX);
        return sign * ((inBox - start.x) * normal.x + (y - start.y) * normal.y);
    };
    const bool finite = std::isfinite(s(box.minX, box.minY)) && std::isfinite(s(box.maxX, box.maxY)) &&
                        std::isfinite(s(box.minX, box.maxY)) && std::isfinite(s(box.maxX, box.minY));
    const auto firstLimit = columns->limits.begin() + std::max(columns->place(box.minX), 0);
    const auto endLimit = columns->limits.begin() + std::min(columns->place(box.maxX) + 1, columns->count());
    const std::int32_t endRow = std::min(rows->place(box.maxY) + 1, rows->count());
    for (std::int32_t row = std::max(rows->place(box.minY), 0); row < endRow && firstLimit < endLimit; ++row) {
        double leastY = std::max(box.minY, rows->firstOf(row));
        double greatestY = std::min(box.maxY, rows->firstOf(row + 1));
        if (sign * normal.y < 0.0) {
            std::swap(leastY, greatestY);
        }
        auto first = firstLimit;
        auto end = endLimit;
        if (finite) {
            // A column ends before the limit of the next one.
            first = std::partition_point(first + 1, end + 1, [&](double x) { return s(x, greatestY) < 0.0; }) - 1;
            end = std::partition_point(first, end, [&](double x) { return s(x, leastY) <= 0.0; });
        }
        if (first < end) {
            addSpan(entry, row, static_cast<std::int32_t>(first - columns->limits.begin()),
                    static_cast<std::int32_t>(end - columns->limits.begin()) - 1);
        }
    }
}

} // namespace vadelclip
