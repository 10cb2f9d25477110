#include "boundary/boundary_document.hpp"

#include "messages/translation.hpp"
#include "text/number_text.hpp"

#include <pugixml.hpp>

#include <algorithm>
#include <cstddef>
#include <deque>
#include <iterator>
#include <map>
#include <sstream>
#include <string_view>
#include <utility>
#include <vector>

namespace vadelclip {

namespace {

constexpr std::string_view boundariesType = "boundaries";

bool extractInteger(const char* text, std::int32_t& number) {
    std::istringstream stream{std::string(text)};
    stream >> number;
    return !stream.fail();
}

std::string readPolygonId(const pugi::xml_node& polygonNode, std::int32_t& id) {
    const pugi::xml_attribute attribute = polygonNode.attribute("id");
    if (attribute.empty() || !extractInteger(attribute.value(), id)) {
        // The placeholder is always the number 0, not the type of the group; kept on purpose.
        return formatMessage("Cannot find the id of a polygon in a group of type {0}", std::int32_t{0});
    }
    return {};
}

/// Makes room for more elements at once. The capacity at least doubles, so that many calls copy each element a few times only.
template <class Element>
void makeRoom(std::vector<Element>& elements, std::size_t count) {
    if (count > elements.capacity() - elements.size()) {
        elements.reserve(std::max(2 * elements.capacity(), elements.size() + count));
    }
}

void appendVertices(BoundarySet& set, BoundaryPolygon& polygon, const std::deque<Point2D>& points) {
    polygon.vertexIndices.reserve(points.size());
    makeRoom(set.vertices, points.size());
    for (const Point2D point : points) {
        polygon.vertexIndices.push_back(static_cast<std::int32_t>(set.vertices.size()));
        BoundaryVertex& vertex = set.vertices.emplace_back();
        vertex.x = point.x;
        vertex.y = point.y;
    }
}

/// Removes all nodes in a node, without recursion.
void removeDescendants(pugi::xml_node ancestor) {
    pugi::xml_node node = ancestor;
    for (;;) {
        const pugi::xml_node child = node.first_child();
        if (!child.empty()) {
            node = child;
        } else if (node != ancestor) {
            pugi::xml_node parent = node.parent();
            parent.remove_child(node);
            node = parent;
        } else {
            return;
        }
    }
}

/// Removes a node. The library would remove nodes in it by recursion, and deeply nested ones would exhaust the stack.
void removeChild(pugi::xml_node parent, const pugi::xml_node& child) {
    if (!child.first_child().empty()) {
        removeDescendants(child);
    }
    parent.remove_child(child);
}

/// Removes each child after reading it. The points fit into the memory of the children that they come from, because
/// they are in small blocks. A vector that grows would need new memory.
std::string readPoints(std::deque<Point2D>& points, pugi::xml_node polygonNode, std::int32_t id) {
    for (pugi::xml_node node = polygonNode.first_child(); !node.empty(); node = polygonNode.first_child()) {
        if (std::string_view(node.name()) == "point") {
            Point2D point{};
            if (!readNumericAttribute(node, "x", point.x) || !readNumericAttribute(node, "y", point.y)) {
                return formatMessage("Cannot read point {0} in polygon {1}", static_cast<std::int32_t>(points.size()),
                                     id);
            }
            points.push_back(point);
        }
        removeChild(polygonNode, node);
    }
    return {};
}

/// Checks the id before any point, also in a polygon without points.
std::string readPolygon(BoundaryGroup& group, const pugi::xml_node& polygonNode) {
    BoundaryPolygon polygon;
    std::int32_t id = 0;
    std::string error = readPolygonId(polygonNode, id);
    if (error.empty()) {
        std::deque<Point2D> points;
        error = readPoints(points, polygonNode, id);
        appendVertices(group.set, polygon, points);
    }
    if (error.empty()) {
        computeBoundingBox(polygon, group.set.vertices);
        group.set.polygons.push_back(std::move(polygon));
        group.polygonIds.push_back(id);
    }
    return error;
}

/// Makes room for all polygons of a group at once. Smaller tables would remain in memory as gaps.
void reservePolygons(BoundaryGroup& group, const pugi::xml_node& groupNode) {
    const auto nodes = groupNode.children("polygon");
    makeRoom(group.set.polygons, static_cast<std::size_t>(std::distance(nodes.begin(), nodes.end())));
}

/// Removes each child after reading it.
std::string readPolygons(BoundaryGroup& group, pugi::xml_node groupNode) {
    reservePolygons(group, groupNode);
    for (pugi::xml_node node = groupNode.first_child(); !node.empty(); node = groupNode.first_child()) {
        if (std::string_view(node.name()) == "polygon") {
            std::string error = readPolygon(group, node);
            if (!error.empty()) {
                return error;
            }
        }
        removeChild(groupNode, node);
    }
    return {};
}

std::string_view typeOf(const pugi::xml_node& groupNode) {
    return groupNode.attribute("type").value();
}

pugi::xml_node modelOf(const pugi::xml_document& document) {
    return document.child("VADELSIM").child("VadeDGM");
}

/// Parses text from a stream: pugixml ends it with a zero byte or not, as it does with a file. That decides about zero
/// bytes in tags.
pugi::xml_parse_result parseAsFile(pugi::xml_document& document, std::string content) {
    std::istringstream stream(std::move(content));
    return document.load(stream, boundaryParseOptions, pugi::encoding_auto);
}

void readOtherGroups(std::vector<BoundaryGroup>& groups, const pugi::xml_node& model) {
    std::map<std::string_view, std::size_t> numbers; // of each type in `groups`
    for (const pugi::xml_node& groupNode : model.children("group")) {
        const std::string_view type = typeOf(groupNode);
        if (type == boundariesType) {
            continue;
        }
        const auto [entry, isNew] = numbers.emplace(type, groups.size());
        if (isNew) {
            groups.emplace_back().type = type;
        }
        BoundaryGroup& group = groups[entry->second];
        if (group.error.empty()) {
            group.error = readPolygons(group, groupNode);
        }
    }
}

} // namespace

const unsigned int boundaryParseOptions = pugi::parse_pi | pugi::parse_ws_pcdata;

bool readNumericAttribute(const pugi::xml_node& node, const char* attributeName, double& value) {
    const pugi::xml_attribute attribute = node.attribute(attributeName);
    if (attribute.empty()) {
        return false;
    }
    // A number may end its text here, but not in a node line. Both rules are on purpose: see docs/file-formats.md.
    const NumberReading reading = readNumber(attribute.value());
    value = reading.value;
    return !reading.failed();
}

std::string readBoundaries(BoundaryGroup& group, const pugi::xml_document& document,
                           const pugi::xml_parse_result& result, const std::string& boundaryFilePath) {
    group.type = boundariesType;
    if (result.status != pugi::status_ok) {
        return formatMessage("Boundary file {0} not found", boundaryFilePath);
    }
    const pugi::xml_node model = modelOf(document);
    if (model.empty()) {
        return formatMessage("Could not find the VadeDGM tag in the boundary file {0}", boundaryFilePath);
    }
    for (const pugi::xml_node& groupNode : model.children("group")) {
        // Groups of another type or without a type are skipped silently.
        if (typeOf(groupNode) == boundariesType) {
            std::string error = readPolygons(group, groupNode);
            if (!error.empty()) {
                return error;
            }
        }
    }
    return {};
}

std::string readBoundaryText(std::vector<BoundaryGroup>& groups, std::string content,
                             const std::string& boundaryFilePath) {
    pugi::xml_document document;
    const pugi::xml_parse_result result = parseAsFile(document, std::move(content));
    groups.emplace_back();
    std::string error = readBoundaries(groups.front(), document, result, boundaryFilePath);
    if (error.empty()) {
        readOtherGroups(groups, modelOf(document));
    }
    return error;
}

} // namespace vadelclip
