#include "watch/run/run_directories.hpp"

#include <gtest/gtest.h>

namespace vadelwatch {

TEST(RunDirectories, areFoundInTheWayOfTheTool) {
    struct Case {
        const char* inputPath;
        const char* outputName;
        const char* input;
        const char* output;
    };
    for (const Case& each : {
             Case{"base/data", "out", "base/data", "base/out"},
             Case{"/base/data", "out", "/base/data", "/base/out"},
             Case{"./data", "out", "./data", "./out"},
             Case{"data", "out", "data", "out"},
             // A separator at the end: the output lies in the input.
             Case{"base/data/", "out", "base/data/.", "base/data/out"},
             Case{"base/data//", "out", "base/data/.", "base/data/out"},
             // Not taken as a path of its own.
             Case{"base/data", "/out", "base/data", "base/out"},
             Case{"base/data", "deep/out", "base/data", "base/deep/out"},
             Case{"/data", "out", "/data", "/out"},
             Case{"Höhe 1/ä", "Ziel 2", "Höhe 1/ä", "Höhe 1/Ziel 2"},
             Case{"", "", "", ""},
         }) {
        const RunDirectories directories = runDirectories(each.inputPath, each.outputName);
        EXPECT_EQ(each.input, directories.input) << each.inputPath << " and " << each.outputName;
        EXPECT_EQ(each.output, directories.output) << each.inputPath << " and " << each.outputName;
    }
}

} // namespace vadelwatch
