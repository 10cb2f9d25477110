#include "watch/map/points.hpp"

#include "support/file_support.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <sstream>
#include <string>
#include <sys/stat.h>
#include <vector>

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

/// Returns "+" for each kept and "-" for each dropped node with its x, then the counts, then the error.
std::string visit(const FilesOfRun& run) {
    std::ostringstream text;
    NodeCounts counts;
    const std::string error =
        visitNodes(findNodeFiles(run.input).files, run.output, counts,
                   [&text](const MapNode& node) { text << (node.kept ? "+" : "-") << node.position.x << " "; });
    text << "| " << counts.kept << " kept, " << counts.dropped << " dropped, " << counts.unreadable << " unreadable";
    if (!error.empty()) {
        text << " | " << error;
    }
    return text.str();
}

} // namespace

TEST(MapPoints, nodesInOutputFileAreKept) {
    const FilesOfRun run;
    run.write("a.xyz", "x;y;z\n1;1;0\n2;1;0\n3;1;0\n4;1;0\n", "x;y;z\n2;1;0\n4;1;0\n");
    EXPECT_EQ("-1 +2 -3 +4 | 2 kept, 2 dropped, 0 unreadable", visit(run));
}

TEST(MapPoints, outputFileThatIsNotRegularKeepsNothing) {
    const FilesOfRun run;
    run.directory.write("in/a.xyz", "x;y;z\n1;1;0\n");
    run.directory.write("in/b.xyz", "x;y;z\n2;1;0\n");
    ASSERT_EQ(0, mkfifo(run.directory.pathOf("out/a.xyz").c_str(), 0600));
    run.directory.makeLink("out/b.xyz", "/dev/full");
    EXPECT_EQ("-1 -2 | 0 kept, 2 dropped, 0 unreadable", visit(run));
}

TEST(MapPoints, matchesEqualLinesOneByOne) {
    const FilesOfRun run;
    run.write("a.xyz", "x;y;z\n1;1;0\n2;1;0\n1;1;0\n1;1;0\n", "x;y;z\n1;1;0\n1;1;0\n1;1;0\n");
    EXPECT_EQ("+1 -2 +1 +1 | 3 kept, 1 dropped, 0 unreadable", visit(run));
}

TEST(MapPoints, lineEndsMayDiffer) {
    const FilesOfRun run;
    run.write("a.xyz", "\xEF\xBB\xBFX,Y,Z\r\n1,1,0\r\n2,1,0\r\r\n3,1,0\r\n", "\xEF\xBB\xBFX,Y,Z\n1,1,0\n2,1,0\r\n");
    EXPECT_EQ("+1 +2 -3 | 2 kept, 1 dropped, 0 unreadable", visit(run));
}

TEST(MapPoints, visitsFilesInOrderOfNames) {
    const FilesOfRun run;
    run.directory.write("in/c.csv", "x y z\n5 1 0\n");
    run.write("b.txt", "x;y;z\n2;1;0\n", "x;y;z\n2;1;0\n");
    run.write("a.xyz", "x;y;z\n1;1;0\n", "");
    EXPECT_EQ("-1 +2 -5 | 1 kept, 2 dropped, 0 unreadable", visit(run));
}

TEST(MapPoints, countsLinesWithoutPositionSeparately) {
    const FilesOfRun run;
    run.write("a.xyz", "x;y;z\n\n# remark\n1;1;0\n2;1\n3;1;0", "x;y;z\n1;1;0\n");
    EXPECT_EQ("+1 | 1 kept, 0 dropped, 3 unreadable", visit(run));
}

TEST(MapPoints, readsPositionsAsToolDoes) {
    const FilesOfRun run;
    run.write("a.xyz", "x;y;z\n +1 m; 1.;0\n+-2;1;0\n3;1\n4;inf;0\n0x5;1;0\n1e999;1;0\n", "x;y;z\n");
    EXPECT_EQ("-1 -0 | 0 kept, 2 dropped, 4 unreadable", visit(run));
}

TEST(MapPoints, ignoresFilesThatToolIgnores) {
    const FilesOfRun run;
    run.directory.write("in/a.dat", "x;y;z\n1;1;0\n");
    run.directory.write("in/no-header.txt", "1;1;0\n");
    run.directory.write("in/empty.txt", "");
    run.directory.write("in/below.txt/b.txt", "x;y;z\n1;1;0\n");
    run.directory.makeLink("in/link.txt", run.directory.write("elsewhere.bin", "x;y;z\n7;1;0\n"));
    run.directory.makeLink("in/dangling.txt", "missing");
    run.directory.makeLink("in/loop.txt", "loop.txt");
    // Opening it would block.
    ASSERT_EQ(0, mkfifo((run.input + "/fifo.txt").c_str(), 0600));
    EXPECT_EQ("-7 | 0 kept, 1 dropped, 0 unreadable", visit(run));
}

TEST(MapPoints, inputFileOverwrittenByCountKeepsNothing) {
    const FilesOfRun run;
    run.write("total_node_count.txt", "x;y;z\n1;1;0\n", "1\n");
    EXPECT_EQ("-1 | 0 kept, 1 dropped, 0 unreadable", visit(run));
}

TEST(MapPoints, cutOffLineIsNotKept) {
    const FilesOfRun run;
    run.write("a.xyz", "x;y;z\n1;1;0\n2;1;0\n", "x;y;z\n1;1;0\n2;1");
    EXPECT_EQ("+1 -2 | 1 kept, 1 dropped, 0 unreadable", visit(run));
}

TEST(MapPoints, rejectsOutputFileOfAnotherInput) {
    const FilesOfRun run;
    run.write("a.xyz", "x;y;z\n1;1;0\n2;1;0\n", "x;y;z\n2;1;0\n1;1;0\n");
    EXPECT_EQ("-1 +2 | 1 kept, 1 dropped, 0 unreadable | The file " + run.output +
                  "/a.xyz holds lines that its input file does not hold.",
              visit(run));
}

TEST(MapPoints, reportsMissingOutputDirectory) {
    const FilesOfRun run;
    NodeCounts counts;
    const NodeVisitor ignore = [](const MapNode&) {};
    EXPECT_EQ("The output directory /no/out cannot be read.", visitNodes({}, "/no/out", counts, ignore));
    EXPECT_EQ("", visitNodes(findNodeFiles(run.input).files, run.output, counts, ignore));
}

TEST(MapPoints, readsElevationFromThirdColumn) {
    EXPECT_EQ(3.5F, elevationOf("1;2;3.5", ';'));
    EXPECT_EQ(3.5F, elevationOf("1 m; 2 ; +3.5;9", ';'));
    EXPECT_EQ(-4e2F, elevationOf("  1  2   -4e2 x", ' '));
    EXPECT_EQ(7.0F, elevationOf("1\t2\t7 m", '\t'));
    for (const char* const line :
         {"", "1;2", "1;2;", "1;2;x", "1;2;3,5", "1;2;nan", "1;2;inf", "1;2;1e99", "1;2;--3"}) {
        EXPECT_TRUE(std::isnan(elevationOf(line, ';'))) << line;
    }
}

TEST(MapPoints, countsKeptNodesWithoutElevation) {
    const FilesOfRun run;
    run.write("a.xyz", "x;y;z\n1;1;5\n2;1;?\n3;1;?\n", "x;y;z\n1;1;5\n2;1;?\n");
    NodeCounts counts;
    std::vector<float> elevations;
    const NodeVisitor visit = [&elevations](const MapNode& node) { elevations.push_back(node.elevation); };
    EXPECT_EQ("", visitNodes(findNodeFiles(run.input).files, run.output, counts, visit, true));
    EXPECT_EQ(1U, counts.withoutElevation);
    ASSERT_EQ(3U, elevations.size());
    EXPECT_EQ(5.0F, elevations[0]);
    EXPECT_TRUE(std::isnan(elevations[1]) && std::isnan(elevations[2]));
    EXPECT_EQ("", visitNodes(findNodeFiles(run.input).files, run.output, counts, visit));
    EXPECT_EQ(0U, counts.withoutElevation);
    EXPECT_TRUE(std::isnan(elevations[3]));
}

} // namespace vadelwatch
