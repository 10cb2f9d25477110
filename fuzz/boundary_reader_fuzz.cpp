/// \file
/// Compares `readBoundaryFile` with a second, plain reading of the same document. The input is the file.

#include "fuzz_target.hpp"

#include "support/boundary_file_support.hpp"
#include "support/file_support.hpp"

#include <pugixml.hpp>

#include <algorithm>
#include <cmath>
#include <cstring>

namespace vadelclip {

namespace {

/// What is to come of a file. The error is empty for success.
struct PlainReading {
    std::string error;
    std::vector<Outline> polygons; ///< Those that are complete.
    Outline looseVertices;         ///< Of a polygon that failed.
};

template <typename Number>
bool extract(const pugi::xml_attribute& attribute, Number& number) {
    std::istringstream stream{std::string(attribute.value())};
    return !attribute.empty() && stream >> number;
}

/// The children of this name, found by looking at each.
std::vector<pugi::xml_node> childrenOf(const pugi::xml_node& node, const char* name) {
    std::vector<pugi::xml_node> children;
    for (pugi::xml_node child = node.first_child(); !child.empty(); child = child.next_sibling()) {
        if (std::strcmp(child.name(), name) == 0) {
            children.push_back(child);
        }
    }
    return children;
}

bool readPolygonPlainly(const pugi::xml_node& polygon, PlainReading& reading) {
    std::int32_t id = 0;
    if (!extract(polygon.attribute("id"), id)) {
        reading.error = "Cannot find the id of a polygon in a group of type 0";
        return false;
    }
    Outline outline;
    for (const pugi::xml_node& point : childrenOf(polygon, "point")) {
        Point2D position{};
        if (!extract(point.attribute("x"), position.x) || !extract(point.attribute("y"), position.y)) {
            reading.error = "Cannot read point " + std::to_string(outline.size()) + " in polygon " + std::to_string(id);
            reading.looseVertices = outline;
            return false;
        }
        outline.push_back(position);
    }
    reading.polygons.push_back(outline);
    return true;
}

PlainReading readPlainly(const std::string& path) {
    PlainReading reading;
    pugi::xml_document document;
    // From the file, as the reader does it: the library judges a zero byte in a tag otherwise than in a buffer.
    if (!document.load_file(path.c_str(), pugi::parse_pi | pugi::parse_ws_pcdata)) {
        reading.error = "Boundary file " + path + " not found";
        return reading;
    }
    const std::vector<pugi::xml_node> roots = childrenOf(document, "VADELSIM");
    const std::vector<pugi::xml_node> models =
        roots.empty() ? std::vector<pugi::xml_node>() : childrenOf(roots.front(), "VadeDGM");
    if (models.empty()) {
        reading.error = "Could not find the VadeDGM tag in the boundary file " + path;
        return reading;
    }
    for (const pugi::xml_node& group : childrenOf(models.front(), "group")) {
        if (std::strcmp(group.attribute("type").value(), "boundaries") != 0) {
            continue;
        }
        for (const pugi::xml_node& polygon : childrenOf(group, "polygon")) {
            if (!readPolygonPlainly(polygon, reading)) {
                return reading;
            }
        }
    }
    return reading;
}

void checkVertex(const BoundaryVertex& vertex, Point2D expected) {
    require(std::isfinite(vertex.x) && std::isfinite(vertex.y), "a vertex is not finite");
    requireSameBits(expected.x, vertex.x, "x of a vertex");
    requireSameBits(expected.y, vertex.y, "y of a vertex");
}

void checkBox(const BoundingBox& box, const Outline& outline) {
    BoundingBox expected;
    if (!outline.empty()) {
        const auto byX = [](Point2D a, Point2D b) { return a.x < b.x; };
        const auto byY = [](Point2D a, Point2D b) { return a.y < b.y; };
        expected = {std::min_element(outline.begin(), outline.end(), byX)->x,
                    std::min_element(outline.begin(), outline.end(), byY)->y,
                    std::max_element(outline.begin(), outline.end(), byX)->x,
                    std::max_element(outline.begin(), outline.end(), byY)->y};
    }
    requireSameBits(expected.minX, box.minX, "minX");
    requireSameBits(expected.minY, box.minY, "minY");
    requireSameBits(expected.maxX, box.maxX, "maxX");
    requireSameBits(expected.maxY, box.maxY, "maxY");
}

void checkSet(const BoundarySet& set, const PlainReading& expected) {
    requireEqual(expected.polygons.size(), set.polygons.size(), "polygons");
    std::size_t vertex = 0;
    for (std::size_t i = 0; i < set.polygons.size(); ++i) {
        const Outline& outline = expected.polygons[i];
        const BoundaryPolygon& polygon = set.polygons[i];
        require(polygon.childPolygons.empty() && polygon.edges.empty(), "a polygon has children or edges");
        requireEqual(outline.size(), polygon.vertexIndices.size(), "points of a polygon");
        for (std::size_t j = 0; j < outline.size(); ++j, ++vertex) {
            requireEqual(static_cast<std::int32_t>(vertex), polygon.vertexIndices[j], "index of a vertex");
            require(vertex < set.vertices.size(), "an index beyond the table");
            checkVertex(set.vertices[vertex], outline[j]);
        }
        checkBox(polygon.boundingBox, outline);
    }
    requireEqual(vertex + expected.looseVertices.size(), set.vertices.size(), "vertices");
    for (const Point2D loose : expected.looseVertices) {
        checkVertex(set.vertices[vertex++], loose);
    }
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const TemporaryDirectory directory;
    const std::string path = directory.write("area.xml", InputBytes(data, size).rest());
    const PlainReading expected = readPlainly(path);
    const Reading got = readBoundaryAt(path);

    requireEqual(expected.error.empty(), got.succeeded, "success");
    requireSameText(expected.error.empty() ? "" : expected.error + "\n", got.console, "console");
    require(got.calls == (expected.error.empty() ? Calls() : errorCalls(expected.error)), "messages");
    checkSet(got.set, expected);
    return 0;
}

} // namespace vadelclip
