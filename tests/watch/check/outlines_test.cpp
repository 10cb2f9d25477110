#include "watch/check/outlines.hpp"

#include "support/file_support.hpp"

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

const std::vector<MapPosition> square{{0, 0}, {10, 0}, {10, 10}, {0, 10}};

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
    EXPECT_EQ("The boundary file FILE cannot be read: Start-end tags mismatch.", outlinesOf("<a></b>"));
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

TEST(MapOutlines, closesOutlineInWindow) {
    EXPECT_EQ("[ 0,0 10,0 10,10 0,10 0,0 ]", describe(clipOutline(square, {-1, -1, 11, 11})));
    EXPECT_EQ("[ 0,0 10,0 0,0 ]", describe(clipOutline({{0, 0}, {10, 0}}, {-1, -1, 11, 11})));
    EXPECT_EQ("[ 3,3 3,3 ]", describe(clipOutline({{3, 3}}, {-1, -1, 11, 11})));
    EXPECT_EQ("", describe(clipOutline({}, {-1, -1, 11, 11})));
}

TEST(MapOutlines, clipsOutlineToWindow) {
    EXPECT_EQ("[ 5,0 10,0 10,10 5,10 ]", describe(clipOutline(square, {5, -1, 11, 11})));
    EXPECT_EQ("[ 2,0 4,0 ][ 4,10 2,10 ]", describe(clipOutline(square, {2, -5, 4, 15})));
    EXPECT_EQ("", describe(clipOutline(square, {2, 2, 8, 8})));
    EXPECT_EQ("", describe(clipOutline(square, {20, 20, 30, 30})));
    EXPECT_EQ("[ 0,5 5,10 ]", describe(clipOutline({{-5, 0}, {10, 15}, {-20, 30}}, {0, 0, 10, 10})));
    EXPECT_EQ("[ 3,5 3,10 ][ 3,10 3,5 ]", describe(clipOutline({{3, 5}, {3, 15}}, {0, 0, 10, 10})));
    EXPECT_EQ("[ -1,0 1,0 ][ 1,0 -1,0 ]", describe(clipOutline({{-1e9, 0}, {1e9, 0}}, {-1, -1, 1, 1})));
}

TEST(MapOutlines, clipsHugeEdgesIntoWindow) {
    const MapExtent window{-1, -1, 2, 2};
    for (const double reach : {1e3, 1e17, 1e150, 1e300}) {
        const MapOutlines lines = clipOutline({{-reach, -reach}, {reach, reach}, {0.5, reach}, {-reach, 0.3}}, window);
        EXPECT_FALSE(lines.empty()) << reach;
        for (const std::vector<MapPosition>& line : lines) {
            for (const MapPosition& position : line) {
                EXPECT_TRUE(holds(window, position)) << reach << ": " << position.x << " " << position.y;
            }
        }
    }
}

} // namespace vadelwatch
