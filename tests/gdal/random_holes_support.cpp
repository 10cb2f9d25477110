#include "random_holes_support.hpp"

#include <boost/multiprecision/cpp_int.hpp>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numbers>

namespace vadelclip_gdal {

namespace {

using Rational = boost::multiprecision::cpp_rational;

constexpr double cellSize = 64.0;

/// Where the whole numbers of a draft are put.
struct Frame {
    double scale;
    double offsetX;
    double offsetY;
    double step; ///< Corners inside a cell are multiples of this; 0 for any double.
};

constexpr Frame frames[] = {
    {1.0, 0.0, 0.0, 1.0},                 // whole numbers: crossings are often exact
    {1.0, 0.0, 0.0, 4.0},                 // many corners at the same height
    {1.0, -200.0, -100.0, 0.0},           // any double
    {0.01, 382000.12, 6354000.37, 1.0},   // centimetres of a projected system
    {1.0, 382000.0, 6354000.0, 0.0},      // any double of a projected system
    {0.00001, 146.27625, -39.00089, 1.0}, // degrees
};

/// A polygon of whole numbers and its place. A draft may be invalid.
struct Draft {
    Frame frame;
    double left;
    double bottom;
    double size; ///< Of a cell, in units of the draft.
    int columns;
    int rows;
};

struct Corner {
    double angle;
    Point2D offset;
};

double snapped(double value, double step) {
    return step == 0.0 ? value : std::round(value / step) * step;
}

Point2D placed(const Draft& draft, double x, double y) {
    const Frame& frame = draft.frame;
    return {frame.offsetX + frame.scale * (draft.left + x), frame.offsetY + frame.scale * (draft.bottom + y)};
}

/// Corners on the border of the cell: in the middle of a side, or an edge along it.
void addBorderCorners(std::vector<Corner>& corners, Dice& dice, double size) {
    for (int side = 0; side < 4; ++side) {
        const double angle = side * std::numbers::pi / 2;
        const double across = std::round(std::cos(angle));
        const double up = std::round(std::sin(angle));
        const auto add = [&](double along) {
            const Point2D offset{size / 2 * across - along * up, size / 2 * up + along * across};
            corners.push_back({std::atan2(offset.y, offset.x), offset});
        };
        switch (dice.below(6)) {
        case 0:
            add(0.0);
            break;
        case 1:
            add(-size / 8);
            add(size / 8);
            break;
        default:
            break;
        }
    }
}

/// A ring whose corners are seen from the middle of the cell in the order of their angles.
Ring starInCell(Dice& dice, const Draft& draft, int column, int row) {
    std::vector<Corner> corners;
    const int count = dice.between(3, 9);
    for (int i = 0; i < count; ++i) {
        const double angle = (i + 0.9 * dice.unit()) * 2 * std::numbers::pi / count;
        const double radius = draft.size * (0.3 + 0.19 * dice.unit());
        const Point2D offset{snapped(radius * std::cos(angle), draft.frame.step * draft.size / cellSize),
                             snapped(radius * std::sin(angle), draft.frame.step * draft.size / cellSize)};
        corners.push_back({std::atan2(offset.y, offset.x), offset});
    }
    addBorderCorners(corners, dice, draft.size);
    std::sort(corners.begin(), corners.end(), [](const Corner& a, const Corner& b) { return a.angle < b.angle; });
    Ring ring;
    for (const Corner& corner : corners) {
        ring.push_back(
            placed(draft, (column + 0.5) * draft.size + corner.offset.x, (row + 0.5) * draft.size + corner.offset.y));
    }
    return ring;
}

/// A jagged ring round all cells, which touches their border here and there.
Ring ringAround(Dice& dice, const Draft& draft) {
    const double width = draft.columns * draft.size;
    const double height = draft.rows * draft.size;
    Ring ring;
    const auto distance = [&dice, &draft] {
        return dice.oneIn(3) ? 0.0 : snapped(dice.unit() * draft.size / 8, draft.frame.step * draft.size / cellSize);
    };
    for (int i = 0; i < 2 * draft.columns; ++i) {
        ring.push_back(placed(draft, i * draft.size / 2, -distance()));
    }
    for (int i = 0; i < 2 * draft.rows; ++i) {
        ring.push_back(placed(draft, width + distance(), i * draft.size / 2));
    }
    for (int i = 0; i < 2 * draft.columns; ++i) {
        ring.push_back(placed(draft, width - i * draft.size / 2, height + distance()));
    }
    for (int i = 0; i < 2 * draft.rows; ++i) {
        ring.push_back(placed(draft, -distance(), height - i * draft.size / 2));
    }
    return ring;
}

Ring shuffled(Dice& dice, Ring ring) {
    if (dice.oneIn(2)) {
        std::reverse(ring.begin(), ring.end());
    }
    std::rotate(ring.begin(), ring.begin() + dice.below(static_cast<int>(ring.size())), ring.end());
    return ring;
}

Ring validRing(Dice& dice, const auto& make) {
    Ring ring = make();
    while (!areValid({ring})) {
        ring = make();
    }
    return shuffled(dice, ring);
}

void addPolygon(std::vector<RingsOfPolygon>& polygons, Dice& dice, const Draft& draft, int maxHoles) {
    RingsOfPolygon polygon;
    do {
        polygon.outer = validRing(dice, [&] { return ringAround(dice, draft); });
        polygon.holes.clear();
        for (int cell = 0; cell < draft.columns * draft.rows; ++cell) {
            const int column = cell % draft.columns;
            const int row = cell / draft.columns;
            if (static_cast<int>(polygon.holes.size()) < maxHoles && !dice.oneIn(5)) {
                polygon.holes.push_back(validRing(dice, [&] { return starInCell(dice, draft, column, row); }));
            }
        }
    } while (polygon.holes.empty() || !areValid(allRings(polygon)));
    polygons.push_back(polygon);
    // Every hole has at least three corners more than 0.3 of the cell from its middle, so small islands are inside most.
    for (int cell = 0; cell < draft.columns * draft.rows; ++cell) {
        const Draft island{draft.frame,
                           draft.left + (cell % draft.columns + 0.5) * draft.size - draft.size / 16,
                           draft.bottom + (static_cast<double>(cell / draft.columns) + 0.5) * draft.size -
                               draft.size / 16,
                           draft.size / 8,
                           1,
                           1};
        const Point2D middle = placed(island, island.size / 2, island.size / 2);
        if (dice.oneIn(3) && draft.size > cellSize / 8 && exactPlace(allRings(polygon), middle) == Place::outside) {
            addPolygon(polygons, dice, island, 1);
        }
    }
}

bool isBetween(double value, double a, double b) {
    return std::min(a, b) <= value && value <= std::max(a, b);
}

/// The side as a sign, by rational arithmetic.
int exactSide(Point2D from, Point2D to, Point2D point) {
    const Rational left = (Rational(to.x) - Rational(from.x)) * (Rational(point.y) - Rational(from.y));
    const Rational right = (Rational(to.y) - Rational(from.y)) * (Rational(point.x) - Rational(from.x));
    const int sign = left.compare(right);
    return (sign > 0 ? 1 : 0) - (sign < 0 ? 1 : 0);
}

bool isOnEdge(Point2D from, Point2D to, Point2D point) {
    return isBetween(point.x, from.x, to.x) && isBetween(point.y, from.y, to.y) && exactSide(from, to, point) == 0;
}

struct Edge {
    Point2D from;
    Point2D to;
};

std::vector<Edge> edgesOf(const std::vector<Ring>& rings) {
    std::vector<Edge> edges;
    for (const Ring& ring : rings) {
        for (std::size_t i = 0; i < ring.size(); ++i) {
            edges.push_back({ring[i], ring[(i + 1) % ring.size()]});
        }
    }
    return edges;
}

/// How far the extents of two edges overlap in one coordinate; negative if they do not.
double overlap(double a, double b, double c, double d) {
    return std::min(std::max(a, b), std::max(c, d)) - std::max(std::min(a, b), std::min(c, d));
}

bool crossOrOverlap(const Edge& a, const Edge& b) {
    const double overlapX = overlap(a.from.x, a.to.x, b.from.x, b.to.x);
    const double overlapY = overlap(a.from.y, a.to.y, b.from.y, b.to.y);
    if (overlapX < 0.0 || overlapY < 0.0) {
        return false;
    }
    const int fromSide = exactSide(a.from, a.to, b.from);
    const int toSide = exactSide(a.from, a.to, b.to);
    if (fromSide == 0 && toSide == 0) {
        return overlapX > 0.0 || overlapY > 0.0;
    }
    return fromSide * toSide < 0 && exactSide(b.from, b.to, a.from) * exactSide(b.from, b.to, a.to) < 0;
}

} // namespace

std::vector<Ring> allRings(const RingsOfPolygon& polygon) {
    std::vector<Ring> rings = {polygon.outer};
    rings.insert(rings.end(), polygon.holes.begin(), polygon.holes.end());
    return rings;
}

bool areValid(const std::vector<Ring>& rings) {
    const std::vector<Edge> edges = edgesOf(rings);
    for (std::size_t i = 0; i < edges.size(); ++i) {
        if (samePoint(edges[i].from, edges[i].to)) {
            return false;
        }
        for (std::size_t j = i + 1; j < edges.size(); ++j) {
            if (crossOrOverlap(edges[i], edges[j])) {
                return false;
            }
        }
    }
    return true;
}

std::vector<RingsOfPolygon> randomPolygons(Dice& dice, int maxHoles) {
    const int columns = dice.between(1, 5);
    const int rows = dice.between(1, 4);
    std::vector<RingsOfPolygon> polygons;
    addPolygon(polygons, dice, {frames[dice.below(std::size(frames))], 0.0, 0.0, cellSize, columns, rows}, maxHoles);
    return polygons;
}

Place exactPlace(const std::vector<Ring>& rings, Point2D point) {
    bool odd = false;
    for (const Edge& edge : edgesOf(rings)) {
        if (!isBetween(point.y, edge.from.y, edge.to.y) || std::max(edge.from.x, edge.to.x) < point.x) {
            continue;
        }
        if (isOnEdge(edge.from, edge.to, point)) {
            return Place::onOutline;
        }
        const bool upward = edge.from.y < edge.to.y;
        if ((edge.from.y <= point.y) != (edge.to.y <= point.y) &&
            exactSide(edge.from, edge.to, point) == (upward ? 1 : -1)) {
            odd = !odd;
        }
    }
    return odd ? Place::inside : Place::outside;
}

bool isOnHorizontalEdge(const std::vector<Ring>& rings, Point2D point) {
    const std::vector<Edge> edges = edgesOf(rings);
    return std::any_of(edges.begin(), edges.end(), [point](const Edge& edge) {
        return edge.from.y == edge.to.y && point.y == edge.from.y && isBetween(point.x, edge.from.x, edge.to.x);
    });
}

bool isWithinRoundingOfEdge(const std::vector<Ring>& rings, Point2D point) {
    const std::vector<Edge> edges = edgesOf(rings);
    return std::any_of(edges.begin(), edges.end(), [point](const Edge& edge) {
        if (edge.from.y == edge.to.y || !isBetween(point.y, edge.from.y, edge.to.y)) {
            return false;
        }
        const Rational crossing = (Rational(point.y) - Rational(edge.from.y)) *
                                      (Rational(edge.to.x) - Rational(edge.from.x)) /
                                      (Rational(edge.to.y) - Rational(edge.from.y)) +
                                  Rational(edge.from.x);
        const double size = std::max(std::abs(edge.from.x), std::abs(edge.to.x));
        return abs(crossing - Rational(point.x)) <= Rational(size * 0x1p-49);
    });
}

} // namespace vadelclip_gdal
