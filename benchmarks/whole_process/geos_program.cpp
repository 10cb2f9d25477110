/// A careful implementation of the same job with a well-known geometry library: fgets, strtod, a box test, the indexed
/// point locator of GEOS, fputs, one flush per kept line.
///
///     geos_program <input directory> <output directory> <boundary file>

#include <geos/algorithm/locate/IndexedPointInAreaLocator.h>
#include <geos/geom/Coordinate.h>
#include <geos/geom/CoordinateArraySequence.h>
#include <geos/geom/GeometryFactory.h>
#include <geos/geom/LinearRing.h>
#include <geos/geom/Location.h>
#include <geos/geom/Polygon.h>
#include <pugixml.hpp>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <vector>

using geos::algorithm::locate::IndexedPointInAreaLocator;
using geos::geom::Coordinate;

struct Area {
    std::unique_ptr<geos::geom::Polygon> polygon;
    std::unique_ptr<IndexedPointInAreaLocator> locator;
};

static std::vector<Area> readAreas(const char* path) {
    const auto* const factory = geos::geom::GeometryFactory::getDefaultInstance();
    std::vector<Area> areas;
    pugi::xml_document document;
    document.load_file(path);
    for (const auto& group : document.child("VADELSIM").child("VadeDGM").children("group")) {
        for (const auto& node : group.children("polygon")) {
            std::vector<Coordinate> ring;
            for (const auto& point : node.children("point")) {
                ring.emplace_back(std::strtod(point.attribute("x").value(), nullptr),
                                  std::strtod(point.attribute("y").value(), nullptr));
            }
            if (ring.front() != ring.back()) {
                ring.push_back(ring.front());
            }
            auto polygon = factory->createPolygon(
                factory->createLinearRing(std::make_unique<geos::geom::CoordinateArraySequence>(std::move(ring))));
            auto locator = std::make_unique<IndexedPointInAreaLocator>(*polygon);
            areas.push_back({std::move(polygon), std::move(locator)});
        }
    }
    return areas;
}

static bool anyContains(std::vector<Area>& areas, const Coordinate& point) {
    for (Area& area : areas) {
        if (area.polygon->getEnvelopeInternal()->contains(point) &&
            area.locator->locate(&point) != geos::geom::Location::EXTERIOR) {
            return true;
        }
    }
    return false;
}

int main(int argc, char* argv[]) {
    if (argc != 4) {
        return 2;
    }
    std::vector<Area> areas = readAreas(argv[3]);
    std::filesystem::create_directory(argv[2]);
    for (const auto& entry : std::filesystem::directory_iterator(argv[1])) {
        std::FILE* const input = std::fopen(entry.path().c_str(), "r");
        std::FILE* const output = std::fopen((std::filesystem::path(argv[2]) / entry.path().filename()).c_str(), "w");
        char line[4096];
        if (std::fgets(line, sizeof line, input) != nullptr) {
            std::fputs(line, output);
        }
        while (std::fgets(line, sizeof line, input) != nullptr) {
            char* end = nullptr;
            const double x = std::strtod(line, &end);
            const double y = std::strtod(end + 1, &end);
            if (anyContains(areas, Coordinate(x, y))) {
                std::fputs(line, output);
                std::fflush(output);
            }
        }
        std::fclose(output);
        std::fclose(input);
    }
}
