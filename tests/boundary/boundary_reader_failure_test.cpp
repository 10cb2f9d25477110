// The errors that a bad boundary file causes, and the content of the set after them.
#include "boundary/boundary_reader.hpp"

#include "support/boundary_file_support.hpp"
#include "support/boundary_support.hpp"
#include "support/file_support.hpp"

#include <gtest/gtest.h>

namespace vadelclip {

namespace {

const std::string noId = "Cannot find the id of a polygon in a group of type 0";

/// Expects that this content of a "boundaries" group fails after the valid triangle before it. `keptPoints` are the
/// vertices of the failed polygon in the table.
void expectFailedAfterTriangle(const std::string& error, const std::string& content, const Outline& keptPoints = {}) {
    const Reading reading = readBoundaryBytes(inBoundaries(triangleElement + content + triangleElement));
    SCOPED_TRACE(content);
    expectFailed(error, reading);
    BoundarySet expected = setOf({triangle});
    makePolygon(expected.vertices, keptPoints);
    EXPECT_EQ(asText(expected), asText(reading.set));
}

} // namespace

TEST(BoundaryReaderFailure, reportsFileThatCannotBeRead) {
    const TemporaryDirectory directory;
    const std::string missing = directory.pathOf("missing.xml");
    expectFailedEmpty("Boundary file " + missing + " not found", missing);
    expectFailedEmpty("Boundary file " + directory.path() + " not found", directory.path());
    expectFailedEmpty("Boundary file  not found", "");
}

TEST(BoundaryReaderFailure, reportsFileWithoutElementAsNotFound) {
    for (const std::string bytes : {"",
                                    " \n",
                                    "text",
                                    "<!-- only a comment -->",
                                    "<?xml version=\"1.0\"?>",
                                    "<!DOCTYPE VADELSIM>",
                                    "<?VADELSIM?>",
                                    "<VADELSIM>",
                                    "<VADELSIM><VadeDGM></VADELSIM>",
                                    "<VADELSIM><VadeDGM></VADELSIM></VadeDGM>",
                                    "<VADELSIM",
                                    "<VADELSIM><",
                                    "<![CDATA[<VADELSIM/>]]>",
                                    "\xEF\xBB\xBF",
                                    "<VADELSIM a=1/>",
                                    "<VADELSIM a=\"1/>",
                                    "<VADELSIM a/>",
                                    "<VADELSIM a=\"1\"b=\"2\"/>",
                                    "<>",
                                    "<VADELSIM><VadeDGM/></VADELSIM><!-- open",
                                    "<VADELSIM><!DOCTYPE VADELSIM><VadeDGM/></VADELSIM>"}) {
        expectNotFound(bytes);
    }
    const std::string zeroByte(1, '\0');
    expectNotFound(inBoundaries("<polygon id=\"1" + zeroByte + "\"/>"));
}

TEST(BoundaryReaderFailure, keepsNothingOfFileWithBadEnd) {
    expectNotFound(inBoundaries(triangleElement) + "<open>");
}

TEST(BoundaryReaderFailure, requiresBothElementsAroundGroups) {
    for (const std::string bytes :
         {"<other/>", "<VadeDGM/>", "<VADELSIM/>", "<VADELSIM></VADELSIM>", "<VADELSIM>text</VADELSIM>",
          "<VADELSIM><vadedgm/></VADELSIM>", "<vadelsim><VadeDGM/></vadelsim>",
          "<VADELSIM><other><VadeDGM/></other></VADELSIM>", "<area><VADELSIM><VadeDGM/></VADELSIM></area>",
          "<n:VADELSIM><VadeDGM/></n:VADELSIM>"}) {
        expectNoModel(bytes);
    }
}

TEST(BoundaryReaderFailure, quotesPathUnchanged) {
    const TemporaryDirectory directory;
    for (const std::string name : {"{0}.xml", "{.xml", "a b.xml", "\xC3\xA4.xml", "%s.xml", "./x.xml"}) {
        const std::string path = directory.pathOf(name);
        expectFailedEmpty("Boundary file " + path + " not found", path);
        directory.write(name, "<other/>");
        expectFailedEmpty("Could not find the VadeDGM tag in the boundary file " + path, path);
    }
}

TEST(BoundaryReaderFailure, requiresIdOfEachPolygon) {
    expectFailedAfterTriangle(noId, "<polygon/>");
    expectFailedAfterTriangle(noId, "<polygon ID=\"1\"/>");
    expectFailedAfterTriangle(noId, "<polygon><point x=\"1\" y=\"1\"/></polygon>");
    // The id is read before any point.
    expectFailedAfterTriangle(noId, "<polygon id=\"a\"><point/></polygon>");
}

TEST(BoundaryReaderFailure, requiresBothCoordinatesOfEachPoint) {
    const std::string error = "Cannot read point 0 in polygon 12";
    for (const std::string attributes :
         {"", "y=\"1\"", "x=\"1\"", "X=\"1\" y=\"1\"", "p:x=\"1\" p:y=\"1\"", "x=\"1\" Y=\"1\"", "x=\"\" y=\"1\"",
          "x=\"1\" y=\"\"", "x=\"a\" y=\"1\"", "x=\"1\" y=\"a\"", "x=\"a\" y=\"b\""}) {
        expectFailedAfterTriangle(error, "<polygon id=\"12\"><point " + attributes + "/></polygon>");
    }
}

TEST(BoundaryReaderFailure, keepsPointsBeforeBadOneInTable) {
    expectFailedAfterTriangle("Cannot read point 2 in polygon -7",
                              R"(<polygon id="-7"><point x="8" y="9"/><point x="10" y="11"/><point x="12"/></polygon>)",
                              {{8, 9}, {10, 11}});
}

TEST(BoundaryReaderFailure, numbersOnlyPointElements) {
    expectFailedAfterTriangle("Cannot read point 1 in polygon 5",
                              R"(<polygon id="5"><other/><point x="8" y="9"/>text<other/><point/></polygon>)",
                              {{8, 9}});
}

TEST(BoundaryReaderFailure, stopsAtFirstFailure) {
    const Reading reading =
        readBoundaryBytes(inModel("<group type=\"boundaries\">" + triangleElement + "</group>" +
                                  "<group type=\"boundaries\"><polygon id=\"a\"/><polygon id=\"b\"/></group>" +
                                  "<group type=\"boundaries\"><polygon id=\"c\"/></group>"));
    expectFailed(noId, reading);
    EXPECT_EQ(asText(setOf({triangle})), asText(reading.set));
}

TEST(BoundaryReaderFailure, readsInstructionAsElementOfItsName) {
    // An instruction has no attributes, even if its text looks like attributes.
    expectFailedAfterTriangle("Cannot read point 1 in polygon 3",
                              R"(<polygon id="3"><point x="8" y="9"/><?point x="1" y="2"?></polygon>)", {{8, 9}});
    expectFailedAfterTriangle(noId, R"(<?polygon id="1"?>)");
    expectRead({triangle},
               inModel(R"(<?group type="boundaries"?><group type="boundaries">)" + triangleElement + "</group>"));
    expectNoModel("<?VADELSIM?>" + inBoundaries(triangleElement));
    expectNoModel("<VADELSIM><?other?></VADELSIM>");
    expectRead({}, "<VADELSIM><?VadeDGM?><VadeDGM><group type=\"boundaries\"><polygon/></group></VadeDGM></VADELSIM>");
}

} // namespace vadelclip
