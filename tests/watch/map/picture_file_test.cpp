#include "watch/map/picture_file.hpp"

#include "support/file_support.hpp"

#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <optional>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace vadelwatch {

using vadelclip::readFile;
using vadelclip::TemporaryDirectory;

TEST(MapPictureFile, replacesFileInOneStep) {
    const TemporaryDirectory directory;
    const std::string picture = directory.write("map.png", "old");
    const std::string oldFile = directory.pathOf("old");
    ASSERT_EQ(0, link(picture.c_str(), oldFile.c_str()));
    EXPECT_EQ(0, writePictureFile(picture, "new"));
    EXPECT_EQ("new", readFile(picture));
    // Writing to the old file itself would change it here too.
    EXPECT_EQ("old", readFile(oldFile));
    EXPECT_EQ(2U, directory.tree().size());
}

TEST(MapPictureFile, newFileHasTheUsualMode) {
    const TemporaryDirectory directory;
    const mode_t mask = umask(022);
    EXPECT_EQ(0, writePictureFile(directory.pathOf("map.png"), "new"));
    umask(mask);
    struct stat status {};
    ASSERT_EQ(0, stat(directory.pathOf("map.png").c_str(), &status));
    EXPECT_EQ(0644U, status.st_mode & 0777U);
}

TEST(MapPictureFile, returnsReasonOfFailure) {
    EXPECT_EQ(ENOENT, writePictureFile("/no/map.png", "new"));
    EXPECT_EQ(EISDIR, writePictureFile("/", "new"));
    EXPECT_EQ(ENOSPC, writePictureFile("/dev/full", "new"));
}

TEST(MapPictureFile, removesOnlyRegularFiles) {
    const TemporaryDirectory directory;
    const std::string fifo = directory.pathOf("map.svg");
    ASSERT_EQ(0, mkfifo(fifo.c_str(), 0600));
    removeOldPicture(fifo);
    removeOldPicture(directory.pathOf("missing.png"));
    removeOldPicture(directory.write("map.png", "old"));
    EXPECT_TRUE(std::filesystem::exists(fifo));
    EXPECT_FALSE(std::filesystem::exists(directory.pathOf("map.png")));
}

TEST(MapPictureFile, linkStaysAndItsTargetIsReplaced) {
    const TemporaryDirectory directory;
    const std::string target = directory.write("there/notes.md", "old");
    directory.makeLink("second.svg", "there/notes.md");
    directory.makeLink("there/dangling.svg", "../new/map.svg");
    directory.makeDirectory("new");
    directory.makeLink("first.svg", directory.pathOf("second.svg"));
    const std::string link = directory.pathOf("first.svg");
    removeOldPicture(link);
    EXPECT_EQ("old", readFile(target));
    EXPECT_EQ(0, writePictureFile(link, "picture"));
    EXPECT_EQ(0, writePictureFile(directory.pathOf("there/dangling.svg"), "other"));
    for (const char* const name : {"first.svg", "second.svg", "there/dangling.svg"}) {
        EXPECT_TRUE(std::filesystem::is_symlink(directory.pathOf(name))) << name;
    }
    EXPECT_EQ("picture", readFile(target));
    EXPECT_EQ("other", readFile(directory.pathOf("new/map.svg")));
    EXPECT_FALSE(std::filesystem::is_symlink(directory.pathOf("new/map.svg")));
}

TEST(MapPictureFile, circleOfLinksIsNoFile) {
    const TemporaryDirectory directory;
    directory.makeLink("a.svg", "b.svg");
    directory.makeLink("b.svg", "a.svg");
    EXPECT_EQ(ELOOP, writePictureFile(directory.pathOf("a.svg"), "new"));
}

TEST(PictureFile, nameSelectsFormat) {
    EXPECT_TRUE(isPictureFileName("a.png"));
    EXPECT_TRUE(isPictureFileName("/b/a.svg"));
    for (const char* const name : {"", "png", "a.PNG", "a.png ", "a.jpg", "a.svgz"}) {
        EXPECT_FALSE(isPictureFileName(name)) << name;
    }
}

TEST(PictureFile, readsPictureSize) {
    const std::optional<PictureSize> size = readPictureSize("1200x900");
    ASSERT_TRUE(size);
    EXPECT_EQ(1200, size->width);
    EXPECT_EQ(900, size->height);
    EXPECT_TRUE(readPictureSize("800x600") && readPictureSize("4096x4096"));
    for (const char* const text : {"", "1200", "1200x", "x900", "799x600", "800x599", "4097x900", "900x4097",
                                   "1200X900", "1200x900 ", "-1200x900", "99999999999x900"}) {
        EXPECT_FALSE(readPictureSize(text)) << text;
    }
}

TEST(PictureFile, namesWorldFileOfPng) {
    EXPECT_EQ("a/b.pgw", worldFileOf("a/b.png"));
    EXPECT_EQ("", worldFileOf("a/b.svg"));
    EXPECT_EQ("", worldFileOf(""));
}

} // namespace vadelwatch
