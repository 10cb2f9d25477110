#include "shard/locked_directory.hpp"

#include "shard/messages.hpp"
#include "support/file_support.hpp"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <filesystem>
#include <memory>
#include <string>
#include <sys/file.h>
#include <unistd.h>

namespace vadelshard {
namespace {

using vadelclip::TemporaryDirectory;

TEST(LockedDirectory, isInUseUntilRemoved) {
    const TemporaryDirectory place;
    auto locked = std::make_unique<LockedDirectory>(place.pathOf("a."));
    const std::string path = locked->path();
    EXPECT_TRUE(isInUse(path));
    place.write(std::filesystem::path(path).filename().string() + "/in/file", "content");
    locked.reset();
    EXPECT_TRUE(place.tree().empty());
    EXPECT_FALSE(isInUse(path));
}

// The directory may just be being removed, which a new file would prevent.
TEST(LockedDirectory, questionAddsNoFile) {
    const TemporaryDirectory place;
    EXPECT_FALSE(isInUse(place.makeDirectory("a.empty")));
    EXPECT_EQ(place.tree(), (vadelclip::FileTree{{"a.empty/", ""}}));
}

TEST(LockedDirectory, twoQuestionsDoNotDisturbEachOther) {
    const TemporaryDirectory place;
    const std::string lock = place.write("a.killed/lock", "");
    const int otherQuestion = open(lock.c_str(), O_RDWR);
    ASSERT_EQ(flock(otherQuestion, LOCK_SH), 0);
    EXPECT_FALSE(isInUse(place.pathOf("a.killed")));
    close(otherQuestion);
}

TEST(RemoveAbandoned, keepsDirectoriesInUseAndOtherNames) {
    const TemporaryDirectory place;
    const LockedDirectory inUse(place.pathOf("a."));
    for (const char* const name : {"a.killed/lock", "a.noLock/file", "b.other/lock"}) {
        place.write(name, "");
    }
    place.makeDirectory("a.empty");
    removeAbandoned(place.path(), "a.");
    EXPECT_TRUE(isInUse(inUse.path()));
    EXPECT_TRUE(std::filesystem::exists(place.pathOf("b.other")));
    for (const char* const name : {"a.killed", "a.noLock", "a.empty"}) {
        EXPECT_FALSE(std::filesystem::exists(place.pathOf(name))) << name;
    }
}

TEST(RemoveAbandoned, ignoresMissingParent) {
    EXPECT_NO_THROW(removeAbandoned("/nonexistent", "a"));
}

TEST(WorkLock, makesDirectoryAndRemovesItIfEmpty) {
    const TemporaryDirectory place;
    const std::string path = place.pathOf("out.shards");
    EXPECT_THROW(WorkLock(path, false), Failure);
    {
        const WorkLock lock(path, true);
        EXPECT_TRUE(isInUse(path));
        place.write("out.shards/file", "");
        lock.removeEmptyDirectory();
        EXPECT_TRUE(std::filesystem::exists(path));
        std::filesystem::remove(path + "/file");
        lock.removeEmptyDirectory();
        EXPECT_FALSE(std::filesystem::exists(path));
    }
    EXPECT_THROW(WorkLock(place.pathOf("none/out.shards"), true), Failure);
}

TEST(WorkLock, failsForFileInPlaceOfDirectory) {
    const TemporaryDirectory place;
    const std::string file = place.write("file.shards", "");
    const std::string link = place.pathOf("link.shards");
    std::filesystem::create_symlink("nowhere", link);
    for (const std::string& path : {file, link}) {
        for (const bool mayCreate : {true, false}) {
            EXPECT_THROW(WorkLock(path, mayCreate), Failure) << path;
        }
    }
}

TEST(WorkLock, followsLinkToDirectory) {
    const TemporaryDirectory place;
    place.makeDirectory("elsewhere");
    std::filesystem::create_symlink("elsewhere", place.pathOf("out.shards"));
    const WorkLock lock(place.pathOf("out.shards"), true);
    EXPECT_TRUE(isInUse(place.pathOf("elsewhere")));
}

} // namespace
} // namespace vadelshard
