#include "support/boundary_support.hpp"

#include "boundary/contains_point.hpp"

#include <algorithm>
#include <cstdint>
#include <cstdio>

namespace vadelclip {

namespace {

std::string text(double value) {
    char digits[40];
    std::snprintf(digits, sizeof digits, "%a", value);
    return digits;
}

std::string text(const std::string& value) {
    return std::string("\"") + value + "\"";
}

std::string text(Point2D point) {
    return std::string("(") + text(point.x) + " " + text(point.y) + ")";
}

template <typename Integer>
std::string text(Integer value) {
    return std::to_string(value);
}

template <typename List>
std::string listText(const List& list) {
    std::string result = "[";
    for (const auto& item : list) {
        result.append(" ").append(text(item));
    }
    return result + " ]";
}

template <typename Value>
std::string line(const char* member, const Value& value) {
    return std::string(member) + " = " + text(value) + "\n";
}

template <typename List>
std::string listLine(const char* member, const List& list) {
    return std::string(member) + " = " + listText(list) + "\n";
}

template <typename List>
std::string recordLines(const char* member, const List& records) {
    std::string result;
    for (const auto& record : records) {
        result += std::string(member) + " {\n" + asText(record) + "}\n";
    }
    return result;
}

std::string mapLines(const std::map<std::int32_t, std::vector<std::int32_t>>& lists) {
    std::string result;
    for (const auto& [key, list] : lists) {
        result += listLine(("intListMap " + text(key)).c_str(), list);
    }
    return result;
}

std::string pairLines(const std::vector<std::array<std::uint64_t, 2>>& pairs) {
    std::string result;
    for (const auto& pair : pairs) {
        result += listLine("pairList", pair);
    }
    return result;
}

std::string boxLine(const BoundingBox& box) {
    return "boundingBox = x " + text(box.minX) + " to " + text(box.maxX) + ", y " + text(box.minY) + " to " +
           text(box.maxY) + "\n";
}

testing::AssertionResult expectInEveryShape(const Outline& outline, Point2D point, bool expected) {
    for (const Outline& shape : sameShapes(outline)) {
        for (const Closing closing : allClosings) {
            std::vector<BoundaryVertex> table;
            BoundaryPolygon polygon = makePolygon(table, shape, closing);
            if (containsPoint(polygon, point, table) != expected) {
                return testing::AssertionFailure() << text(point) << (expected ? " is outside of " : " is inside of ")
                                                   << asText(shape) << ", closing " << static_cast<int>(closing);
            }
        }
    }
    return testing::AssertionSuccess();
}

} // namespace

BoundaryPolygon makePolygon(std::vector<BoundaryVertex>& vertexTable, const Outline& outline, Closing closing) {
    BoundaryPolygon polygon;
    Outline corners = outline;
    if (closing == Closing::byRepeatedPoint) {
        corners.push_back(outline.front());
    }
    for (const Point2D& corner : corners) {
        BoundaryVertex vertex;
        vertex.x = corner.x;
        vertex.y = corner.y;
        polygon.vertexIndices.push_back(static_cast<std::int32_t>(vertexTable.size()));
        vertexTable.push_back(vertex);
    }
    if (closing == Closing::byIndex) {
        polygon.vertexIndices.push_back(polygon.vertexIndices.front());
    }
    computeBoundingBox(polygon, vertexTable);
    return polygon;
}

BoundarySet setOf(const std::vector<Outline>& outlines) {
    BoundarySet set;
    for (const Outline& outline : outlines) {
        set.polygons.push_back(makePolygon(set.vertices, outline));
    }
    return set;
}

Outline reversed(Outline outline) {
    std::reverse(outline.begin(), outline.end());
    return outline;
}

Outline startingAt(Outline outline, std::size_t first) {
    std::rotate(outline.begin(), outline.begin() + static_cast<std::ptrdiff_t>(first), outline.end());
    return outline;
}

Outline withRepeatedCorner(Outline outline, std::size_t corner, std::size_t times) {
    outline.insert(outline.begin() + static_cast<std::ptrdiff_t>(corner), times - 1, outline[corner]);
    return outline;
}

std::vector<Outline> sameShapes(const Outline& outline) {
    std::vector<Outline> shapes;
    for (std::size_t first = 0; first < outline.size(); ++first) {
        const Outline started = startingAt(outline, first);
        shapes.push_back(started);
        for (std::size_t corner = 0; corner < started.size(); ++corner) {
            shapes.push_back(withRepeatedCorner(started, corner, 2));
            shapes.push_back(withRepeatedCorner(started, corner, 3));
        }
    }
    return shapes;
}

testing::AssertionResult isInside(const Outline& outline, Point2D point) {
    return expectInEveryShape(outline, point, true);
}

testing::AssertionResult isOutside(const Outline& outline, Point2D point) {
    return expectInEveryShape(outline, point, false);
}

std::string asText(Point2D point) {
    return text(point);
}

std::string asText(const Outline& outline) {
    return listText(outline);
}

std::string boxText(const BoundingBox& box) {
    return asText(Outline{{box.minX, box.minY}, {box.maxX, box.maxY}});
}

std::string asText(const BoundaryVertex& vertex) {
    return line("x", vertex.x) + line("y", vertex.y) + line("z", vertex.z) +
           listLine("attachedItems", vertex.attachedItems) + line("vertexTag", vertex.vertexTag);
}

std::string asText(const BoundaryEdge& edge) {
    return line("length", edge.length) + line("lineOffset", edge.lineOffset) +
           line("squaredLength", edge.squaredLength) + line("marked", static_cast<int>(edge.marked)) +
           line("firstVertex", edge.firstVertex) + line("secondVertex", edge.secondVertex) + line("start", edge.start) +
           line("end", edge.end) + line("delta", edge.delta) + line("direction", edge.direction) +
           line("normal", edge.normal) + line("minCorner", edge.minCorner) + line("maxCorner", edge.maxCorner) +
           listLine("attachedItems", edge.attachedItems);
}

std::string asText(const BoundaryPolygon& polygon) {
    return recordLines("child", polygon.childPolygons) + listLine("headerWords", polygon.headerWords) +
           line("firstText", polygon.firstText) + listLine("flagBytes", polygon.flagBytes) +
           line("firstWord", polygon.firstWord) + line("secondWord", polygon.secondWord) +
           line("firstFlag", polygon.firstFlag) + boxLine(polygon.boundingBox) +
           listLine("vertexIndices", polygon.vertexIndices) + listLine("firstIntList", polygon.firstIntList) +
           listLine("wordList", polygon.wordList) + listLine("secondIntList", polygon.secondIntList) +
           listLine("textList", polygon.textList) + mapLines(polygon.intListMap) +
           line("thirdWord", polygon.thirdWord) + line("secondFlag", polygon.secondFlag) +
           line("fourthWord", polygon.fourthWord) + line("fifthWord", polygon.fifthWord) +
           line("defaultedReal", polygon.defaultedReal) + listLine("thirdIntList", polygon.thirdIntList) +
           listLine("fourthIntList", polygon.fourthIntList) + recordLines("edge", polygon.edges) +
           pairLines(polygon.pairList) + line("secondText", polygon.secondText) +
           listLine("fifthIntList", polygon.fifthIntList) + listLine("closingFlags", polygon.closingFlags) +
           line("defaultedIndex", polygon.defaultedIndex);
}

std::string asText(const BoundarySet& set) {
    return recordLines("polygon", set.polygons) + recordLines("vertex", set.vertices);
}

} // namespace vadelclip
