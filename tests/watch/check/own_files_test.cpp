#include "watch/check/own_files.hpp"

#include "support/file_support.hpp"

#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <functional>
#include <string>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace vadelwatch {

using vadelclip::TemporaryDirectory;

namespace {

/// Returns the answer of a process without the rights of root.
bool asOrdinaryUser(const std::function<bool()>& question) {
    const pid_t child = fork();
    if (child == 0) {
        constexpr uid_t nobody = 65534;
        const bool bound = geteuid() != 0 || (setgid(nobody) == 0 && setuid(nobody) == 0);
        _exit(bound ? static_cast<int>(question()) : 2);
    }
    int status = -1;
    waitpid(child, &status, 0);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) < 2) << status;
    return WIFEXITED(status) && WEXITSTATUS(status) == 1;
}

bool canOrdinaryUserWrite(const std::string& path) {
    return asOrdinaryUser([&path] { return whyUnwritable(path) == 0; });
}

/// A directory that every user may read. Its destructor can remove directories named "open" and "locked" in it.
struct OpenDirectory : TemporaryDirectory {
    OpenDirectory() { chmod(path().c_str(), 0755); }
    OpenDirectory(const OpenDirectory&) = delete;
    OpenDirectory& operator=(const OpenDirectory&) = delete;
    ~OpenDirectory() {
        withMode("open", 0755);
        withMode("locked", 0755);
    }

    std::string withMode(const std::string& name, mode_t mode) const {
        chmod(pathOf(name).c_str(), mode);
        return pathOf(name);
    }
};

} // namespace

TEST(OwnFiles, boundaryAndFilesOfInputDirectoryAreInputs) {
    const TemporaryDirectory directory;
    const std::string boundary = directory.write("area.xml", "");
    directory.write("data/a.xyz", "");
    directory.write("data/no node file", "");
    const std::string input = directory.pathOf("data");
    const auto isInput = [&](const std::string& path) { return isInputOfRun(path, input, boundary); };
    EXPECT_TRUE(isInput(boundary));
    EXPECT_TRUE(isInput(directory.pathOf("data/a.xyz")));
    EXPECT_TRUE(isInput(directory.pathOf("data/no node file")));
    EXPECT_TRUE(isInput(directory.pathOf("data/../data/./a.xyz")));
    EXPECT_TRUE(isInput(directory.makeLink("link", "data/a.xyz")));
    std::filesystem::create_hard_link(boundary, directory.pathOf("hard"));
    EXPECT_TRUE(isInput(directory.pathOf("hard")));
    EXPECT_FALSE(isInput(directory.write("other", "")));
    EXPECT_FALSE(isInput(directory.pathOf("none")));
    EXPECT_FALSE(isInput(directory.pathOf("data/none.log")));
}

TEST(OwnFiles, newNodeFileNameIsInput) {
    const TemporaryDirectory directory;
    const std::string boundary = directory.write("area.xml", "");
    directory.makeDirectory("data");
    directory.makeDirectory("data/below");
    const std::string input = directory.pathOf("data");
    const auto isInput = [&](const std::string& path) { return isInputOfRun(path, input, boundary); };
    for (const char* const suffix : {".txt", ".xyz", ".csv"}) {
        EXPECT_TRUE(isInput(directory.pathOf("data/new") + suffix));
        EXPECT_TRUE(isInput(directory.pathOf("data/../data/./new") + suffix));
        EXPECT_FALSE(isInput(directory.pathOf("data/below/new") + suffix));
        EXPECT_FALSE(isInput(directory.pathOf("new") + suffix));
    }
    EXPECT_TRUE(isInput(directory.makeLink("link", "data/new.xyz")));
    EXPECT_TRUE(isInputOfRun(directory.pathOf("none/new.xyz"), directory.pathOf("none"), boundary));
}

TEST(OwnFiles, pathOfMissingInputIsInput) {
    const TemporaryDirectory directory;
    const std::string input = directory.pathOf("none");
    EXPECT_TRUE(isInputOfRun(directory.pathOf("./new.xml"), input, directory.pathOf("new.xml")));
    EXPECT_TRUE(isInputOfRun(directory.pathOf("./none"), input, directory.pathOf("new.xml")));
    EXPECT_FALSE(isInputOfRun(directory.write("log", ""), directory.pathOf("none"), directory.pathOf("none.xml")));
    EXPECT_FALSE(isInputOfRun(directory.pathOf("new"), directory.pathOf("none"), directory.pathOf("none.xml")));
}

TEST(OwnFiles, recognisesSameFileByOtherName) {
    const TemporaryDirectory directory;
    const std::string file = directory.write("a", "");
    EXPECT_TRUE(isSameFile(file, file));
    EXPECT_TRUE(isSameFile(file, directory.makeLink("b", "a")));
    EXPECT_FALSE(isSameFile(file, directory.write("c", "")));
    // Both may be missing.
    EXPECT_TRUE(isSameFile(directory.pathOf("new"), directory.pathOf("./new")));
    EXPECT_FALSE(isSameFile(directory.pathOf("new"), directory.pathOf("newer")));
    EXPECT_FALSE(isSameFile(directory.pathOf("new"), file));
}

TEST(OwnFiles, newFileNeedsWritableDirectory) {
    const OpenDirectory directory;
    EXPECT_EQ(0, whyUnwritable(directory.pathOf("new")));
    EXPECT_EQ(ENOENT, whyUnwritable(directory.pathOf("none/new")));
    EXPECT_EQ(ENOTDIR, whyUnwritable(directory.write("file", "") + "/new"));
    EXPECT_EQ(ENAMETOOLONG, whyUnwritable(directory.pathOf(std::string(300, 'n'))));
    directory.makeDirectory("locked");
    directory.makeDirectory("open");
    EXPECT_FALSE(canOrdinaryUserWrite(directory.withMode("locked", 0555) + "/new"));
    EXPECT_TRUE(canOrdinaryUserWrite(directory.withMode("open", 0777) + "/new"));
}

TEST(OwnFiles, directoryCannotBeReplaced) {
    const TemporaryDirectory directory;
    EXPECT_EQ(EISDIR, whyUnwritable(directory.path()));
    EXPECT_EQ(EISDIR, whyUnwritable(directory.makeLink("link", ".")));
    EXPECT_EQ(EISDIR, whyUnwritable("/"));
}

TEST(OwnFiles, existingFileNeedsWritePermission) {
    const OpenDirectory directory;
    directory.write("open/locked", "");
    directory.write("locked/open", "");
    directory.withMode("open", 0777);
    const std::string lockedFile = directory.withMode("open/locked", 0444);
    const std::string openFile = directory.withMode("locked/open", 0666);
    directory.withMode("locked", 0555);
    EXPECT_FALSE(canOrdinaryUserWrite(lockedFile));
    EXPECT_TRUE(canOrdinaryUserWrite(openFile));
    EXPECT_FALSE(canOrdinaryUserWrite(directory.makeLink("link to locked", "open/locked")));
    EXPECT_TRUE(canOrdinaryUserWrite(directory.makeLink("link to open", "locked/open")));
}

TEST(OwnFiles, checksTargetOfBrokenLink) {
    const OpenDirectory directory;
    directory.makeDirectory("open");
    directory.makeDirectory("locked");
    directory.withMode("open", 0777);
    directory.makeLink("open/to open", "new");
    directory.makeLink("open/to locked", "../locked/new");
    directory.makeLink("open/around", "around");
    directory.withMode("locked", 0555);
    EXPECT_TRUE(canOrdinaryUserWrite(directory.pathOf("open/to open")));
    EXPECT_FALSE(canOrdinaryUserWrite(directory.pathOf("open/to locked")));
    EXPECT_EQ(ELOOP, whyUnwritable(directory.pathOf("open/around")));
}

TEST(OwnFiles, unreadablePathIsNotAnotherFile) {
    const OpenDirectory directory;
    directory.makeDirectory("locked");
    const std::string other = directory.pathOf("x.png");
    const std::string hidden = directory.withMode("locked", 0600) + "/run.jsonl";
    EXPECT_FALSE(asOrdinaryUser([&] { return isSameFile(hidden, other); }));
    EXPECT_TRUE(asOrdinaryUser([&] { return isSameFile(hidden, hidden); }));
    const std::string loop = directory.makeLink("loop", "loop");
    EXPECT_FALSE(isSameFile(loop, other));
    EXPECT_TRUE(isSameFile(loop, loop));
    EXPECT_FALSE(isSameFile(directory.pathOf(std::string(300, 'n')), other));
}

TEST(OwnFiles, brokenLinkIsSameFileAsItsTarget) {
    const TemporaryDirectory directory;
    const std::string link = directory.makeLink("link", "second");
    directory.makeLink("second", "./x.png");
    EXPECT_TRUE(isSameFile(link, directory.pathOf("x.png")));
    EXPECT_TRUE(isSameFile(directory.pathOf("x.png"), link));
    EXPECT_FALSE(isSameFile(link, directory.pathOf("second.png")));
}

} // namespace vadelwatch
