/// Writes data for measurements, the same in every run:
///
///     generate nodes <directory> <files> <points per file>      random points in a square of 1,000 by 1,000
///     generate long-nodes <directory> <files> <points per file> the same points, numbers of 16 digits
///     generate outline <file> <vertices> <percent of the square>  one outline with bays
///     generate lattice <file> <polygons>                          polygons of 20 vertices, with gaps between them
///     generate strips <file> <polygons>                           thin strips across the square
///     generate nest <file> <polygons>                             rings of 64 vertices around each other
///     generate coast <file> <vertices>                            one outline with bays of all sizes
///     generate stray <file> <vertices>                            the same, with one vertex at (0, 0)
///     generate jumping <file> <vertices>                          one outline between two sides of the square

#include "outlines.hpp"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iomanip>
#include <random>
#include <string>

namespace vadelclip {

namespace {

constexpr double side = 1000.0;
constexpr double eastings = 382000.0;
constexpr double northings = 6354000.0;

void writeNodes(const std::string& directory, int fileCount, int pointCount, const char* format) {
    std::mt19937_64 random(7);
    std::uniform_real_distribution<double> place(0.0, side);
    std::uniform_real_distribution<double> height(0.0, 90.0);
    for (int number = 0; number < fileCount; ++number) {
        std::FILE* const file = std::fopen((directory + "/nodes_" + std::to_string(number) + ".xyz").c_str(), "w");
        if (file == nullptr) {
            std::exit(1);
        }
        std::fputs("x;y;z\n", file);
        for (int i = 0; i < pointCount; ++i) {
            const double x = eastings + place(random);
            const double y = northings + place(random);
            std::fprintf(file, format, x, y, height(random));
        }
        std::fclose(file);
    }
}

void writeBoundary(const std::string& path, const std::vector<Ring>& rings) {
    std::ofstream file(path);
    file << std::fixed << std::setprecision(4) << "<VADELSIM>\n <VadeDGM>\n  <group type=\"boundaries\">\n";
    for (std::size_t id = 0; id < rings.size(); ++id) {
        file << "   <polygon id=\"" << id << "\">\n";
        for (const Point2D point : rings[id]) {
            file << "    <point x=\"" << eastings + point.x << "\" y=\"" << northings + point.y << "\"/>\n";
        }
        file << "   </polygon>\n";
    }
    file << "  </group>\n </VadeDGM>\n</VADELSIM>\n";
}

/// A square with rounded corners and small bays everywhere, of the given share of the whole square.
Ring outline(std::size_t vertexCount, double percent) {
    const double half = side / 2.0 * std::sqrt(percent / 100.0) * 1.01;
    Ring ring;
    for (std::size_t i = 0; i < vertexCount; ++i) {
        const double angle = 6.283185307179586 * static_cast<double>(i) / static_cast<double>(vertexCount);
        const double bay = 1.0 + 0.008 * std::sin(37.0 * angle) + 0.004 * std::sin(911.0 * angle);
        const double x = std::copysign(std::pow(std::abs(std::cos(angle)), 0.15), std::cos(angle));
        const double y = std::copysign(std::pow(std::abs(std::sin(angle)), 0.15), std::sin(angle));
        ring.push_back({side / 2.0 + half * bay * x, side / 2.0 + half * bay * y});
    }
    return ring;
}

std::vector<Ring> ringsOf(const BoundarySet& set) {
    std::vector<Ring> rings;
    for (const BoundaryPolygon& polygon : set.polygons) {
        Ring ring;
        for (const std::int32_t index : polygon.vertexIndices) {
            const BoundaryVertex& vertex = set.vertices[static_cast<std::size_t>(index)];
            ring.push_back({vertex.x, vertex.y});
        }
        rings.push_back(ring);
    }
    return rings;
}

/// Returns no ring for an unknown name.
std::vector<Ring> rings(const std::string& name, std::size_t count) {
    if (name == "lattice") {
        return ringsOf(makeLattice(count, side));
    }
    if (name == "strips") {
        return ringsOf(makeStrips(count, side));
    }
    if (name == "nest") {
        return ringsOf(makeNest(count, side));
    }
    if (name == "coast") {
        return {farRing(count, side, {0.0, 0.0}, false)};
    }
    if (name == "stray") {
        Ring ring = farRing(count, side, {0.0, 0.0}, false);
        ring[count / 2] = {-eastings, -northings};
        return {ring};
    }
    return name == "jumping" ? std::vector<Ring>{jumpingRing(count, side)} : std::vector<Ring>();
}

} // namespace

} // namespace vadelclip

int main(int argc, char* argv[]) {
    const std::string what = argc > 1 ? argv[1] : "";
    if (what == "nodes" && argc == 5) {
        vadelclip::writeNodes(argv[2], std::atoi(argv[3]), std::atoi(argv[4]), "%.2f;%.2f;%.3f\n");
    } else if (what == "long-nodes" && argc == 5) {
        vadelclip::writeNodes(argv[2], std::atoi(argv[3]), std::atoi(argv[4]), "%.10f;%.9f;%.14f\n");
    } else if (what == "outline" && argc == 5) {
        vadelclip::writeBoundary(
            argv[2], {vadelclip::outline(static_cast<std::size_t>(std::atoi(argv[3])), std::atof(argv[4]))});
    } else if (argc == 4) {
        const std::vector<vadelclip::Ring> rings = vadelclip::rings(what, static_cast<std::size_t>(std::atoi(argv[3])));
        if (rings.empty()) {
            return 2;
        }
        vadelclip::writeBoundary(argv[2], rings);
    } else {
        return 2;
    }
    return 0;
}
