#include "clip/clip_elevation_data.hpp"

#include "support/run_support.hpp"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

namespace vadelclip {

// Single files of a run: line counts of 0 and less, files that change or fail during the run.

namespace {

namespace fs = std::filesystem;

} // namespace

TEST(ClipElevationDataFiles, sendsInfiniteProgressWithoutLines) {
    ClipRun job;
    job.directory.write("base/data/a.xyz", "x;y;z\n");
    EXPECT_EQ(finishedRun(0, joined({stateCalls(), progressCalls("nan nan 0", 0)})), job.run());
}

TEST(ClipElevationDataFiles, countsMinusOneLineWithoutLineFeed) {
    ClipRun job;
    job.directory.write("base/data/a.xyz", "x;y;z");
    EXPECT_EQ(finishedRun(0, joined({stateCalls(), progressCalls("-0 100 -1", 0)})), job.run());
}

TEST(ClipElevationDataFiles, lowersProgressByMinusOneLine) {
    ClipRun job;
    job.directory.write("base/data/a.xyz", "x;y;z");
    job.directory.write("base/data/b.xyz", "x;y;z\n5;5;1\n5;5;2\n5;5;3\n");
    const FileTree created = {{"base/out/b.xyz", "x;y;z\n5;5;1\n5;5;2\n5;5;3\n"}};
    const bool headerFirst = fs::directory_iterator(job.directory.pathOf("base/data"))->path().filename() == "a.xyz";
    const Calls calls =
        headerFirst ? joined({stateCalls(), progressCalls("0 -50 -1", 0), stateCalls(), progressCalls("-50 100 3", 3)})
                    : joined({stateCalls(), progressCalls("0 150 3", 3), stateCalls(), progressCalls("150 100 -1", 0)});
    EXPECT_EQ(finishedRun(3, calls, created), job.run());
}

TEST(ClipElevationDataFiles, dropsLastLineWithoutLineFeed) {
    ClipRun job;
    job.directory.write("base/data/a.xyz", "x;y;z\n5;5;1\n6;6;2");
    EXPECT_EQ(
        finishedRun(1, joined({stateCalls(), progressCalls("0 100 1", 1)}), {{"base/out/a.xyz", "x;y;z\n5;5;1\n"}}),
        job.run());
}

TEST(ClipElevationDataFiles, overwritesOutputNamedLikeCountFile) {
    ClipRun job;
    job.directory.write("base/data/total_node_count.txt", "x;y;z\n5;5;1\n6;6;2\n");
    EXPECT_EQ(finishedRun(2, joined({stateCalls(), progressCalls("0 100 2", 2)})), job.run());
}

TEST(ClipElevationDataFiles, throwsIfStatusFailsInWalk) {
    ClipRun job;
    job.directory.write("base/data/a.xyz", "x;y;z\n5;5;1\n");
    job.directory.makeLink("base/data/loop.dat", "loop.dat");
    EXPECT_EQ(thrownRun("boost::filesystem::status", {}, {{"base/out/", ""}}), job.run());
}

} // namespace vadelclip
