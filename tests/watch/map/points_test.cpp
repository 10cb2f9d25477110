#include "watch/map/points.hpp"

#include "support/file_support.hpp"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <sstream>
#include <string>

namespace vadelwatch {

using vadelclip::TemporaryDirectory;

namespace {

/// Input and output directory of a run.
struct FilesOfRun {
    TemporaryDirectory directory;
    std::string input = directory.makeDirectory("in");
    std::string output = directory.makeDirectory("out");

    void write(const std::string& name, const std::string& inputText, const std::string& outputText) const {
        directory.write("in/" + name, inputText);
        directory.write("out/" + name, outputText);
    }
};

/// What a visit gives: "+" for a kept and "-" for a dropped node with its x, then the counts, then the error.
std::string visit(const FilesOfRun& run) {
    std::ostringstream text;
    NodeCounts counts;
    const std::string error = visitNodes(run.input, run.output, counts, [&text](MapPosition position, bool kept) {
        text << (kept ? "+" : "-") << position.x << " ";
    });
    text << "| " << counts.files << " files, " << counts.kept << " kept, " << counts.dropped << " dropped, "
         << counts.unreadable << " unreadable";
    if (!error.empty()) {
        text << " | " << error;
    }
    return text.str();
}

} // namespace

TEST(MapPoints, keptNodesAreThoseInTheOutputFile) {
    const FilesOfRun run;
    run.write("a.xyz", "x;y;z\n1;1;0\n2;1;0\n3;1;0\n4;1;0\n", "x;y;z\n2;1;0\n4;1;0\n");
    EXPECT_EQ("-1 +2 -3 +4 | 1 files, 2 kept, 2 dropped, 0 unreadable", visit(run));
}

TEST(MapPoints, anOutputThatIsNoRegularFileKeepsNothing) {
    const FilesOfRun run;
    run.directory.write("in/a.xyz", "x;y;z\n1;1;0\n");
    run.directory.write("in/b.xyz", "x;y;z\n2;1;0\n");
    ASSERT_EQ(0, mkfifo(run.directory.pathOf("out/a.xyz").c_str(), 0600));
    run.directory.makeLink("out/b.xyz", "/dev/full");
    EXPECT_EQ("-1 -2 | 2 files, 0 kept, 2 dropped, 0 unreadable", visit(run));
}

TEST(MapPoints, equalLinesAreTakenOneByOne) {
    const FilesOfRun run;
    run.write("a.xyz", "x;y;z\n1;1;0\n2;1;0\n1;1;0\n1;1;0\n", "x;y;z\n1;1;0\n1;1;0\n1;1;0\n");
    EXPECT_EQ("+1 -2 +1 +1 | 1 files, 3 kept, 1 dropped, 0 unreadable", visit(run));
}

TEST(MapPoints, lineEndsMayDiffer) {
    const FilesOfRun run;
    run.write("a.xyz", "\xEF\xBB\xBFX,Y,Z\r\n1,1,0\r\n2,1,0\r\r\n3,1,0\r\n", "\xEF\xBB\xBFX,Y,Z\n1,1,0\n2,1,0\r\n");
    EXPECT_EQ("+1 +2 -3 | 1 files, 2 kept, 1 dropped, 0 unreadable", visit(run));
}

TEST(MapPoints, filesGoInTheOrderOfTheirNamesAndMayKeepNothing) {
    const FilesOfRun run;
    run.directory.write("in/c.csv", "x y z\n5 1 0\n");
    run.write("b.txt", "x;y;z\n2;1;0\n", "x;y;z\n2;1;0\n");
    run.write("a.xyz", "x;y;z\n1;1;0\n", "");
    EXPECT_EQ("-1 +2 -5 | 3 files, 1 kept, 2 dropped, 0 unreadable", visit(run));
}

TEST(MapPoints, linesWithoutAPositionAreCountedApart) {
    const FilesOfRun run;
    run.write("a.xyz", "x;y;z\n\n# remark\n1;1;0\n2;1\n3;1;0", "x;y;z\n1;1;0\n");
    EXPECT_EQ("+1 | 1 files, 1 kept, 0 dropped, 3 unreadable", visit(run));
}

TEST(MapPoints, positionsAreReadAsTheToolReadsThem) {
    const FilesOfRun run;
    run.write("a.xyz", "x;y;z\n +1 m; 1.;0\n+-2;1;0\n3;1\n4;inf;0\n0x5;1;0\n1e999;1;0\n", "x;y;z\n");
    EXPECT_EQ("-1 -0 | 1 files, 0 kept, 2 dropped, 4 unreadable", visit(run));
}

TEST(MapPoints, whatARunDoesNotTakeIsPassedOver) {
    const FilesOfRun run;
    run.directory.write("in/a.dat", "x;y;z\n1;1;0\n");
    run.directory.write("in/no-header.txt", "1;1;0\n");
    run.directory.write("in/empty.txt", "");
    run.directory.write("in/below.txt/b.txt", "x;y;z\n1;1;0\n");
    run.directory.makeLink("in/link.txt", run.directory.write("elsewhere.bin", "x;y;z\n7;1;0\n"));
    run.directory.makeLink("in/dangling.txt", "missing");
    run.directory.makeLink("in/loop.txt", "loop.txt");
    // Opening it would wait for ever.
    ASSERT_EQ(0, mkfifo((run.input + "/fifo.txt").c_str(), 0600));
    EXPECT_EQ("-7 | 1 files, 0 kept, 1 dropped, 0 unreadable", visit(run));
}

TEST(MapPoints, anInputFileThatTheCountHasOverwrittenKeepsNothing) {
    const FilesOfRun run;
    run.write("total_node_count.txt", "x;y;z\n1;1;0\n", "1\n");
    EXPECT_EQ("-1 | 1 files, 0 kept, 1 dropped, 0 unreadable", visit(run));
}

TEST(MapPoints, aLineCutShortByAFullDiskIsNoKeptLine) {
    const FilesOfRun run;
    run.write("a.xyz", "x;y;z\n1;1;0\n2;1;0\n", "x;y;z\n1;1;0\n2;1");
    EXPECT_EQ("+1 -2 | 1 files, 1 kept, 1 dropped, 0 unreadable", visit(run));
}

TEST(MapPoints, anOutputFileOfAnotherInputIsAnError) {
    const FilesOfRun run;
    run.write("a.xyz", "x;y;z\n1;1;0\n2;1;0\n", "x;y;z\n2;1;0\n1;1;0\n");
    EXPECT_EQ("-1 +2 | 1 files, 1 kept, 1 dropped, 0 unreadable | The file " + run.output +
                  "/a.xyz holds lines that its input file does not hold.",
              visit(run));
}

TEST(MapPoints, missingDirectoriesAreErrors) {
    const FilesOfRun run;
    NodeCounts counts;
    const NodeVisitor ignore = [](MapPosition, bool) {};
    EXPECT_EQ("The input directory /no/in cannot be read.", visitNodes("/no/in", run.output, counts, ignore));
    EXPECT_EQ("The output directory /no/out cannot be read.", visitNodes(run.input, "/no/out", counts, ignore));
    EXPECT_EQ("", visitNodes(run.input, run.output, counts, ignore));
}

} // namespace vadelwatch
