/// \file
/// The GDAL driver against `readBoundaryFile`, then what it writes against what it has read. The input is the file.

#include "fuzz_target.hpp"
#include "gdal_driver.hpp"

#include "boundary/boundary_document.hpp"
#include "gdal/hole_split.hpp"
#include "support/boundary_file_support.hpp"
#include "support/file_support.hpp"

#include <ogrsf_frmts.h>

#include <algorithm>

namespace vadelclip {

namespace {

constexpr const char* inputPath = "/vsimem/input.xml";
constexpr const char* writtenPath = "/vsimem/written.xml";

std::vector<std::string> wellKnownTexts(OGRLayer& layer) {
    std::vector<std::string> texts;
    for (const OGRFeatureUniquePtr& feature : layer) {
        OGRWktOptions options;
        options.precision = 17;
        texts.push_back(feature->GetGeometryRef()->exportToWkt(options));
    }
    return texts;
}

/// All points of a geometry, without those that only close a ring.
Outline pointsOf(const OGRGeometry& geometry) {
    Outline points;
    const auto append = [&points](const OGRSimpleCurve& curve, int count) {
        for (int i = 0; i < count; ++i) {
            points.push_back({curve.getX(i), curve.getY(i)});
        }
    };
    if (geometry.getGeometryType() == wkbPoint) {
        points.push_back({geometry.toPoint()->getX(), geometry.toPoint()->getY()});
    } else if (geometry.getGeometryType() == wkbLineString) {
        append(*geometry.toLineString(), 2);
    } else {
        for (const OGRLinearRing* ring : geometry.toPolygon()) {
            append(*ring, ring->getNumPoints() - 1);
        }
    }
    return points;
}

/// All points of the layer, in file order.
Outline pointsOf(OGRLayer& layer) {
    Outline points;
    for (const OGRFeatureUniquePtr& feature : layer) {
        const Outline more = pointsOf(*feature->GetGeometryRef());
        points.insert(points.end(), more.begin(), more.end());
    }
    return points;
}

Outline pointsOf(const BoundarySet& set, const BoundaryPolygon& polygon) {
    Outline ring;
    for (const std::int32_t index : polygon.vertexIndices) {
        const BoundaryVertex& vertex = set.vertices[static_cast<std::size_t>(index)];
        ring.push_back({vertex.x, vertex.y});
    }
    return ring;
}

/// The same of what the tool reads. A ring that its file closes has one point more there.
Outline pointsOf(const BoundarySet& set) {
    Outline points;
    for (const BoundaryPolygon& polygon : set.polygons) {
        const Outline ring = pointsOf(set, polygon);
        const bool isClosed = ring.size() > 3 && ring.front().x == ring.back().x && ring.front().y == ring.back().y;
        const vadelclip_gdal::RingsOfPolygon rings =
            ring.size() > 2 ? vadelclip_gdal::splitHoles(ring) : vadelclip_gdal::RingsOfPolygon{ring, {}};
        points.insert(points.end(), rings.outer.begin(), rings.outer.end() - (isClosed && rings.holes.empty() ? 1 : 0));
        for (const vadelclip_gdal::Ring& hole : rings.holes) {
            points.insert(points.end(), hole.begin(), hole.end());
        }
    }
    return points;
}

void requireSamePoints(const Outline& expected, const Outline& got) {
    requireEqual(expected.size(), got.size(), "points");
    for (std::size_t i = 0; i < expected.size(); ++i) {
        requireSameBits(expected[i].x, got[i].x, "x");
        requireSameBits(expected[i].y, got[i].y, "y");
    }
}

/// The message of the tool with the path that the driver reads.
std::string withPath(std::string message, const std::string& path) {
    const std::size_t position = message.find(path);
    return position == std::string::npos ? message : message.replace(position, path.size(), inputPath);
}

int holesOf(const OGRGeometry& geometry) {
    return geometry.getGeometryType() == wkbPolygon ? geometry.toPolygon()->getNumInteriorRings() : 0;
}

/// Without holes the tool reads the points of the geometry. With holes the driver reads the same number of holes.
void checkWritten(const std::vector<const OGRGeometry*>& geometries, OGRLayer& layer) {
    const Reading reading = readBoundaryBytes(contentOf(writtenPath));
    requireEqual(geometries.size(), reading.set.polygons.size(), "polygons of the tool");
    for (std::size_t i = 0; i < geometries.size(); ++i) {
        const OGRFeatureUniquePtr feature(layer.GetFeature(static_cast<GIntBig>(i)));
        if (holesOf(*geometries[i]) == 0) {
            requireSamePoints(pointsOf(*geometries[i]), pointsOf(reading.set, reading.set.polygons[i]));
        } else {
            requireEqual(holesOf(*geometries[i]), holesOf(*feature->GetGeometryRef()), "holes");
        }
    }
}

/// Writes all features and reads them again. A polygon without points is left out.
void checkWriting(OGRLayer& layer) {
    std::vector<OGRFeatureUniquePtr> features;
    std::vector<const OGRGeometry*> geometries;
    for (OGRFeatureUniquePtr& feature : layer) {
        if (feature->GetGeometryRef()->IsEmpty() == 0) {
            geometries.push_back(feature->GetGeometryRef());
            features.push_back(std::move(feature));
        }
    }
    if (!writeQuietly(writtenPath, geometries)) {
        return; // rings that cross, or fewer than three different corners
    }
    std::vector<std::string> errors;
    const GDALDatasetUniquePtr written = openQuietly(writtenPath, errors);
    require(written != nullptr && errors.empty(), "what was written cannot be read");
    requireEqual(static_cast<GIntBig>(geometries.size()), written->GetLayer(0)->GetFeatureCount(), "features");
    checkWritten(geometries, *written->GetLayer(0));
    VSIUnlink(writtenPath);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string bytes = InputBytes(data, size).rest();
    static const TemporaryDirectory directory;
    const std::string path = directory.write("area.xml", bytes);
    const Reading expected = readBoundaryAt(path);
    const MemoryFile input(inputPath, bytes);
    std::vector<std::string> errors;
    const GDALDatasetUniquePtr dataset = openQuietly(inputPath, errors);
    if (dataset == nullptr) {
        // No error of the driver: the root element is not in the first block.
        require(errors.empty() || errors[0] + "\n" == withPath(expected.console, path),
                "another error than the tool's");
        return 0;
    }
    require(expected.succeeded, "the tool refuses this file");
    OGRLayer& layer = *dataset->GetLayer(0);
    requireEqual(static_cast<GIntBig>(expected.set.polygons.size()), layer.GetFeatureCount(), "features");
    requireSamePoints(pointsOf(expected.set), pointsOf(layer));
    require(wellKnownTexts(layer) == wellKnownTexts(layer), "a second reading differs");
    for (int i = 1; i < dataset->GetLayerCount(); ++i) {
        pointsOf(*dataset->GetLayer(i));
    }
    checkWriting(layer);
    return 0;
}

} // namespace vadelclip
