// Which elements and attributes of a boundary file are read.
#include "boundary/boundary_reader.hpp"

#include "support/boundary_file_support.hpp"
#include "support/boundary_support.hpp"
#include "support/file_support.hpp"

#include <gtest/gtest.h>
#include <pugixml.hpp>

#include <cstdlib>
#include <set>

namespace {

int allocatedXmlBlocks = 0;
std::set<void*> heldXmlBlocks;

void* allocateXmlBlock(std::size_t size) {
    ++allocatedXmlBlocks;
    return *heldXmlBlocks.insert(std::malloc(size)).first;
}

void freeXmlBlock(void* block) {
    heldXmlBlocks.erase(block);
    std::free(block);
}

} // namespace

namespace vadelclip {

TEST(BoundaryReader, readsOrdinaryFile) {
    expectRead({triangle, {{-1.5, 1000}}}, R"(<?xml version="1.0" encoding="UTF-8"?>
<!-- the area of the model -->
<VADELSIM version="2">
  <VadeDGM name="area">
    <group type="boundaries">
      <polygon id="1">
        <point x="0" y="1"/>
        <point x="5" y="2"/>
        <point x="3" y="4"/>
      </polygon>
      <polygon id="2">
        <point x="-1.5" y="1e3"/>
      </polygon>
    </group>
  </VadeDGM>
</VADELSIM>
)");
}

TEST(BoundaryReader, setsInitialValuesOfCarriedMembers) {
    const Reading reading = readBoundaryBytes(inBoundaries(R"(<polygon id="7"><point x="1" y="2" z="3"/></polygon>)"));
    EXPECT_EQ("polygon {\n" + asText(setOf({{{1, 2}}}).polygons[0]) +
                  "}\n"
                  "vertex {\n"
                  "x = 0x1p+0\n"
                  "y = 0x1p+1\n"
                  "z = 0x0p+0\n"
                  "attachedItems = [ ]\n"
                  "vertexTag = 0\n"
                  "}\n",
              asText(reading.set));
}

TEST(BoundaryReader, mergesBoundaryGroupsInOrder) {
    expectRead({triangle, {{1, 1}}, {{2, 2}, {3, 3}}},
               inModel("<group type=\"boundaries\">" + triangleElement + "</group>" +
                       R"(<group type="roads"><polygon id="9"><point x="9" y="9"/></polygon></group>)" +
                       R"(<group type="boundaries"><polygon id="1"><point x="1" y="1"/></polygon>)" +
                       R"(<polygon id="1"><point x="2" y="2"/><point x="3" y="3"/></polygon></group>)"));
}

TEST(BoundaryReader, numbersVerticesAcrossPolygons) {
    const Reading reading = readBoundaryBytes(inModel("<group type=\"boundaries\">" + triangleElement + "</group>" +
                                                      "<group type=\"boundaries\">" + triangleElement + "</group>"));
    ASSERT_EQ(2u, reading.set.polygons.size());
    EXPECT_EQ((std::vector<std::int32_t>{0, 1, 2}), reading.set.polygons[0].vertexIndices);
    EXPECT_EQ((std::vector<std::int32_t>{3, 4, 5}), reading.set.polygons[1].vertexIndices);
    EXPECT_EQ(6u, reading.set.vertices.size());
}

TEST(BoundaryReader, keepsPointsUnchanged) {
    // Repeated, clockwise, closed, fewer than three: the reader checks, adds, removes and shares nothing.
    const std::string p00 = R"(<point x="0" y="0"/>)";
    const std::string p01 = R"(<point x="0" y="1"/>)";
    const std::string p10 = R"(<point x="1" y="0"/>)";
    expectRead({{{0, 0}, {0, 1}, {0, 1}, {1, 0}, {0, 0}}, {}, {{0, 0}}, {{0, 0}, {1, 0}}},
               inBoundaries("<polygon id=\"1\">" + p00 + p01 + p01 + p10 + p00 + "</polygon><polygon id=\"1\"/>" +
                            "<polygon id=\"1\">" + p00 + "</polygon><polygon id=\"1\">" + p00 + p10 + "</polygon>"));
}

TEST(BoundaryReader, storesPolygonWithoutPoints) {
    const Reading reading = readBoundaryBytes(inBoundaries("<polygon id=\"4\"></polygon>"));
    EXPECT_TRUE(reading.succeeded);
    EXPECT_EQ("polygon {\n" + asText(BoundaryPolygon()) + "}\n", asText(reading.set));
}

TEST(BoundaryReader, acceptsFileWithoutPolygons) {
    expectRead({}, "<VADELSIM><VadeDGM/></VADELSIM>");
    expectRead({}, inModel("text <other/>"));
    expectRead({}, inModel("<group type=\"roads\">" + triangleElement + "</group>"));
    expectRead({}, inBoundaries(""));
    expectRead({}, inBoundaries("<point x=\"1\" y=\"1\"/><group type=\"boundaries\">" + triangleElement + "</group>"));
}

TEST(BoundaryReader, skipsGroupsOfOtherTypes) {
    const std::string bad = "<polygon><point x=\"a\"/></polygon>";
    for (const std::string attribute :
         {"", "type=\"\"", "type=\"Boundaries\"", "type=\"boundaries \"", "type=\" boundaries\"", "type=\"boundary\"",
          "type=\"boundarie&#115;\"", "type=\"boundarie&#x73;\"", "type=\"boundariess\"", "TYPE=\"boundaries\"",
          "name=\"boundaries\"", "type=\"roads\" type=\"boundaries\""}) {
        expectRead({triangle}, inModel("<group " + attribute + ">" + bad + "</group><group type=\"boundaries\">" +
                                       triangleElement + "</group>"));
    }
}

TEST(BoundaryReader, readsFirstOfEqualAttributes) {
    expectRead({{{1, 2}}}, inModel(R"(<group type="boundaries" type="roads"><polygon id="1" id="a">)"
                                   R"(<point x="1" x="a" y="2" y="b"/></polygon></group>)"));
}

TEST(BoundaryReader, ignoresUnknownContent) {
    expectRead({triangle}, inModel(R"(<polygon id="a"/><Group type="boundaries"><polygon/></Group>)"
                                   R"(<x:group type="boundaries"><polygon/></x:group>)"
                                   "<group type=\"boundaries\">text<Polygon/><point/><![CDATA[<polygon/>]]>"
                                   "<!-- <polygon/> --><circle><polygon/></circle>" +
                                   triangleElement + "</group><group/>"));
    expectRead({{{1, 2}}}, inBoundaries(R"(<polygon name="n" id="1">text<Point/><vertex><point/></vertex>)"
                                        R"(<!-- <point/> --><![CDATA[<point/>]]><point z="a" y="2" x="1" X="5">)"
                                        R"(<point x="a"/></point></polygon>)"));
}

TEST(BoundaryReader, ignoresXmlDeclarationInPolygon) {
    expectRead({{{1, 2}}}, inBoundaries(R"(<polygon id="1"><?xml version="1.0"?><point x="1" y="2"/></polygon>)"));
}

TEST(BoundaryReader, ignoresPolygonInPolygon) {
    expectRead({{{1, 2}}}, inBoundaries(R"(<polygon id="1"><polygon id="a"><point x="8" y="8"/></polygon>)"
                                        R"(<point x="1" y="2"/></polygon>)"));
}

TEST(BoundaryReader, readsOnlyFirstModel) {
    const std::string full = "<VadeDGM><group type=\"boundaries\">" + triangleElement + "</group></VadeDGM>";
    expectRead({triangle},
               "<!-- c --><!DOCTYPE a [<!ENTITY e \"1\">]> text <other><VADELSIM/></other><VADELSIM><other/>" + full +
                   "</VADELSIM>");
    expectRead({}, "<VADELSIM><VadeDGM/>" + full + "</VADELSIM>");
    expectRead({}, "<VADELSIM><VadeDGM/></VADELSIM><VADELSIM>" + full + "</VADELSIM>");
    expectNoModel("<VADELSIM/><VADELSIM>" + full + "</VADELSIM>");
}

TEST(BoundaryReader, readsIntoClearedSet) {
    const TemporaryDirectory directory;
    const std::string path = directory.write("area.xml", inBoundaries(triangleElement + triangleElement));
    BoundarySet set = setOf({{{1, 2}, {3, 4}}, {{5, 6}}});
    clearBoundarySet(set);
    EXPECT_TRUE(readBoundaryFile(set, path));
    EXPECT_EQ(asText(setOf({triangle, triangle})), asText(set));
}

TEST(BoundaryReader, freesDocument) {
    const auto allocate = pugi::get_memory_allocation_function();
    const auto free = pugi::get_memory_deallocation_function();
    for (const std::string& bytes :
         {inBoundaries(triangleElement), std::string("<open>"), std::string("<other/>"), inBoundaries("<polygon/>"),
          inBoundaries("<polygon id=\"1\"><point/></polygon>")}) {
        allocatedXmlBlocks = 0;
        heldXmlBlocks.clear();
        pugi::set_memory_management_functions(&allocateXmlBlock, &freeXmlBlock);
        readBoundaryBytes(bytes);
        pugi::set_memory_management_functions(allocate, free);
        EXPECT_LT(0, allocatedXmlBlocks) << bytes;
        EXPECT_EQ(0u, heldXmlBlocks.size()) << bytes;
    }
}

} // namespace vadelclip
