#include "boundary/boundary_document.hpp"

#include "support/boundary_file_support.hpp"
#include "support/file_support.hpp"

#include <gtest/gtest.h>

namespace vadelclip {

TEST(BoundaryDocument, readsOtherGroupsByType) {
    const std::string content = R"(<VADELSIM><VadeDGM>
        <group type="roads"><polygon id="1"><point x="1" y="2"/></polygon></group>
        <group type="lakes"><polygon id="2"/></group>
        <group type="boundaries"><polygon id="3"/></group>
        <group type="roads"><polygon id="4"/></group></VadeDGM></VADELSIM>)";
    std::vector<BoundaryGroup> groups;
    EXPECT_EQ("", readBoundaryText(groups, content, "area.xml"));
    ASSERT_EQ(3U, groups.size());
    EXPECT_EQ("boundaries", groups[0].type);
    EXPECT_EQ((std::vector<std::int32_t>{3}), groups[0].polygonIds);
    EXPECT_EQ("roads", groups[1].type);
    EXPECT_EQ((std::vector<std::int32_t>{1, 4}), groups[1].polygonIds);
    EXPECT_EQ((std::vector<std::int32_t>{2}), groups[2].polygonIds);
}

TEST(BoundaryDocument, keepsErrorOfOtherGroup) {
    const std::string content = R"(<VADELSIM><VadeDGM><group type="roads"><polygon id="1"/><polygon/></group>
        <group type="roads"><polygon id="2"/></group></VadeDGM></VADELSIM>)";
    std::vector<BoundaryGroup> groups;
    EXPECT_EQ("", readBoundaryText(groups, content, "area.xml"));
    ASSERT_EQ(2U, groups.size());
    EXPECT_NE("", groups[1].error);
    EXPECT_EQ((std::vector<std::int32_t>{1}), groups[1].polygonIds);
}

TEST(BoundaryDocument, decidesAboutZeroBytesInTagsAsInAFile) {
    using namespace std::string_literals;
    for (const std::string& content :
         {"<VADELSIM/\0>"s, "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><VADELSIM/\0>"s,
          "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><VADELSIM a=\"\xe4\"/\0>"s}) {
        const TemporaryDirectory directory;
        const std::string path = directory.write("area.xml", content);
        std::vector<BoundaryGroup> groups;
        EXPECT_EQ(readBoundaryAt(path).console, readBoundaryText(groups, content, path) + "\n") << content;
    }
}

} // namespace vadelclip
