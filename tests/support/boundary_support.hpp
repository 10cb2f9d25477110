/// \file
/// Polygons written as coordinates, and boundary records as texts for complete comparisons.
#pragma once

#include "boundary/boundary_set.hpp"

#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <vector>

namespace vadelclip {

/// Corners in ring order.
using Outline = std::vector<Point2D>;

/// The ways in which a list of vertices can say that its ring is closed.
enum class Closing {
    open,
    byIndex,        ///< The first index once more.
    byRepeatedPoint ///< A further entry of the vertex table with the first one's coordinates.
};

constexpr Closing allClosings[] = {Closing::open, Closing::byIndex, Closing::byRepeatedPoint};

/// The square with the corners (0, 0) and (10, 10).
const Outline counterClockwiseSquare = {{0, 0}, {10, 0}, {10, 10}, {0, 10}};
const Outline clockwiseSquare = {{0, 0}, {0, 10}, {10, 10}, {10, 0}};

/// Appends the corners to the table and returns the polygon of them, with its bounding box.
BoundaryPolygon makePolygon(std::vector<BoundaryVertex>& vertexTable, const Outline& outline,
                            Closing closing = Closing::open);

/// A set with one polygon for each outline, as reading a boundary file gives it.
BoundarySet setOf(const std::vector<Outline>& outlines);

Outline reversed(Outline outline);

/// The same ring, beginning with another corner.
Outline startingAt(Outline outline, std::size_t first);

/// The same ring with one corner several times in a row.
Outline withRepeatedCorner(Outline outline, std::size_t corner, std::size_t times);

/// Every ring that can be made of an outline without changing its shape or its direction: begun at each corner, with
/// no corner or one of them repeated.
std::vector<Outline> sameShapes(const Outline& outline);

/// For EXPECT_TRUE: the point is inside (or outside) every one of `sameShapes`, open and closed in each way.
testing::AssertionResult isInside(const Outline& outline, Point2D point);
testing::AssertionResult isOutside(const Outline& outline, Point2D point);

/// All members of a record, numbers to the last bit.
std::string asText(Point2D point);
std::string asText(const Outline& outline);
std::string asText(const BoundaryVertex& vertex);
std::string asText(const BoundaryEdge& edge);
std::string asText(const BoundaryPolygon& polygon);
std::string asText(const BoundarySet& set);

/// Least and greatest corner of a box.
std::string boxText(const BoundingBox& box);

} // namespace vadelclip
