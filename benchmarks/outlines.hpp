/// \file
/// Outlines of many kinds for measurements, the same in every run.
#pragma once

#include "boundary/boundary_set.hpp"

#include <cstddef>
#include <vector>

namespace vadelclip {

using Ring = std::vector<Point2D>;

/// A smooth ring, about a circle around `centre`.
Ring smoothRing(std::size_t vertexCount, Point2D centre, double radius);

/// A coast with bays of all sizes down to single vertices, as measured outlines have.
Ring jaggedRing(std::size_t vertexCount, Point2D centre, double radius, unsigned int seed);

/// Each vertex has a random distance between a twentieth of `radius` and `radius`, so a height crosses very many edges.
Ring spikyRing(std::size_t vertexCount, Point2D centre, double radius, unsigned int seed);

/// A comb in a square of the given side whose teeth, two vertices each, cross every height but the lowest.
Ring combRing(std::size_t toothCount, double side);

/// `jaggedRing` in the square of the given side, moved to large coordinates, with one vertex at (0, 0) if `stray`.
Ring farRing(std::size_t vertexCount, double side, Point2D corner, bool stray);

/// Every edge runs from the left side of a square to the right side or back, at random heights.
Ring jumpingRing(std::size_t vertexCount, double side);

BoundarySet makeBoundarySet(const std::vector<Ring>& rings);

/// Polygons of 20 vertices on a square lattice that fills a square of the given side, with gaps between them.
BoundarySet makeLattice(std::size_t polygonCount, double side);

/// Thin strips in all diagonal directions across a square of the given side. Their boxes overlap.
BoundarySet makeStrips(std::size_t stripCount, double side);

/// Rings of 64 vertices around each other, of which the outermost fills a square of the given side.
BoundarySet makeNest(std::size_t ringCount, double side);

/// Points of a square lattice in the square from (0, 0) to (side, side), row by row; `count` is a square number.
std::vector<Point2D> gridPoints(std::size_t count, double side);

/// Random points of the square of the given side that begins at `corner`.
std::vector<Point2D> randomPoints(std::size_t count, double side, Point2D corner = {0.0, 0.0});

} // namespace vadelclip
