/// \file
/// A polygon with holes that the GDAL driver writes and reads again. The input: a scale, then for each ring its middle, its
/// size and its corners by angle.

#include "fuzz_target.hpp"
#include "gdal_driver.hpp"

#include "boundary/contains_point.hpp"
#include "support/boundary_file_support.hpp"
#include "support/file_support.hpp"

#include <ogrsf_frmts.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <numbers>
#include <utility>
#include <vector>

namespace vadelclip {

namespace {

constexpr std::size_t maxHoles = 12;

struct Frame {
    double scale;
    double offset;
};

constexpr Frame frames[] = {{1.0, 0.0}, {0.01, 382000.12}, {1e-5, 146.27625}, {1e100, 0.0}, {0x1p-20, -1.0}};

std::unique_ptr<OGRLinearRing> takeRing(InputBytes& input, Frame frame, double reach) {
    const std::size_t corners = 3 + input.below(12);
    const double x = (static_cast<double>(input.byte()) - 128.0) * (reach > 200.0 ? 0.0 : 1.0);
    const double y = (static_cast<double>(input.byte()) - 128.0) * (reach > 200.0 ? 0.0 : 1.0);
    const bool isRounded = input.below(2) == 0;
    auto ring = std::make_unique<OGRLinearRing>();
    for (std::size_t i = 0; i < corners; ++i) {
        const double angle =
            2.0 * std::numbers::pi * (static_cast<double>(i) + input.byte() / 300.0) / static_cast<double>(corners);
        const double radius = reach * (1.0 + input.byte() / 128.0);
        const double across = radius * std::cos(angle);
        const double up = radius * std::sin(angle);
        ring->addPoint(frame.offset + frame.scale * (x + (isRounded ? std::round(across) : across)),
                       frame.offset + frame.scale * (y + (isRounded ? std::round(up) : up)));
    }
    ring->closeRings();
    if (input.below(2) == 0) {
        ring->reversePoints();
    }
    return ring;
}

OGRPolygon takePolygon(InputBytes& input) {
    const Frame frame = frames[input.below(std::size(frames))];
    OGRPolygon polygon;
    polygon.addRingDirectly(takeRing(input, frame, 250.0).release());
    for (std::size_t i = input.below(maxHoles + 1); i > 0; --i) {
        polygon.addRingDirectly(takeRing(input, frame, 1.0 + static_cast<double>(input.below(40))).release());
    }
    polygon.flattenTo2D();
    return polygon;
}

/// Returns the different corners of all rings, sorted.
std::vector<std::pair<double, double>> sortedCorners(const OGRPolygon& polygon) {
    std::vector<std::pair<double, double>> corners;
    for (const OGRLinearRing* ring : polygon) {
        for (int i = 0; i < ring->getNumPoints(); ++i) {
            corners.emplace_back(ring->getX(i), ring->getY(i));
        }
    }
    std::sort(corners.begin(), corners.end());
    corners.erase(std::unique(corners.begin(), corners.end()), corners.end());
    return corners;
}

/// A cut may insert one corner for each hole.
void requireSameCorners(const OGRPolygon& expected, const OGRPolygon& got) {
    requireEqual(expected.getNumInteriorRings(), got.getNumInteriorRings(), "holes");
    const auto before = sortedCorners(expected);
    const auto after = sortedCorners(got);
    require(std::includes(after.begin(), after.end(), before.begin(), before.end()), "a corner is lost");
    require(after.size() <= before.size() + static_cast<std::size_t>(expected.getNumInteriorRings()),
            "more than one new corner for each hole");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    constexpr const char* path = "/vsimem/holes.xml";
    InputBytes input(data, size);
    const OGRPolygon polygon = takePolygon(input);
    if (!writeQuietly(path, {&polygon})) {
        return 0;
    }
    std::vector<std::string> errors;
    const GDALDatasetUniquePtr dataset = openQuietly(path, errors);
    require(dataset != nullptr && errors.empty(), "what was written cannot be read");
    const OGRFeatureUniquePtr feature(dataset->GetLayer(0)->GetNextFeature());
    requireSameCorners(polygon, *feature->GetGeometryRef()->toPolygon());

    Reading reading = readBoundaryBytes(contentOf(path));
    requireEqual(std::size_t{1}, reading.set.polygons.size(), "polygons of the tool");
    for (const OGRLinearRing* ring : polygon) {
        for (int i = 0; i < ring->getNumPoints(); ++i) {
            require(containsPoint(reading.set.polygons[0], {ring->getX(i), ring->getY(i)}, reading.set.vertices),
                    "a corner is not kept");
        }
    }
    VSIUnlink(path);
    return 0;
}

} // namespace vadelclip
