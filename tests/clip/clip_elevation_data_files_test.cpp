#include "clip/clip_elevation_data.hpp"

#include "support/run_support.hpp"

#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <string>

namespace vadelclip {

// Single files of a run: line counts of 0 and less, files that change or fail during the run.

namespace {

namespace fs = std::filesystem;

} // namespace

TEST(ClipElevationDataFiles, readCountedLines) {
    struct Case {
        std::string name;
        std::string content;
        std::int32_t keptNodes;
        std::string progress;
        int steps;
        FileTree created;
    };
    const Case cases[] = {
        {"a.xyz", "x;y;z\n", 0, "nan nan 0", 0, {}},
        {"a.xyz", "x;y;z", 0, "-0 100 -1", 0, {}},
        {"a.xyz", "x;y;z\n5;5;1\n6;6;2", 1, "0 100 1", 1, {{"base/out/a.xyz", "x;y;z\n5;5;1\n"}}},
        // The count file replaces the output of this name.
        {"total_node_count.txt", "x;y;z\n5;5;1\n6;6;2\n", 2, "0 100 2", 2, {}},
    };
    for (const Case& testCase : cases) {
        ClipRun job;
        job.directory.write("base/data/" + testCase.name, testCase.content);
        const Calls calls = joined({stateCalls(), progressCalls(testCase.progress, testCase.steps)});
        EXPECT_EQ(finishedRun(testCase.keptNodes, calls, testCase.created), job.run()) << testCase.content;
    }
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

TEST(ClipElevationDataFiles, throwsIfStatusFailsInWalk) {
    ClipRun job;
    job.directory.write("base/data/a.xyz", "x;y;z\n5;5;1\n");
    job.directory.makeLink("base/data/loop.dat", "loop.dat");
    EXPECT_EQ(thrownRun("boost::filesystem::status", {}, {{"base/out/", ""}}), job.run());
}

} // namespace vadelclip
