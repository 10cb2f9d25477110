#include "clip/clip_node_file.hpp"

#include "support/catalogue_support.hpp"
#include "support/clip_pass_support.hpp"

#include <boost/filesystem/exception.hpp>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <string>
#include <thread>

namespace vadelclip {

// A pass with streams that cannot be read or written, and the times of its writes.

namespace {

using testing::StartsWith;

/// A pass that rejected the header with this text and left an empty output.
PassOutcome headerRejected(const std::string& errorText) {
    return {1, {{"a.xyz", ""}}, errorText + "\n", errorCalls(errorText)};
}

std::string errorOf(ClipPass& pass, std::int32_t lineCount) {
    try {
        pass.run(lineCount);
        return "no error";
    } catch (const boost::filesystem::filesystem_error& error) {
        return error.what();
    }
}

/// Waits until a file has this content, at most a minute.
void waitForContent(const std::string& path, const std::string& content) {
    const auto limit = std::chrono::steady_clock::now() + std::chrono::minutes(1);
    while (!std::filesystem::exists(path) || readFile(path) != content) {
        if (std::chrono::steady_clock::now() > limit) {
            ADD_FAILURE() << path << " does not contain '" << content << "' in time";
            return;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
}

} // namespace

TEST(ClipNodeFileStreams, reportsRejectedHeaderAndCountsOne) {
    ClipPass pass;
    EXPECT_EQ(headerRejected(firstCharacterText), pass.run("y;x;z\n5;5;1\n5;5;2\n", 2));
    EXPECT_EQ(headerRejected("ERROR: separator must be either semikolon, comma, space or tab"),
              pass.run("x:y:z\n5;5;1\n", 1));
    EXPECT_EQ(headerRejected("ERROR: Using the xyz format, the first header line must be one of x;y;z , X;Y;Z , "
                             "x;y;z;g , Y;Y;Z;G , while the separator (e.g. \";\" is variable"),
              pass.run("x;y;z;\n5;5;1\n", 1));
}

TEST(ClipNodeFileStreams, reportsEmptyHeaderAsEmptyLine) {
    ClipPass pass;
    EXPECT_EQ(headerRejected(""), pass.run("\nx;y;z\n5;5;1\n", 2));
    EXPECT_EQ(headerRejected(""), pass.run("", -1));
}

TEST(ClipNodeFileStreams, doesNotTranslateTextOfParserAgain) {
    const std::string separatorText = "ERROR: separator must be either semikolon, comma, space or tab";
    const GeneratedLocale german("de.utf8", {{firstCharacterText, "Erstes Zeichen"},
                                             {"Erstes Zeichen", "Zweimal übersetzt"},
                                             {separatorText, "Trennzeichen"}});
    ClipPass pass;
    EXPECT_EQ(headerRejected(""), pass.run("", -1));
    EXPECT_EQ(headerRejected("Erstes Zeichen"), pass.run("y;x;z\n", 0));
    EXPECT_EQ(headerRejected(separatorText), pass.run("x:y:z\n", 0));
}

TEST(ClipNodeFileStreams, treatsMissingInputAsEmpty) {
    ClipPass pass;
    EXPECT_EQ(headerRejected(""), pass.run(3));
}

TEST(ClipNodeFileStreams, treatsDirectoryAsEmptyInput) {
    ClipPass pass;
    pass.directory.makeDirectory("in/a.xyz");
    EXPECT_EQ(headerRejected(""), pass.run(3));
}

TEST(ClipNodeFileStreams, emptiesExistingOutputBeforeReadingInput) {
    ClipPass pass;
    pass.directory.write("out/a.xyz", "content of an earlier run\n");
    EXPECT_EQ(headerRejected(""), pass.run(3));
    pass.directory.write("out/a.xyz", "content of an earlier run\n");
    EXPECT_EQ(headerRejected(firstCharacterText), pass.run("y;x;z\n5;5;1\n", 1));
}

TEST(ClipNodeFileStreams, countsLinesThatCannotBeWritten) {
    const Calls calls = joined({stateCalls(), progressCalls("0 100 3", 3)});
    const std::string nodes = "x;y;z\n5;5;1\n11;5;2\n6;6;3\n";
    {
        ClipPass pass;
        pass.outputPath = pass.directory.pathOf("missing/a.xyz");
        EXPECT_EQ((PassOutcome{2, {}, "", calls}), pass.run(nodes, 3));
    }
    {
        ClipPass pass;
        pass.directory.makeDirectory("out/a.xyz");
        EXPECT_EQ((PassOutcome{2, {{"a.xyz/", ""}}, "", calls}), pass.run(nodes, 3));
    }
}

TEST(ClipNodeFileStreams, countsLinesIfDiskIsFull) {
    ClipPass pass;
    pass.directory.makeLink("out/a.xyz", "/dev/full");
    EXPECT_EQ((PassOutcome{2, {{"a.xyz", "link"}}, "", joined({stateCalls(), progressCalls("0 100 3", 3)})}),
              pass.run("x;y;z\n5;5;1\n11;5;2\n6;6;3\n", 3));
}

TEST(ClipNodeFileStreams, countsOneForRejectedHeaderWithoutOutput) {
    ClipPass pass;
    pass.outputPath = pass.directory.pathOf("missing/a.xyz");
    EXPECT_EQ((PassOutcome{1, {}, firstCharacterText + "\n", errorCalls(firstCharacterText)}), pass.run("y;x;z\n", 0));
}

TEST(ClipNodeFileStreams, acceptsThatOutputIsAlreadyRemoved) {
    ClipPass pass;
    pass.outputPath = pass.directory.pathOf("missing/a.xyz");
    EXPECT_EQ((PassOutcome{0, {}, "", joined({stateCalls(), progressCalls("0 100 1", 1)})}),
              pass.run("x;y;z\n11;5;1\n", 1));
}

TEST(ClipNodeFileStreams, removesAnyEntryWithNameOfOutput) {
    ClipPass pass;
    pass.directory.makeDirectory("out/a.xyz");
    EXPECT_EQ((PassOutcome{0, {}, "", joined({stateCalls(), progressCalls("0 100 1", 1)})}),
              pass.run("x;y;z\n11;5;1\n", 1));
}

TEST(ClipNodeFileStreams, removesLinkWithNameOfOutput) {
    ClipPass pass;
    pass.directory.makeLink("out/a.xyz", "/dev/full");
    EXPECT_EQ((PassOutcome{0, {}, "", joined({stateCalls(), progressCalls("0 100 1", 1)})}),
              pass.run("x;y;z\n11;5;1\n", 1));
}

TEST(ClipNodeFileStreams, throwsIfRemovalFails) {
    ClipPass pass;
    pass.directory.write("in/a.xyz", "x;y;z\n11;5;1\n");
    pass.directory.write("out/a.xyz/file", "in the way");
    EXPECT_THAT(errorOf(pass, 1), StartsWith("boost::filesystem::remove: "));
    EXPECT_EQ("in the way", readFile(pass.directory.pathOf("out/a.xyz/file")));
}

TEST(ClipNodeFileStreams, endsPassBeforeRemovalFails) {
    ClipPass pass;
    pass.directory.write("in/a.xyz", "x;y;z\n11;5;1\n");
    pass.directory.write("out/a.xyz/file", "in the way");
    errorOf(pass, 1);
    EXPECT_EQ(joined({stateCalls(), progressCalls("0 100 1", 1)}), pass.callsSoFar());
}

TEST(ClipNodeFileStreams, flushesHeaderAndEachKeptLine) {
    ClipPass pass;
    const std::string output = pass.outputPath;
    const auto expectOutput = [&output](const std::string& content) {
        return [output, content] { waitForContent(output, content); };
    };
    const ServedFile input(pass.inputPath,
                           {{"x;y;z\n", expectOutput("x;y;z\n"), "5;5;1\n", expectOutput("x;y;z\n5;5;1\n"),
                             "11;5;2\n6;6;3\n", expectOutput("x;y;z\n5;5;1\n6;6;3\n"), "7;7;4\n"}});
    EXPECT_EQ(
        (PassOutcome{
            3, {{"a.xyz", "x;y;z\n5;5;1\n6;6;3\n7;7;4\n"}}, "", joined({stateCalls(), progressCalls("0 100 4", 4)})}),
        pass.run(4));
}

TEST(ClipNodeFileStreams, createsOutputBeforeReadingInput) {
    ClipPass pass;
    const std::string output = pass.outputPath;
    const ServedFile input(pass.inputPath, {{[output] { waitForContent(output, ""); }, "x;y;z\n", "5;5;1\n"}});
    EXPECT_EQ(1, pass.run(1).keptNodes);
}

} // namespace vadelclip
