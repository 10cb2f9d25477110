#include "clip/clip_elevation_data.hpp"

#include "support/catalogue_support.hpp"
#include "support/run_support.hpp"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

namespace vadelclip {

namespace {

namespace fs = std::filesystem;

/// The tree of a new directory without files.
const FileTree emptyOutput = {{"base/out/", ""}};

/// Names of the files of a directory in the order of the walk.
std::vector<std::string> walkOrder(const std::string& directory) {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(directory)) {
        names.push_back(entry.path().filename().string());
    }
    return names;
}

} // namespace

TEST(ClipElevationData, clipsOneFile) {
    ClipRun job;
    job.directory.write("base/data/a.xyz", "x;y;z\n5;5;1\n11;5;2\n6;6;3\n7;7;4\n");
    EXPECT_EQ(finishedRun(3, joined({stateCalls(), progressCalls("0 100 4", 4)}),
                          {{"base/out/a.xyz", "x;y;z\n5;5;1\n6;6;3\n7;7;4\n"}}),
              job.run());
}

TEST(ClipElevationData, clipsFilesInOrderOfWalk) {
    ClipRun job;
    job.directory.write("base/data/two.txt", "X,Y,Z,G\n1,1,1,1\n2,2,2,2\n");
    job.directory.write("base/data/six.csv", "\xEF\xBB\xBFx y z\n1 1 1\n2 2 2\n3 3 3\n4 4 4\n5 5 5\n60 60 60\n");
    // Two files that keep nothing, so that in any order one of them precedes another file.
    job.directory.write("base/data/none.xyz", "x;y;z\n11;11;11\n");
    job.directory.write("base/data/nothing.xyz", "x;y;z\n-1;-1;-1\n");
    job.directory.write("base/data/notes.txt", "no header\n");
    job.directory.write("base/data/below/c.txt", "x;y;z\n1;1;1\n");

    const std::map<std::string, int> lineCounts = {{"two.txt", 2}, {"six.csv", 6}, {"none.xyz", 1}, {"nothing.xyz", 1}};
    Calls calls;
    int linesDone = 0;
    for (const std::string& name : walkOrder(job.directory.pathOf("base/data"))) {
        if (lineCounts.count(name) == 0) {
            continue;
        }
        const int lineCount = lineCounts.at(name);
        // Ten lines in all: each is ten percent.
        const std::string values = std::to_string(10 * linesDone) + " " + std::to_string(10 * (linesDone + lineCount)) +
                                   " " + std::to_string(lineCount);
        calls = joined({calls, stateCalls(), progressCalls(values, lineCount)});
        linesDone += lineCount;
    }
    EXPECT_EQ(finishedRun(7, calls,
                          {{"base/out/two.txt", "X,Y,Z,G\n1,1,1,1\n2,2,2,2\n"},
                           {"base/out/six.csv", "\xEF\xBB\xBFx y z\n1 1 1\n2 2 2\n3 3 3\n4 4 4\n5 5 5\n"}}),
              job.run());
}

TEST(ClipElevationData, writesOnlyCountIfNothingIsKept) {
    ClipRun job;
    job.directory.write("base/data/a.xyz", "x;y;z\n11;11;11\n");
    EXPECT_EQ(finishedRun(0, joined({stateCalls(), progressCalls("0 100 1", 1)})), job.run());
}

TEST(ClipElevationData, keepsNothingWithoutPolygons) {
    ClipRun job;
    job.directory.write("area.xml", "<VADELSIM><VadeDGM/></VADELSIM>");
    job.directory.write("base/data/a.xyz", "x;y;z\n0;0;0\n5;5;5\n");
    EXPECT_EQ(finishedRun(0, joined({stateCalls(), progressCalls("0 100 2", 2)})), job.run());
}

TEST(ClipElevationData, emptiesBoundarySet) {
    ClipRun job;
    job.directory.write("base/data/a.xyz", "x;y;z\n5;5;1\n15;15;2\n");
    job.boundarySet.polygons.resize(3);
    job.boundarySet.vertices.resize(7);
    EXPECT_EQ(1, job.run().created.count("base/out/a.xyz"));
    EXPECT_EQ(1u, job.boundarySet.polygons.size());
    EXPECT_EQ(4u, job.boundarySet.vertices.size());
    EXPECT_EQ((std::vector<std::int32_t>{0, 1, 2, 3}), job.boundarySet.polygons[0].vertexIndices);
}

TEST(ClipElevationData, emptiesBoundarySetFirst) {
    ClipRun job;
    job.boundarySet.polygons.resize(3);
    job.boundarySet.vertices.resize(7);
    job.boundaryFilePath = "missing.xml";
    EXPECT_EQ(stoppedRun({"Boundary file missing.xml not found", "Boundary file missing.xml does not exist"}),
              job.run());
    EXPECT_EQ(0u, job.boundarySet.polygons.size());
    EXPECT_EQ(0u, job.boundarySet.vertices.size());
}

TEST(ClipElevationData, reportsTwoErrorsForBoundaryFailure) {
    const std::pair<std::string, std::string> cases[] = {
        {"", "Boundary file {} not found"},
        {"<VADELSIM>", "Boundary file {} not found"},
        {"<OTHER/>", "Could not find the VadeDGM tag in the boundary file {}"},
        {R"(<VADELSIM><VadeDGM><group type="boundaries"><polygon/></group></VadeDGM></VADELSIM>)",
         "Cannot find the id of a polygon in a group of type 0"},
        {R"(<VADELSIM><VadeDGM><group type="boundaries"><polygon id="7"><point x="1"/></polygon></group></VadeDGM>)"
         "</VADELSIM>",
         "Cannot read point 0 in polygon 7"}};
    for (const auto& [content, text] : cases) {
        ClipRun job;
        job.directory.write("area.xml", content);
        job.directory.write("base/data/a.xyz", "x;y;z\n5;5;1\n");
        std::string first = text;
        if (first.find("{}") != std::string::npos) {
            first.replace(first.find("{}"), 2, job.boundaryFilePath);
        }
        EXPECT_EQ(stoppedRun({first, "Boundary file " + job.boundaryFilePath + " does not exist"}), job.run())
            << content;
    }
}

TEST(ClipElevationData, readsBoundaryBeforeCheckingDirectories) {
    ClipRun job;
    job.boundaryFilePath = "missing.xml";
    job.inputParentDirectory = "";
    EXPECT_EQ(stoppedRun({"Boundary file missing.xml not found", "Boundary file missing.xml does not exist"}),
              job.run());
}

TEST(ClipElevationData, requiresParentDirectory) {
    ClipRun job;
    const std::string file = job.directory.write("file", "");
    const std::string missing = job.directory.pathOf("missing");
    for (const std::string& parent : {missing, file, std::string(), file + "/below", std::string("{0}")}) {
        job.inputParentDirectory = parent;
        EXPECT_EQ(stoppedRun({"Directory " + parent + " does not exist"}), job.run());
    }
}

TEST(ClipElevationData, checksParentThenInputThenOutput) {
    ClipRun job;
    job.directory.makeDirectory("base/out");
    job.inputDirectoryName = "missing";
    EXPECT_EQ(stoppedRun({"Input directory " + job.inputParentDirectory + joint + "missing does not exist"}),
              job.run());
    job.inputParentDirectory = job.directory.pathOf("nothing");
    EXPECT_EQ(stoppedRun({"Directory " + job.inputParentDirectory + " does not exist"}), job.run());
}

TEST(ClipElevationData, requiresInputDirectory) {
    ClipRun job;
    job.directory.write("base/file", "");
    for (const std::string name : {"missing", "file", "missing/below", "{0}"}) {
        job.inputDirectoryName = name;
        EXPECT_EQ(stoppedRun({"Input directory " + job.inputParentDirectory + joint + name + " does not exist"}),
                  job.run());
    }
    // An absolute name does not replace the parent.
    job.inputDirectoryName = job.directory.pathOf("base/data");
    const std::string absolute =
        job.inputDirectoryName.starts_with('/') ? job.inputDirectoryName : joint + job.inputDirectoryName;
    EXPECT_EQ(stoppedRun({"Input directory " + job.inputParentDirectory + absolute + " does not exist"}), job.run());
}

TEST(ClipElevationData, doesNotTouchExistingOutputDirectory) {
    ClipRun job;
    job.directory.write("base/data/a.xyz", "x;y;z\n5;5;1\n");
    job.directory.write("base/out/a.xyz", "of an earlier run");
    for (const std::string name : {"out", "data", ".", "..", "", "data/.", "/out"}) {
        job.outputDirectoryName = name;
        const std::string joinedPath =
            job.inputParentDirectory + (name.starts_with('/') || name.empty() ? name : joint + name);
        EXPECT_EQ(stoppedRun({"Output directory " + joinedPath +
                              " already exists, aborting in order avoid overwriting of existing data"}),
                  job.run())
            << name;
    }
}

TEST(ClipElevationData, doesNotTouchLinkedOutputDirectory) {
    ClipRun job;
    job.directory.write("base/data/a.xyz", "x;y;z\n5;5;1\n");
    job.directory.write("base/out/a.xyz", "of an earlier run");
    job.directory.makeLink("base/link", job.directory.pathOf("base/out"));
    job.outputDirectoryName = "link";
    EXPECT_EQ(stoppedRun({"Output directory " + job.inputParentDirectory +
                          "/link already exists, aborting in order avoid overwriting of existing data"}),
              job.run());
}

TEST(ClipElevationData, failsToCreateOutputInPlaceOfFile) {
    ClipRun job;
    job.directory.write("base/data/a.xyz", "x;y;z\n5;5;1\n");
    job.directory.write("base/file", "stays");
    for (const std::string name : {"file", "missing/out", "file/out"}) {
        job.outputDirectoryName = name;
        EXPECT_EQ(thrownRun("boost::filesystem::create_directory"), job.run()) << name;
    }
}

TEST(ClipElevationData, failsToCreateOutputInPlaceOfDanglingLink) {
    ClipRun job;
    job.directory.write("base/data/a.xyz", "x;y;z\n5;5;1\n");
    job.directory.makeLink("base/dangling", "missing");
    job.outputDirectoryName = "dangling";
    EXPECT_EQ(thrownRun("boost::filesystem::create_directory"), job.run());
}

TEST(ClipElevationData, failsToCreateOutputWithDotAtEnd) {
    ClipRun job;
    job.directory.write("base/data/a.xyz", "x;y;z\n5;5;1\n");
    job.outputDirectoryName = "new/.";
    EXPECT_EQ(thrownRun("boost::filesystem::create_directory"), job.run());
}

TEST(ClipElevationData, throwsIfStatusOfDirectoryFails) {
    ClipRun job;
    job.directory.write("base/data/a.xyz", "x;y;z\n5;5;1\n");
    job.directory.makeLink("base/loop", "loop");
    job.outputDirectoryName = "loop";
    EXPECT_EQ(thrownRun("boost::filesystem::status"), job.run());
    job.inputDirectoryName = "loop";
    EXPECT_EQ(thrownRun("boost::filesystem::status"), job.run());
    job.inputParentDirectory += "/loop";
    EXPECT_EQ(thrownRun("boost::filesystem::status"), job.run());
}

TEST(ClipElevationData, createsOutputDirectoryNextToInput) {
    ClipRun job;
    job.directory.write("base/data/a.xyz", "x;y;z\n5;5;1\n");
    job.directory.makeDirectory("base/deep");
    const Calls calls = joined({stateCalls(), progressCalls("0 100 1", 1), closingCalls()});
    const auto outcome = [&calls](const std::string& output) {
        return RunOutcome{
            0,
            "",
            "",
            calls,
            {{output + "/", ""}, {output + "/a.xyz", "x;y;z\n5;5;1\n"}, {output + "/total_node_count.txt", "1\n"}}};
    };
    job.outputDirectoryName = "deep/new";
    EXPECT_EQ(outcome("base/deep/new"), job.run());
    job.outputDirectoryName = "/absolute";
    EXPECT_EQ(outcome("base/absolute"), job.run());
    job.outputDirectoryName = "../sibling";
    EXPECT_EQ(outcome("sibling"), job.run());
    job.outputDirectoryName = "separator/";
    EXPECT_EQ(outcome("base/separator"), job.run());
}

TEST(ClipElevationData, createsOutputInInputAfterTrailingSeparator) {
    // The caller splits base/data/ into base/data and ".".
    ClipRun job;
    job.directory.write("base/data/a.xyz", "x;y;z\n5;5;1\n");
    job.inputParentDirectory = job.directory.pathOf("base/data");
    job.inputDirectoryName = ".";
    job.outputDirectoryName = "out.txt";
    EXPECT_EQ((RunOutcome{0,
                          "",
                          "",
                          joined({stateCalls(), progressCalls("0 100 1", 1), closingCalls()}),
                          {{"base/data/out.txt/", ""},
                           {"base/data/out.txt/a.xyz", "x;y;z\n5;5;1\n"},
                           {"base/data/out.txt/total_node_count.txt", "1\n"}}}),
              job.run());
}

TEST(ClipElevationData, leavesEmptyOutputWithoutInputFiles) {
    ClipRun job;
    job.directory.write("base/data/a.dat", "x;y;z\n5;5;1\n");
    job.directory.write("base/data/A.XYZ", "x;y;z\n5;5;1\n");
    job.directory.write("base/data/notes.txt", "no header\n");
    job.directory.write("base/data/folder.txt/a.txt", "x;y;z\n5;5;1\n");
    EXPECT_EQ(stoppedRun({"There are no input files."}, emptyOutput), job.run());
    EXPECT_EQ(stoppedRun({"Output directory " + job.inputParentDirectory + joint +
                          "out already exists, aborting in order avoid overwriting of existing data"}),
              job.run());
}

TEST(ClipElevationData, translatesErrors) {
    const GeneratedLocale german(
        "de.utf8", {{"There are no input files.", "Keine Dateien"},
                    {"Directory {0} does not exist", "{0} fehlt"},
                    {"Input directory {0} does not exist", "Eingabe {0} fehlt"},
                    {"Output directory {0} already exists, aborting in order avoid overwriting of existing data",
                     "{0} gibt es schon"},
                    {"Boundary file {0} not found", "Grenze {0} unlesbar"},
                    {"Boundary file {0} does not exist", "Grenze {0} fehlt"}});
    ClipRun job;
    EXPECT_EQ(stoppedRun({"Keine Dateien"}, emptyOutput), job.run());
    EXPECT_EQ(stoppedRun({job.inputParentDirectory + joint + "out gibt es schon"}), job.run());
    job.inputDirectoryName = "nichts";
    EXPECT_EQ(stoppedRun({"Eingabe " + job.inputParentDirectory + joint + "nichts fehlt"}), job.run());
    job.inputParentDirectory = "";
    EXPECT_EQ(stoppedRun({" fehlt"}), job.run());
    job.boundaryFilePath = "nichts.xml";
    EXPECT_EQ(stoppedRun({"Grenze nichts.xml unlesbar", "Grenze nichts.xml fehlt"}), job.run());
}

} // namespace vadelclip
