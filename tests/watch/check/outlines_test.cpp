#include "watch/check/outlines.hpp"

#include "support/file_support.hpp"

#include <sys/stat.h>

#include <gtest/gtest.h>

#include <sstream>
#include <string>

namespace vadelwatch {

using vadelclip::TemporaryDirectory;

namespace {

std::string describe(const MapOutlines& outlines) {
    std::ostringstream text;
    for (const std::vector<MapPosition>& outline : outlines) {
        text << "[";
        for (const MapPosition& vertex : outline) {
            text << " " << vertex.x << "," << vertex.y;
        }
        text << " ]";
    }
    return text.str();
}

/// Returns the outlines of a file with this content, or the error message with FILE in place of the path.
std::string outlinesOf(const std::string& content) {
    const TemporaryDirectory directory;
    const std::string path = directory.write("b.xml", content);
    MapOutlines outlines;
    std::string error = readMapOutlines(path, outlines);
    if (error.empty()) {
        return describe(outlines);
    }
    return error.replace(error.find(path), path.size(), "FILE");
}

std::string readModel(const std::string& model) {
    return outlinesOf("<VADELSIM><VadeDGM>" + model + "</VadeDGM></VADELSIM>");
}

} // namespace

TEST(MapOutlines, readsPolygonsOfBoundaryGroups) {
    EXPECT_EQ(
        "[ 1,2 -3,40 ][ ][ 5,6 ]",
        readModel("<group type='boundaries'><polygon id='1'><point x='1' y=' +2m'/><point y='4e1' x='-3'/></polygon>"
                  "<polygon/></group><group type='roads'><polygon><point/></polygon></group><group/>"
                  "<group type='boundaries'><polygon><point x='5' y='6'/></polygon></group>"));
    EXPECT_EQ("", outlinesOf("<other/>"));
}

TEST(MapOutlines, clampsCoordinatesToDrawableLimit) {
    EXPECT_EQ("[ 1e+300,-1e+300 ]",
              readModel("<group type='boundaries'><polygon><point x='1e301' y='-1e305'/></polygon></group>"));
}

TEST(MapOutlines, namesUnreadableFiles) {
    MapOutlines outlines;
    EXPECT_EQ("The boundary file /no/b.xml cannot be read: File was not found.",
              readMapOutlines("/no/b.xml", outlines));
    EXPECT_EQ("The boundary file / cannot be read: it is a directory.", readMapOutlines("/", outlines));
    EXPECT_EQ("The boundary file FILE cannot be read: Start-end tags mismatch, line 1, column 6.",
              outlinesOf("<a></b>"));
    for (const char* const point : {"<point x='1'/>", "<point x='a' y='1'/>", "<point x='1' y='nan'/>"}) {
        EXPECT_EQ("The boundary file FILE holds a point without coordinates.",
                  readModel("<group type='boundaries'><polygon>" + std::string(point) + "</polygon></group>"))
            << point;
    }
}

TEST(MapOutlines, findsExtent) {
    EXPECT_TRUE(isEmpty(extentOf({})));
    EXPECT_TRUE(isEmpty(extentOf({{}, {}})));
    const MapExtent extent = extentOf({{{1, 2}}, {{-5, 7}, {0, 0}}});
    EXPECT_EQ(-5, extent.minX);
    EXPECT_EQ(0, extent.minY);
    EXPECT_EQ(1, extent.maxX);
    EXPECT_EQ(7, extent.maxY);
}

TEST(WhyBoundaryNotFound, namesReasonAndPlace) {
    const TemporaryDirectory directory;
    const auto reason = [](const std::string& path) {
        std::string sentence = whyBoundaryNotFound(path);
        return sentence.replace(0, sentence.find(path) + path.size(), "");
    };
    EXPECT_EQ(" exists, but cannot be read: Start-end tags mismatch, line 2, column 7.",
              reason(directory.write("bad.xml", "<a>\n <b></c>\n</a>")));
    EXPECT_EQ(" exists, but cannot be read: No document element found, line 1, column 1.",
              reason(directory.write("empty.xml", "")));
    EXPECT_EQ(" exists, but cannot be read: it is a directory.", reason(directory.path()));
    const std::string link = directory.makeLink("circle.xml", "circle.xml");
    EXPECT_EQ("The boundary file " + link + " cannot be read: Too many levels of symbolic links.",
              whyBoundaryNotFound(link));
    EXPECT_EQ("", whyBoundaryNotFound(directory.write("good.xml", "<a/>")));
    EXPECT_EQ("", whyBoundaryNotFound(directory.pathOf("none")));
}

// Opening the FIFO to read it would wait for a writer.
TEST(WhyBoundaryNotFound, doesNotReadFifo) {
    const TemporaryDirectory directory;
    const std::string path = directory.pathOf("area.xml");
    ASSERT_EQ(0, mkfifo(path.c_str(), 0600));
    EXPECT_EQ("The boundary file " + path + " exists, but cannot be read: it is not a regular file.",
              whyBoundaryNotFound(path));
}

} // namespace vadelwatch
