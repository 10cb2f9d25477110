/// \file
/// Polygons made from coordinates, and boundary records as texts, for comparison of all members.
#pragma once

#include "boundary/boundary_set.hpp"

#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <vector>

namespace vadelclip {

/// Corners in ring order.
using Outline = std::vector<Point2D>;

/// How a list of vertices closes its ring.
enum class Closing {
    open,
    byIndex,        ///< Repeats the first index.
    byRepeatedPoint ///< Adds an entry to the vertex table with the coordinates of the first one.
};

constexpr Closing allClosings[] = {Closing::open, Closing::byIndex, Closing::byRepeatedPoint};

/// The square with the corners (0, 0) and (10, 10).
const Outline counterClockwiseSquare = {{0, 0}, {10, 0}, {10, 10}, {0, 10}};
const Outline clockwiseSquare = {{0, 0}, {0, 10}, {10, 10}, {10, 0}};

/// Appends the corners to the table and returns their polygon, with its bounding box.
BoundaryPolygon makePolygon(std::vector<BoundaryVertex>& vertexTable, const Outline& outline,
                            Closing closing = Closing::open);

/// Returns a set with one polygon for each outline, as the boundary reader does.
BoundarySet setOf(const std::vector<Outline>& outlines);

Outline reversed(Outline outline);

/// Returns the ring with another first corner.
Outline startingAt(Outline outline, std::size_t first);

/// Returns the ring with one corner repeated.
Outline withRepeatedCorner(Outline outline, std::size_t corner, std::size_t times);

/// Returns rings with the shape and direction of the outline: with each first corner, and with no corner or one corner
/// repeated.
std::vector<Outline> sameShapes(const Outline& outline);

/// For EXPECT_TRUE: the point is inside (or outside) every one of `sameShapes`, open and closed in each way.
testing::AssertionResult isInside(const Outline& outline, Point2D point);
testing::AssertionResult isOutside(const Outline& outline, Point2D point);

/// Returns all members of a record, numbers to the last bit.
std::string asText(Point2D point);
std::string asText(const Outline& outline);
std::string asText(const BoundaryVertex& vertex);
std::string asText(const BoundaryEdge& edge);
std::string asText(const BoundaryPolygon& polygon);
std::string asText(const BoundarySet& set);

/// Returns the minimum and maximum corner of a box.
std::string boxText(const BoundingBox& box);

} // namespace vadelclip
