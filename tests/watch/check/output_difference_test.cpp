#include "watch/check/output_difference.hpp"

#include "support/file_support.hpp"
#include "support/german_messages.hpp"

#include <gtest/gtest.h>

#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace vadelwatch {

using vadelclip::TemporaryDirectory;

namespace {

using Lines = std::vector<std::string>;

const std::string nodes = "x;y;z\n1;1;1\n2;2;2\n";

/// An input and an output directory, with the lines about them.
struct Job {
    TemporaryDirectory directory;

    void giveInput(const std::string& name) const { directory.write("in/" + name, nodes); }
    void giveOutput(const std::string& name) const { directory.write("out/" + name, nodes); }
    void giveCount(const std::string& count) const { directory.write("out/total_node_count.txt", count + "\n"); }

    Lines difference() const {
        const NodeFiles nodeFiles = findNodeFiles(directory.pathOf("in"));
        const std::string output = directory.pathOf("out");
        return describeDifference(findDifference(checkOutput(output), {nodeFiles, 0, output}));
    }

    Lines germanDifference() const {
        const GermanMessages german;
        return difference();
    }
};

std::string missing(const std::string& numbers) {
    return "Vadelwatch: nodes in the output files: " + numbers + ".";
}

} // namespace

TEST(OutputDifference, namesNodeFilesWithoutOutput) {
    const Job job;
    for (const char* const name : {"d.xyz", "b.txt", "a.xyz", "c.csv"}) {
        job.giveInput(name);
    }
    job.giveOutput("c.csv");
    job.directory.makeDirectory("out/a.xyz");
    job.directory.makeDirectory("out/other");
    job.giveCount("4");
    EXPECT_EQ((Lines{missing("2, in total_node_count.txt: 4, missing: 2"), "  a.xyz: a directory in place of the file",
                     "  b.txt: no output file, which is right only if none of its nodes was kept",
                     "  d.xyz: no output file, which is right only if none of its nodes was kept"}),
              job.difference());
    EXPECT_EQ((Lines{"Vadelwatch: Knoten in den Ausgabedateien: 2, in total_node_count.txt: 4, es fehlen: 2.",
                     "  a.xyz: ein Verzeichnis anstelle der Datei",
                     "  b.txt: keine Ausgabedatei; das ist nur richtig, wenn keiner der Knoten behalten wurde",
                     "  d.xyz: keine Ausgabedatei; das ist nur richtig, wenn keiner der Knoten behalten wurde"}),
              job.germanDifference());
}

TEST(OutputDifference, isEmptyWhenEverythingAddsUp) {
    const Job job;
    job.giveInput("a.xyz");
    job.giveInput("b.xyz");
    job.giveOutput("a.xyz");
    job.giveCount("2");
    EXPECT_EQ(Lines{}, job.difference());
}

TEST(OutputDifference, namesOnlyFirstMissingOutputs) {
    const Job job;
    Lines expected{missing("0, in total_node_count.txt: 1, missing: 1")};
    for (int i = 10; i < 32; ++i) {
        const std::string name = std::to_string(i) + ".txt";
        job.giveInput(name);
        if (i < 30) {
            expected.push_back("  " + name + ": no output file, which is right only if none of its nodes was kept");
        }
    }
    expected.emplace_back("  more node files without an output file: 2");
    job.giveCount("1");
    EXPECT_EQ(expected, job.difference());
    EXPECT_EQ("  weitere Knotendateien ohne Ausgabedatei: 2", job.germanDifference().back());
}

TEST(OutputDifference, namesOutputsWithoutNodeFile) {
    const Job job;
    job.giveInput("a.xyz");
    job.giveOutput("a.xyz");
    job.giveOutput("notes.dat");
    job.giveCount("2");
    EXPECT_EQ((Lines{"Vadelwatch: nodes in the output files: 4, in total_node_count.txt: 2, too many: 2.",
                     "  notes.dat: no node file had this name when the run began"}),
              job.difference());
    EXPECT_EQ("  notes.dat: zu Beginn des Laufs gab es keine Knotendatei dieses Namens", job.germanDifference().back());
}

TEST(OutputDifference, missingOutputIsASuspect) {
    const Job job;
    job.giveInput("a.xyz");
    job.giveInput("b.xyz");
    job.giveOutput("a.xyz");
    job.giveCount("1");
    // A missing file does not explain too many lines, so it is not named.
    EXPECT_EQ(Lines{"Vadelwatch: nodes in the output files: 2, in total_node_count.txt: 1, too many: 1."},
              job.difference());
}

TEST(OutputDifference, namesNodeFileThatCountOverwrites) {
    const Job job;
    job.giveInput("total_node_count.txt");
    job.giveCount("2");
    EXPECT_EQ((Lines{missing("0, in total_node_count.txt: 2, missing: 2"),
                     "  total_node_count.txt: also the name of a node file; the count includes its nodes and has "
                     "replaced its output"}),
              job.difference());
}

TEST(OutputDifference, reportsUncountedFileWithoutDifference) {
    const Job job;
    job.giveInput("a.xyz");
    job.directory.makeDirectory("out");
    job.directory.makeLink("out/a.xyz", "/dev/full");
    job.giveCount("0");
    EXPECT_EQ(
        (Lines{"Vadelwatch: nodes in the output files: 0, as many as total_node_count.txt says, but not every file "
               "can be counted.",
               "  a.xyz: not a regular file, its lines cannot be counted"}),
        job.difference());
    EXPECT_EQ("Vadelwatch: Knoten in den Ausgabedateien: 0, wie in total_node_count.txt angegeben, aber nicht jede "
              "Datei lässt sich zählen.",
              job.germanDifference().front());
}

TEST(OutputDifference, namesDirectoryInPlaceOfCount) {
    const Job job;
    job.giveInput("a.xyz");
    job.directory.makeDirectory("out/total_node_count.txt");
    EXPECT_EQ((Lines{"Vadelwatch: nodes in the output files: 0. total_node_count.txt holds no number to compare with.",
                     "  total_node_count.txt: a directory in place of the file"}),
              job.difference());
}

TEST(Obstacles, areMissingSpaceAndInodes) {
    struct statvfs fileSystem {};
    // This file system does not count.
    EXPECT_FALSE(isOutOfSpace(fileSystem));
    EXPECT_FALSE(isOutOfInodes(fileSystem));
    fileSystem.f_blocks = 10;
    fileSystem.f_files = 10;
    EXPECT_TRUE(isOutOfSpace(fileSystem));
    EXPECT_TRUE(isOutOfInodes(fileSystem));
    fileSystem.f_bavail = 1;
    fileSystem.f_ffree = 1;
    EXPECT_FALSE(isOutOfSpace(fileSystem));
    EXPECT_TRUE(isOutOfInodes(fileSystem));
    fileSystem.f_favail = 1;
    EXPECT_FALSE(isOutOfInodes(fileSystem));
    fileSystem.f_ffree = 0;
    EXPECT_TRUE(isOutOfInodes(fileSystem));
}

TEST(Obstacles, nameDirectoryThatCannotBeWritten) {
    const TemporaryDirectory directory;
    EXPECT_EQ(Lines{}, obstaclesIn(directory.path()));
    Lines lines;
    ASSERT_EQ(0, chmod(directory.path().c_str(), 0555));
    const uid_t user = geteuid();
    const auto addAsOrdinaryUser = [&directory, &lines, user] {
        ASSERT_TRUE(user != 0 || seteuid(65534) == 0); // root may write anywhere
        const Lines found = obstaclesIn(directory.path());
        lines.insert(lines.end(), found.begin(), found.end());
        ASSERT_EQ(0, seteuid(user));
    };
    addAsOrdinaryUser();
    const GermanMessages german; // made by this user: the other one may have no access to the catalogue
    addAsOrdinaryUser();
    EXPECT_EQ((Lines{"No file can be made in " + directory.path() + ": Permission denied",
                     "In " + directory.path() + " kann keine Datei angelegt werden: Permission denied"}),
              lines);
    ASSERT_EQ(0, chmod(directory.path().c_str(), 0700));
}

TEST(Obstacles, areOfDirectoriesOnly) {
    const TemporaryDirectory directory;
    EXPECT_EQ(Lines{}, obstaclesIn(directory.pathOf("none")));
    EXPECT_EQ(Lines{}, obstaclesIn(directory.write("file", "")));
}

} // namespace vadelwatch
