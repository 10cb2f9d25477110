#include "boundary_input.hpp"

#include "support/boundary_support.hpp"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <limits>

namespace vadelclip {

namespace {

/// Limits, because the plain loop that the index is compared with reads each vertex for each point.
constexpr std::size_t maxVertices = 800;
constexpr std::size_t maxPolygons = 200;

constexpr double scales[] = {1.0, 0.1, 10.0, 1e-6, 1e6, 1e-7, 1e-320, 1e-300, 1e-160, 1e150, 1e300, 1.5e306};

double toFinite(double value) {
    constexpr double largest = std::numeric_limits<double>::max();
    return std::isnan(value) ? 0.0 : std::clamp(value, -largest, largest);
}

double earlierCoordinate(InputBytes& input, const BoundarySet& earlier) {
    const std::size_t index = input.byte();
    if (earlier.vertices.empty()) {
        return 0.0;
    }
    const BoundaryVertex& vertex = earlier.vertices[earlier.vertices.size() - 1 - index % earlier.vertices.size()];
    return input.below(2) == 0 ? vertex.x : vertex.y;
}

/// Numbers that look random and are the same everywhere.
class Sequence {
public:
    explicit Sequence(std::uint64_t seed) : state(seed) {}

    std::size_t below(std::size_t limit) {
        state = state * 6364136223846793005U + 1442695040888963407U;
        return (state >> 33) % limit;
    }

private:
    std::uint64_t state;
};

Outline takeCorners(InputBytes& input, double scale, const BoundarySet& earlier) {
    Outline outline;
    for (std::size_t count = input.below(64); count > 0; --count) {
        const double x = takeCoordinate(input, scale, earlier);
        outline.push_back({x, takeCoordinate(input, scale, earlier)});
    }
    return outline;
}

/// Teeth of one height side by side: many pieces of the ring at every height.
Outline takeComb(InputBytes& input, double scale) {
    const std::size_t teeth = 1 + std::size_t{input.byte()} * 2;
    const double skew = static_cast<double>(input.byte()) / 8.0;
    const double height = static_cast<double>(input.byte());
    Outline outline;
    for (std::size_t tooth = 0; tooth < teeth; ++tooth) {
        const auto x = static_cast<double>(tooth);
        outline.push_back({toFinite(scale * x), 0.0});
        outline.push_back({toFinite(scale * (x + skew)), toFinite(scale * height)});
    }
    outline.push_back({toFinite(scale * static_cast<double>(teeth)), toFinite(-scale)});
    outline.push_back({0.0, toFinite(-scale)});
    return input.below(2) == 0 ? outline : reversed(outline);
}

/// Corners anywhere on a grid, coarse or fine, in any order.
Outline takeTangle(InputBytes& input, double scale) {
    const std::size_t size = 1 + std::size_t{input.byte()} * 2;
    const std::size_t cells = std::size_t{2} << input.below(20);
    Sequence sequence(input.word());
    Outline outline;
    for (std::size_t i = 0; i < size; ++i) {
        const auto x = static_cast<double>(sequence.below(cells));
        outline.push_back({toFinite(scale * x), toFinite(scale * static_cast<double>(sequence.below(cells)))});
    }
    return outline;
}

/// A smooth ring, by a rational parametrisation of the circle.
Outline takeRound(InputBytes& input, double scale) {
    const int half = 2 + input.byte();
    const double radius = 1.0 + input.byte();
    Outline outline;
    for (int i = -half; i < half; ++i) {
        const double t = static_cast<double>(i) * 4.0 / half;
        const double share = radius / (1.0 + t * t);
        outline.push_back({toFinite(scale * share * (1.0 - t * t)), toFinite(scale * share * 2.0 * t)});
    }
    return outline;
}

/// A walk in small steps, and one vertex elsewhere: crowded cells, which get grids of their own.
Outline takeWalk(InputBytes& input, double scale, const BoundarySet& earlier) {
    const std::size_t size = 1 + std::size_t{input.byte()} * 4;
    const std::size_t steps = 2 + input.below(16);
    Sequence sequence(input.word());
    Outline outline;
    double x = 0.0;
    double y = 0.0;
    for (std::size_t i = 0; i < size; ++i) {
        x += static_cast<double>(sequence.below(2 * steps + 1)) - static_cast<double>(steps);
        y += static_cast<double>(sequence.below(2 * steps + 1)) - static_cast<double>(steps);
        outline.push_back({toFinite(scale * x), toFinite(scale * y)});
    }
    const double strayX = takeCoordinate(input, scale * 1e4, earlier);
    outline.push_back({strayX, takeCoordinate(input, scale * 1e4, earlier)});
    return outline;
}

/// From one side to the other and back, while y rises.
Outline takeJumps(InputBytes& input, double scale) {
    const std::size_t size = 3 + std::size_t{input.byte()} * 2;
    const auto width = static_cast<double>(input.byte());
    Sequence sequence(input.word());
    Outline outline;
    for (std::size_t i = 0; i < size; ++i) {
        const double x = static_cast<double>(sequence.below(8)) + (i % 2 == 0 ? 0.0 : width);
        outline.push_back({toFinite(scale * x), toFinite(scale * static_cast<double>(i))});
    }
    return outline;
}

Outline takeOutline(InputBytes& input, const BoundarySet& earlier) {
    const double scale = scales[input.below(std::size(scales))];
    switch (input.below(8)) {
    case 0:
        return takeComb(input, scale);
    case 1:
        return takeTangle(input, scale);
    case 2:
        return takeRound(input, scale);
    case 6:
        return takeWalk(input, scale, earlier);
    case 7:
        return takeJumps(input, scale);
    default:
        return takeCorners(input, scale, earlier);
    }
}

void addPolygon(BoundarySet& set, const Outline& outline, Closing closing) {
    const std::size_t remaining = maxVertices - set.vertices.size();
    if (set.polygons.size() < maxPolygons && outline.size() < remaining) {
        set.polygons.push_back(makePolygon(set.vertices, outline, outline.empty() ? Closing::open : closing));
    }
}

/// Copies of one outline side by side.
void addLattice(BoundarySet& set, InputBytes& input, const Outline& outline) {
    const std::size_t columns = 1 + input.below(24);
    const std::size_t rows = 1 + input.below(24);
    const double stepX = takeCoordinate(input, 1.0, set);
    const double stepY = takeCoordinate(input, 0.25, set);
    for (std::size_t i = 0; i < columns * rows; ++i) {
        Outline copy = outline;
        for (Point2D& corner : copy) {
            corner = {toFinite(corner.x + stepX * static_cast<double>(i % columns)),
                      toFinite(corner.y + stepY * static_cast<double>(i / columns))};
        }
        addPolygon(set, copy, Closing::open);
    }
}

/// Copies of one outline around each other.
void addNest(BoundarySet& set, InputBytes& input, const Outline& outline) {
    const std::size_t count = 1 + input.byte();
    for (std::size_t i = 1; i <= count; ++i) {
        Outline copy = outline;
        for (Point2D& corner : copy) {
            corner = {toFinite(corner.x * static_cast<double>(i) / 8.0),
                      toFinite(corner.y * static_cast<double>(i) / 8.0)};
        }
        addPolygon(set, copy, Closing::open);
    }
}

/// Makes the last polygon a hole of the one before it.
void makeHole(BoundarySet& set) {
    const BoundaryPolygon hole = set.polygons.back();
    set.polygons.pop_back();
    set.polygons.back().childPolygons.push_back(hole);
}

} // namespace

double takeCoordinate(InputBytes& input, double scale, const BoundarySet& earlier) {
    const std::uint8_t byte = input.byte();
    if (byte < 200) {
        return toFinite(scale * (byte - 100));
    }
    if (byte < 216) {
        return toFinite(scale * (byte - 208) / 16.0);
    }
    if (byte < 228) {
        return earlierCoordinate(input, earlier);
    }
    if (byte < 248) {
        constexpr double infinity = std::numeric_limits<double>::infinity();
        return toFinite(std::nextafter(earlierCoordinate(input, earlier), byte % 2 == 0 ? infinity : -infinity));
    }
    return toFinite(std::bit_cast<double>(input.word()));
}

BoundarySet takeBoundary(InputBytes& input) {
    BoundarySet set;
    for (std::size_t count = input.below(32); count > 0; --count) {
        const std::uint8_t form = input.byte();
        const Outline outline = takeOutline(input, set);
        if (form >= 240) {
            addLattice(set, input, outline);
        } else if (form >= 232) {
            addNest(set, input, outline);
        } else {
            addPolygon(set, outline, allClosings[form % 3]);
        }
        if (form >= 200 && form < 216 && set.polygons.size() > 1) {
            makeHole(set);
        }
    }
    return set;
}

} // namespace vadelclip
