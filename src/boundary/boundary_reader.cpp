#include "boundary/boundary_reader.hpp"

#include "messages/reporting.hpp"
#include "messages/translation.hpp"
#include "text/number_text.hpp"

#include <pugixml.hpp>
#ifdef __GLIBC__
#include <malloc.h>
#endif

#include <cstdint>
#include <sstream>
#include <string_view>
#include <utility>

namespace vadelclip {

namespace {

/// Exactly these two, not the library's default: character references are not replaced, line ends are not normalised,
/// and a processing instruction becomes a node with the name of its target.
constexpr unsigned int parseOptions = pugi::parse_pi | pugi::parse_ws_pcdata;

bool extractInteger(const char* text, std::int32_t& number) {
    std::istringstream stream{std::string(text)};
    stream >> number;
    return !stream.fail();
}

bool readPolygonId(const pugi::xml_node& polygonNode, std::int32_t& id) {
    const pugi::xml_attribute attribute = polygonNode.attribute("id");
    if (attribute.empty() || !extractInteger(attribute.value(), id)) {
        // The placeholder is always the number 0, not the type of the group; kept on purpose.
        reportLine(formatMessage("Cannot find the id of a polygon in a group of type {0}", std::int32_t{0}));
        return false;
    }
    return true;
}

void appendVertex(BoundarySet& set, BoundaryPolygon& polygon, double x, double y) {
    BoundaryVertex vertex;
    vertex.x = x;
    vertex.y = y;
    set.vertices.push_back(vertex);
    polygon.vertexIndices.push_back(static_cast<std::int32_t>(set.vertices.size() - 1));
}

/// Returns freed memory to the system. The C library does not do this by itself for memory in the middle of its heap.
void releaseFreedMemory() {
#ifdef __GLIBC__
    malloc_trim(0);
#endif
}

/// Removes each child after reading it: the document and the vertices are never both complete in memory.
bool readPoints(BoundarySet& set, BoundaryPolygon& polygon, pugi::xml_node polygonNode, std::int32_t id) {
    std::int32_t pointCounter = 0;
    for (pugi::xml_node node = polygonNode.first_child(); !node.empty(); node = polygonNode.first_child()) {
        if (std::string_view(node.name()) == "point") {
            double x = 0.0;
            double y = 0.0;
            if (!readNumericAttribute(node, "x", x) || !readNumericAttribute(node, "y", y)) {
                reportLine(formatMessage("Cannot read point {0} in polygon {1}", pointCounter, id));
                return false;
            }
            if (set.vertices.size() == set.vertices.capacity()) {
                releaseFreedMemory(); // before the table grows
            }
            appendVertex(set, polygon, x, y);
            ++pointCounter;
        }
        polygonNode.remove_child(node);
    }
    return true;
}

/// Checks the id before any point, also in a polygon without points. The id is only used in messages.
bool readPolygon(BoundarySet& set, const pugi::xml_node& polygonNode) {
    BoundaryPolygon polygon;
    std::int32_t id = 0;
    if (!readPolygonId(polygonNode, id) || !readPoints(set, polygon, polygonNode, id)) {
        return false;
    }
    computeBoundingBox(polygon, set.vertices);
    set.polygons.push_back(std::move(polygon));
    return true;
}

bool readGroup(BoundarySet& set, pugi::xml_node group) {
    // Groups of another type or without a type are skipped silently.
    if (std::string_view(group.attribute("type").value()) != "boundaries") {
        return true;
    }
    for (pugi::xml_node node = group.first_child(); !node.empty(); node = group.first_child()) {
        if (std::string_view(node.name()) == "polygon" && !readPolygon(set, node)) {
            return false;
        }
        group.remove_child(node);
    }
    return true;
}

} // namespace

bool readNumericAttribute(const pugi::xml_node& node, const char* attributeName, double& value) {
    const pugi::xml_attribute attribute = node.attribute(attributeName);
    if (attribute.empty()) {
        return false;
    }
    // A number may end its text here, but not in a node line. Both rules are on purpose: see docs/file-formats.md.
    const NumberReading reading = readNumber(attribute.value());
    value = reading.value;
    return !reading.failed;
}

bool readBoundaryFile(BoundarySet& set, const std::string& boundaryFilePath) {
    pugi::xml_document document;
    if (document.load_file(boundaryFilePath.c_str(), parseOptions, pugi::encoding_auto).status != pugi::status_ok) {
        reportLine(formatMessage("Boundary file {0} not found", boundaryFilePath));
        return false;
    }
    const pugi::xml_node model = document.child("VADELSIM").child("VadeDGM");
    if (model.empty()) {
        reportLine(formatMessage("Could not find the VadeDGM tag in the boundary file {0}", boundaryFilePath));
        return false;
    }
    for (const pugi::xml_node& group : model.children("group")) {
        if (!readGroup(set, group)) {
            return false;
        }
    }
    return true;
}

} // namespace vadelclip
