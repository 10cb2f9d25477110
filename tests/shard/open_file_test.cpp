#include "shard/open_file.hpp"

#include "shard/messages.hpp"
#include "support/file_support.hpp"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

namespace vadelshard {
namespace {

using vadelclip::readFile;
using vadelclip::TemporaryDirectory;

TEST(OpenFile, readsRangesAndStopsAtEnd) {
    const TemporaryDirectory directory;
    const OpenFile file = OpenFile::forReading(directory.write("a", "0123456789"));
    EXPECT_EQ(file.read(3, 4), "3456");
    EXPECT_EQ(file.read(8, 4), "89");
    EXPECT_EQ(file.read(20, 4), "");
    EXPECT_EQ(file.state().size, 10U);
}

TEST(OpenFile, appendsRangesOfOtherFile) {
    const TemporaryDirectory directory;
    const std::string content = std::string(300'000, 'a') + std::string(300'000, 'b');
    const OpenFile source = OpenFile::forReading(directory.write("a", content));
    OpenFile target = OpenFile::forWriting(directory.write("b", "old content"));
    target.append("begin ");
    target.append(source, 299'999, 600'000);
    target.close();
    EXPECT_EQ(readFile(directory.pathOf("b")), "begin a" + std::string(300'000, 'b'));
}

TEST(OpenFile, failsIfSourceIsShorter) {
    const TemporaryDirectory directory;
    const OpenFile source = OpenFile::forReading(directory.write("a", "123"));
    OpenFile target = OpenFile::forWriting(directory.pathOf("b"));
    EXPECT_THROW(target.append(source, 0, 4), Failure);
}

TEST(OpenFile, reportsEveryError) {
    const TemporaryDirectory directory;
    EXPECT_THROW(OpenFile::forReading(directory.pathOf("none")), Failure);
    EXPECT_THROW(OpenFile::forWriting(directory.path()), Failure);
    EXPECT_THROW(static_cast<void>(OpenFile::forReading(directory.path()).read(0, 1)), Failure);
    OpenFile full = OpenFile::forWriting("/dev/full");
    EXPECT_THROW(full.append("a"), Failure);
    try {
        OpenFile::forReading("none\x1B");
    } catch (const Failure& failure) {
        EXPECT_STREQ(failure.what(), "none\\x1B: No such file or directory");
    }
}

TEST(LinkOrCopy, copiesWhereLinksAreRefused) {
    const TemporaryDirectory directory;
    const std::string source = directory.write("a", "content");
    linkOrCopy(source, directory.pathOf("b"));
    EXPECT_EQ(std::filesystem::hard_link_count(source), 2U);
    const std::string elsewhere = "/dev/shm/vadelshard-link-test-" + std::to_string(getpid());
    writeWholeFile(elsewhere, "content");
    linkOrCopy(elsewhere, directory.pathOf("c")); // in another file system
    removeAll(elsewhere);
    EXPECT_EQ(readFile(directory.pathOf("c")), "content");
}

TEST(MoveFile, movesToOtherFileSystem) {
    const TemporaryDirectory directory;
    const std::string target = "/dev/shm/vadelshard-move-test-" + std::to_string(getpid());
    moveFile(directory.write("a", "content"), target);
    EXPECT_EQ(readFile(target), "content");
    EXPECT_FALSE(exists(directory.pathOf("a")));
    moveFile(target, directory.pathOf("b"));
    EXPECT_FALSE(exists(target));
    EXPECT_EQ(readFile(directory.pathOf("b")), "content");
}

} // namespace
} // namespace vadelshard
