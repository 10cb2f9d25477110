#include "outlines.hpp"

#include <cmath>
#include <random>

namespace vadelclip {

namespace {

constexpr double fullTurn = 6.283185307179586;

Point2D onCircle(Point2D centre, double radius, double angle) {
    return {centre.x + radius * std::cos(angle), centre.y + radius * std::sin(angle)};
}

} // namespace

Ring smoothRing(std::size_t vertexCount, Point2D centre, double radius) {
    Ring ring;
    for (std::size_t i = 0; i < vertexCount; ++i) {
        const double angle = fullTurn * static_cast<double>(i) / static_cast<double>(vertexCount);
        ring.push_back(onCircle(centre, radius, angle));
    }
    return ring;
}

Ring jaggedRing(std::size_t vertexCount, Point2D centre, double radius, unsigned int seed) {
    std::mt19937 random(seed);
    std::uniform_real_distribution<double> uniform(-1.0, 1.0);
    // Midpoint displacement on the distance from the centre, with a displacement that halves a little slower than the
    // stretch: a fractal coast.
    std::vector<double> distance(vertexCount + 1, 0.0);
    double displacement = 0.25;
    for (std::size_t step = vertexCount; step > 1; step = (step + 1) / 2) {
        const std::size_t half = (step + 1) / 2;
        for (std::size_t i = half; i < vertexCount; i += step) {
            const std::size_t next = i + half < vertexCount ? i + half : 0;
            distance[i] = (distance[i - half] + distance[next]) / 2.0 + displacement * uniform(random);
        }
        displacement *= 0.6;
    }
    Ring ring;
    for (std::size_t i = 0; i < vertexCount; ++i) {
        const double angle = fullTurn * static_cast<double>(i) / static_cast<double>(vertexCount);
        ring.push_back(onCircle(centre, radius * (0.7 + 0.3 * distance[i]), angle));
    }
    return ring;
}

Ring spikyRing(std::size_t vertexCount, Point2D centre, double radius, unsigned int seed) {
    std::mt19937 random(seed);
    std::uniform_real_distribution<double> uniform(0.05, 1.0);
    Ring ring;
    for (std::size_t i = 0; i < vertexCount; ++i) {
        const double angle = fullTurn * static_cast<double>(i) / static_cast<double>(vertexCount);
        ring.push_back(onCircle(centre, radius * uniform(random), angle));
    }
    return ring;
}

Ring combRing(std::size_t toothCount, double side) {
    Ring ring;
    const double toothWidth = side / static_cast<double>(toothCount);
    for (std::size_t i = 0; i < toothCount; ++i) {
        ring.push_back({toothWidth * static_cast<double>(i), side * 0.01});
        ring.push_back({toothWidth * (static_cast<double>(i) + 0.5), side});
    }
    ring.push_back({side, 0.0});
    ring.push_back({0.0, 0.0});
    return ring;
}

Ring farRing(std::size_t vertexCount, double side, Point2D corner, bool stray) {
    const Point2D middle{corner.x + side / 2.0, corner.y + side / 2.0};
    Ring ring = jaggedRing(vertexCount, middle, side / 2.0, 5);
    if (stray) {
        ring[vertexCount / 2] = {0.0, 0.0};
    }
    return ring;
}

Ring jumpingRing(std::size_t vertexCount, double side) {
    std::mt19937 random(3);
    std::uniform_real_distribution<double> uniform(0.0, side);
    Ring ring;
    for (std::size_t i = 0; i < vertexCount; ++i) {
        const double margin = uniform(random) * 0.1;
        ring.push_back({i % 2 == 0 ? margin : side - margin, uniform(random)});
    }
    return ring;
}

BoundarySet makeBoundarySet(const std::vector<Ring>& rings) {
    BoundarySet set;
    for (const Ring& ring : rings) {
        BoundaryPolygon polygon;
        for (const Point2D point : ring) {
            BoundaryVertex vertex;
            vertex.x = point.x;
            vertex.y = point.y;
            polygon.vertexIndices.push_back(static_cast<std::int32_t>(set.vertices.size()));
            set.vertices.push_back(vertex);
        }
        computeBoundingBox(polygon, set.vertices);
        set.polygons.push_back(polygon);
    }
    return set;
}

BoundarySet makeLattice(std::size_t polygonCount, double side) {
    const auto perSide = static_cast<std::size_t>(std::ceil(std::sqrt(static_cast<double>(polygonCount))));
    const double spacing = side / static_cast<double>(perSide);
    std::vector<Ring> rings;
    for (std::size_t i = 0; i < polygonCount; ++i) {
        const Point2D centre{spacing * (static_cast<double>(i % perSide) + 0.5),
                             spacing * (static_cast<double>(i / perSide) + 0.5)};
        rings.push_back(jaggedRing(20, centre, spacing * 0.5, static_cast<unsigned int>(i)));
    }
    return makeBoundarySet(rings);
}

BoundarySet makeStrips(std::size_t stripCount, double side) {
    std::mt19937 random(9);
    std::uniform_real_distribution<double> uniform(0.0, side);
    const double width = side * 0.0001;
    std::vector<Ring> rings;
    for (std::size_t i = 0; i < stripCount; ++i) {
        const double left = uniform(random);
        const double right = uniform(random);
        rings.push_back({{0.0, left}, {side, right}, {side, right + width}, {0.0, left + width}});
    }
    return makeBoundarySet(rings);
}

BoundarySet makeNest(std::size_t ringCount, double side) {
    std::vector<Ring> rings;
    for (std::size_t i = 0; i < ringCount; ++i) {
        const double share = static_cast<double>(i + 1) / static_cast<double>(ringCount);
        rings.push_back(smoothRing(64, {side / 2.0, side / 2.0}, share * side / 2.0));
    }
    return makeBoundarySet(rings);
}

std::vector<Point2D> randomPoints(std::size_t count, double side, Point2D corner) {
    std::mt19937_64 random(11);
    std::uniform_real_distribution<double> uniform(0.0, side);
    std::vector<Point2D> points;
    for (std::size_t i = 0; i < count; ++i) {
        const double x = corner.x + uniform(random);
        points.push_back({x, corner.y + uniform(random)});
    }
    return points;
}

std::vector<Point2D> gridPoints(std::size_t count, double side) {
    const auto perSide = static_cast<std::size_t>(std::sqrt(static_cast<double>(count)));
    const double spacing = side / static_cast<double>(perSide);
    std::vector<Point2D> points;
    for (std::size_t i = 0; i < perSide * perSide; ++i) {
        points.push_back(
            {spacing * (static_cast<double>(i % perSide) + 0.5), spacing * (static_cast<double>(i / perSide) + 0.5)});
    }
    return points;
}

} // namespace vadelclip
