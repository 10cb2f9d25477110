#include "boundary/boundary_set.hpp"

#include "support/boundary_support.hpp"

#include <gtest/gtest.h>

#include <type_traits>

namespace vadelclip {

namespace {

using IntList = std::vector<std::int32_t>;
using WordList = std::vector<std::uint64_t>;

/// Expects that a structured binding is this member of the record, with this type.
#define EXPECT_PLACE(record, place, Type, member)                                                                      \
    static_assert(std::is_same_v<std::remove_reference_t<decltype(place)>, Type>, #member);                            \
    EXPECT_EQ(static_cast<const void*>(&(place)), static_cast<const void*>(&(record).member)) << #member

} // namespace

TEST(BoundarySet, membersArePolygonsAndVertices) {
    BoundarySet set;
    auto& [polygons, vertices] = set;
    EXPECT_PLACE(set, polygons, std::vector<BoundaryPolygon>, polygons);
    EXPECT_PLACE(set, vertices, std::vector<BoundaryVertex>, vertices);
    EXPECT_TRUE(polygons.empty());
    EXPECT_TRUE(vertices.empty());
}

TEST(BoundarySet, vertexHasTheseMembersAndValues) {
    BoundaryVertex vertex;
    auto& [x, y, z, attachedItems, vertexTag] = vertex;
    EXPECT_PLACE(vertex, x, double, x);
    EXPECT_PLACE(vertex, y, double, y);
    EXPECT_PLACE(vertex, z, double, z);
    EXPECT_PLACE(vertex, attachedItems, IntList, attachedItems);
    EXPECT_PLACE(vertex, vertexTag, std::int32_t, vertexTag);
    EXPECT_EQ("(0x0p+0 0x0p+0)", asText(Point2D{x, y}));
    EXPECT_EQ("(0x0p+0 0x0p+0)", asText(Point2D{z, vertexTag * 1.0}));
    EXPECT_TRUE(attachedItems.empty());
}

TEST(BoundarySet, edgeHasTheseMembers) {
    BoundaryEdge edge;
    auto& [length, lineOffset, squaredLength, marked, firstVertex, secondVertex, start, end, delta, direction, normal,
           minCorner, maxCorner, attachedItems] = edge;
    EXPECT_PLACE(edge, length, double, length);
    EXPECT_PLACE(edge, lineOffset, double, lineOffset);
    EXPECT_PLACE(edge, squaredLength, double, squaredLength);
    EXPECT_PLACE(edge, marked, bool, marked);
    EXPECT_PLACE(edge, firstVertex, std::int32_t, firstVertex);
    EXPECT_PLACE(edge, secondVertex, std::int32_t, secondVertex);
    EXPECT_PLACE(edge, start, Point2D, start);
    EXPECT_PLACE(edge, end, Point2D, end);
    EXPECT_PLACE(edge, delta, Point2D, delta);
    EXPECT_PLACE(edge, direction, Point2D, direction);
    EXPECT_PLACE(edge, normal, Point2D, normal);
    EXPECT_PLACE(edge, minCorner, Point2D, minCorner);
    EXPECT_PLACE(edge, maxCorner, Point2D, maxCorner);
    EXPECT_PLACE(edge, attachedItems, IntList, attachedItems);
    EXPECT_FALSE(marked);
}

TEST(BoundarySet, newEdgeIsZero) {
    EXPECT_EQ("length = 0x0p+0\n"
              "lineOffset = 0x0p+0\n"
              "squaredLength = 0x0p+0\n"
              "marked = 0\n"
              "firstVertex = 0\n"
              "secondVertex = 0\n"
              "start = (0x0p+0 0x0p+0)\n"
              "end = (0x0p+0 0x0p+0)\n"
              "delta = (0x0p+0 0x0p+0)\n"
              "direction = (0x0p+0 0x0p+0)\n"
              "normal = (0x0p+0 0x0p+0)\n"
              "minCorner = (0x0p+0 0x0p+0)\n"
              "maxCorner = (0x0p+0 0x0p+0)\n"
              "attachedItems = [ ]\n",
              asText(BoundaryEdge()));
}

TEST(BoundarySet, polygonHasTheseMembers) {
    BoundaryPolygon polygon;
    auto& [childPolygons, headerWords, firstText, flagBytes, firstWord, secondWord, firstFlag, boundingBox,
           vertexIndices, firstIntList, wordList, secondIntList, textList, intListMap, thirdWord, secondFlag,
           fourthWord, fifthWord, defaultedReal, thirdIntList, fourthIntList, edges, pairList, secondText, fifthIntList,
           closingFlags, defaultedIndex] = polygon;
    EXPECT_PLACE(polygon, childPolygons, std::vector<BoundaryPolygon>, childPolygons);
    using FiveWords = std::array<std::uint32_t, 5>;
    EXPECT_PLACE(polygon, headerWords, FiveWords, headerWords);
    EXPECT_PLACE(polygon, firstText, std::string, firstText);
    using SevenBytes = std::array<std::uint8_t, 7>;
    EXPECT_PLACE(polygon, flagBytes, SevenBytes, flagBytes);
    EXPECT_PLACE(polygon, firstWord, std::uint64_t, firstWord);
    EXPECT_PLACE(polygon, secondWord, std::uint64_t, secondWord);
    EXPECT_PLACE(polygon, firstFlag, std::uint8_t, firstFlag);
    EXPECT_PLACE(polygon, boundingBox, BoundingBox, boundingBox);
    EXPECT_PLACE(polygon, vertexIndices, IntList, vertexIndices);
    EXPECT_PLACE(polygon, firstIntList, IntList, firstIntList);
    EXPECT_PLACE(polygon, wordList, WordList, wordList);
    EXPECT_PLACE(polygon, secondIntList, IntList, secondIntList);
    EXPECT_PLACE(polygon, textList, std::vector<std::string>, textList);
    using IntListMap = std::map<std::int32_t, IntList>;
    EXPECT_PLACE(polygon, intListMap, IntListMap, intListMap);
    EXPECT_PLACE(polygon, thirdWord, std::uint64_t, thirdWord);
    EXPECT_PLACE(polygon, secondFlag, std::uint8_t, secondFlag);
    EXPECT_PLACE(polygon, fourthWord, std::uint64_t, fourthWord);
    EXPECT_PLACE(polygon, fifthWord, std::uint64_t, fifthWord);
    EXPECT_PLACE(polygon, defaultedReal, double, defaultedReal);
    EXPECT_PLACE(polygon, thirdIntList, IntList, thirdIntList);
    EXPECT_PLACE(polygon, fourthIntList, IntList, fourthIntList);
    EXPECT_PLACE(polygon, edges, std::vector<BoundaryEdge>, edges);
    using WordPair = std::array<std::uint64_t, 2>;
    EXPECT_PLACE(polygon, pairList, std::vector<WordPair>, pairList);
    EXPECT_PLACE(polygon, secondText, std::string, secondText);
    EXPECT_PLACE(polygon, fifthIntList, IntList, fifthIntList);
    using TwoBytes = std::array<std::uint8_t, 2>;
    EXPECT_PLACE(polygon, closingFlags, TwoBytes, closingFlags);
    EXPECT_PLACE(polygon, defaultedIndex, std::int32_t, defaultedIndex);
}

TEST(BoundarySet, boundingBoxHasTheseMembers) {
    BoundingBox box;
    auto& [minX, minY, maxX, maxY] = box;
    EXPECT_PLACE(box, minX, double, minX);
    EXPECT_PLACE(box, minY, double, minY);
    EXPECT_PLACE(box, maxX, double, maxX);
    EXPECT_PLACE(box, maxY, double, maxY);
    EXPECT_EQ(boxText({0, 0, 0, 0}), boxText(box));
}

TEST(BoundarySet, newPolygonIsZeroExceptForTwoMembers) {
    EXPECT_EQ("headerWords = [ 0 0 0 0 0 ]\n"
              "firstText = \"\"\n"
              "flagBytes = [ 0 0 0 0 0 0 0 ]\n"
              "firstWord = 0\n"
              "secondWord = 0\n"
              "firstFlag = 0\n"
              "boundingBox = x 0x0p+0 to 0x0p+0, y 0x0p+0 to 0x0p+0\n"
              "vertexIndices = [ ]\n"
              "firstIntList = [ ]\n"
              "wordList = [ ]\n"
              "secondIntList = [ ]\n"
              "textList = [ ]\n"
              "thirdWord = 0\n"
              "secondFlag = 0\n"
              "fourthWord = 0\n"
              "fifthWord = 0\n"
              "defaultedReal = -0x1p+0\n"
              "thirdIntList = [ ]\n"
              "fourthIntList = [ ]\n"
              "secondText = \"\"\n"
              "fifthIntList = [ ]\n"
              "closingFlags = [ 0 0 ]\n"
              "defaultedIndex = -1\n",
              asText(BoundaryPolygon()));
}

// Copies and moves are those of the language, which have every member. The types of the members above share nothing.
static_assert(std::is_aggregate_v<BoundaryPolygon> && std::is_aggregate_v<BoundaryEdge>);
static_assert(std::is_aggregate_v<BoundaryVertex> && std::is_aggregate_v<BoundarySet>);

TEST(BoundarySet, clearingEmptiesBothVectors) {
    BoundarySet set;
    set.vertices.resize(3);
    set.vertices[0].attachedItems = {1, 2, 3};
    set.polygons.resize(2);
    clearBoundarySet(set);
    EXPECT_EQ("", asText(set));
}

TEST(DistinctVertexCount, ignoresRepeatedFirstIndexAtEnd) {
    BoundaryPolygon polygon;
    EXPECT_EQ(distinctVertexCount(polygon), 0U);
    polygon.vertexIndices = {7, 8, 9};
    EXPECT_EQ(distinctVertexCount(polygon), 3U);
    polygon.vertexIndices = {7, 8, 9, 7};
    EXPECT_EQ(distinctVertexCount(polygon), 3U);
}

} // namespace vadelclip
