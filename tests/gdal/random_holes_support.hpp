/// \file
/// Random valid polygons with holes, and what exact arithmetic says about them.
#pragma once

#include "gdal/ring.hpp"

#include <cstdint>
#include <random>
#include <vector>

namespace vadelclip_gdal {

/// Random choices, the same ones with every standard library.
class Dice {
public:
    explicit Dice(std::uint64_t seed) : engine(seed) {}

    int below(int count) { return static_cast<int>(engine() % static_cast<std::uint64_t>(count)); }
    int between(int least, int greatest) { return least + below(greatest - least + 1); }
    bool oneIn(int count) { return below(count) == 0; }
    double unit() { return static_cast<double>(engine() >> 11) * 0x1p-53; }

private:
    std::mt19937_64 engine;
};

/// Returns a polygon with 1 to `maxHoles` holes, then the islands in its holes, which may have holes and islands too.
///
/// No two edges cross or overlap, in exact arithmetic. Holes may touch each other or the outer ring, at a corner of both
/// or of one of them. Directions and first corners are random. Coordinates are whole numbers, decimals or any doubles.
std::vector<RingsOfPolygon> randomPolygons(Dice& dice, int maxHoles);

/// Returns true if no two edges of the rings cross or overlap. They may touch.
bool areValid(const std::vector<Ring>& rings);

/// The outer ring, then the holes.
std::vector<Ring> allRings(const RingsOfPolygon& polygon);

/// Where a point is, by rational arithmetic.
enum class Place { outside, onOutline, inside };

/// Returns the place by the even-odd rule over all rings.
Place exactPlace(const std::vector<Ring>& rings, Point2D point);

/// Returns true if the point is exactly on a horizontal edge.
bool isOnHorizontalEdge(const std::vector<Ring>& rings, Point2D point);

/// Returns true if the point is no further from an edge, along its own height, than rounding can move the crossing:
/// 16 x 2^-53 of the largest x.
bool isWithinRoundingOfEdge(const std::vector<Ring>& rings, Point2D point);

} // namespace vadelclip_gdal
