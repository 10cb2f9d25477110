#include "watch/check/input_report.hpp"

#include "support/file_support.hpp"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <sys/stat.h>
#include <vector>

namespace vadelwatch {

using vadelclip::TemporaryDirectory;

namespace {

const std::string header = "x;y;z\n";

std::string square(int minX, int minY) {
    const auto point = [](int x, int y) {
        return "<point x=\"" + std::to_string(x) + "\" y=\"" + std::to_string(y) + "\"/>";
    };
    return "<VADELSIM><VadeDGM><group type=\"boundaries\"><polygon id=\"1\">" + point(minX, minY) +
           point(minX + 10, minY) + point(minX + 10, minY + 10) + "</polygon></group></VadeDGM></VADELSIM>";
}

class Report : public testing::Test {
protected:
    InputReport report(const std::string& boundary) { return report(boundary, "0\n"); }

    /// Without a count, the output directory is missing.
    InputReport report(const std::string& boundary, const std::string& count) {
        if (!count.empty()) {
            directory.write("out/total_node_count.txt", count);
        }
        NodeFiles nodeFiles = findNodeFiles(directory.pathOf("in"));
        readNodeFiles(nodeFiles, false);
        return reportInput(nodeFiles, checkOutput(directory.pathOf("out")), directory.write("area.xml", boundary));
    }

    TemporaryDirectory directory;
};

} // namespace

TEST_F(Report, hasFiguresOfFiles) {
    directory.write("in/a.xyz", header + "1;1;1\nbad\n99;9;9\n");
    directory.write("out/a.xyz", header + "1;1;1\n");
    const InputReport found = report(square(0, 0), "1\n");
    ASSERT_EQ(1U, found.files.size());
    EXPECT_EQ(1U, found.files[0].kept);
    EXPECT_EQ(1U, found.files[0].outside());
    EXPECT_EQ(1U, found.files[0].figures.unparsable.count);
    EXPECT_EQ(
        std::vector<std::string>{
            "Lines dropped: 1 of 3, x or y is no number or nothing follows y: a.xyz (1, first: line 3)"},
        inputSentences(found));
}

TEST_F(Report, hasNothingToSayAboutGoodInput) {
    directory.write("in/a.xyz", header + "1;1;1\n");
    directory.write("out/a.xyz", header + "1;1;1\n");
    EXPECT_TRUE(inputSentences(report(square(0, 0))).empty());
}

TEST_F(Report, doesNotCallLostLinesOutside) {
    directory.write("in/a.xyz", header + "1;1;1\n2;1;1\n");
    directory.write("in/total_node_count.txt", header + "1;1;1\n");
    directory.write("out/a.xyz", header + "1;1;1\n2;");
    for (const InputFile& file : report(square(0, 0), "3\n").files) {
        EXPECT_EQ(file.name == "a.xyz" ? 1U : 0U, file.kept) << file.name;
        EXPECT_FALSE(file.outside()) << file.name;
    }
}

TEST_F(Report, linesOfUnreadableOutputAreUnknown) {
    directory.write("in/a.xyz", header + "1;101;1\n");
    directory.write("in/b.xyz", header + "101;1;1\n");
    for (const InputFile& file : report(square(0, 100), "").files) {
        EXPECT_FALSE(file.kept || file.outside() || file.looksExchanged) << file.name;
    }
    directory.makeDirectory("out");
    directory.makeLink("out/a.xyz", "/dev/full");
    const InputReport found = report(square(0, 100), "0\n");
    EXPECT_FALSE(found.files[0].kept);
    EXPECT_EQ(0U, found.files[1].kept);
}

TEST_F(Report, findsExchangedFile) {
    directory.write("in/a.xyz", header + "1;101;1\n");
    directory.write("in/b.xyz", header + "101;1;1\n");
    directory.write("in/c.xyz", header + "500;500;1\n");
    directory.write("in/d.xyz", header + "bad\n");
    for (const InputFile& file : report(square(0, 100)).files) {
        EXPECT_EQ(file.name == "b.xyz", file.looksExchanged) << file.name;
    }
}

TEST_F(Report, doesNotCallFileExchangedThatOverlapsEitherWay) {
    directory.write("in/a.xyz", header + "9;8;1\n");
    EXPECT_FALSE(report(square(0, 0)).files[0].looksExchanged);
}

TEST_F(Report, neverCallsFileWithOutputExchanged) {
    directory.write("in/b.xyz", header + "101;1;1\n");
    directory.write("out/b.xyz", header + "101;1;1\n");
    EXPECT_FALSE(report(square(0, 100)).files[0].looksExchanged);
}

TEST_F(Report, explainsThatNothingWasKept) {
    directory.write("in/a.xyz", header + "101;1;1\n102;2;2\n");
    EXPECT_EQ(NothingKeptReason::exchanged, report(square(0, 100)).nothingKept->reason);
    EXPECT_EQ(NothingKeptReason::noOverlap, report(square(50, 50)).nothingKept->reason);
    EXPECT_EQ(NothingKeptReason::outside, report(square(100, 0)).nothingKept->reason);
    EXPECT_EQ(NothingKeptReason::noPolygon, report("<VADELSIM><VadeDGM/></VADELSIM>").nothingKept->reason);
    EXPECT_EQ(102.0, report(square(0, 100)).nothingKept->nodes.maxX);
    EXPECT_FALSE(report(square(0, 100)).nothingKept->isSampled);
    directory.write("in/a.xyz", header + "bad\n");
    EXPECT_EQ(NothingKeptReason::noPosition, report(square(0, 100)).nothingKept->reason);
}

TEST_F(Report, reasonIsUnknownIfNotEveryFileIsRead) {
    directory.write("in/a.xyz", header + "101;1;1\n");
    ASSERT_EQ(0, mkfifo(directory.pathOf("in/p.xyz").c_str(), 0600));
    const InputReport found = report(square(0, 0));
    ASSERT_TRUE(found.nothingKept);
    EXPECT_EQ(NothingKeptReason::unknown, found.nothingKept->reason);
    EXPECT_EQ((std::vector<std::string>{"Warning: no node was kept. The reason is unknown, because Vadelwatch did not "
                                        "read every node file.",
                                        "Boundary: x from 0 to 10, y from 0 to 10"}),
              inputSentences(found));
    EXPECT_EQ(NothingKeptReason::noPolygon, report("<VADELSIM><VadeDGM/></VADELSIM>").nothingKept->reason);
}

TEST(InputSentences, sayThatExtentIsOfSample) {
    InputReport report;
    report.nothingKept = NothingKept{NothingKeptReason::noOverlap, {1, 2, 3, 4}, {}, true};
    EXPECT_EQ((std::vector<std::string>{"Warning: no node was kept. Nodes and boundary do not overlap.",
                                        "Nodes, in a sample of the lines: x from 1 to 3, y from 2 to 4"}),
              inputSentences(report));
}

TEST(InputSentences, namesAtMostFiveEntries) {
    InputReport report;
    report.entries = 7;
    for (const char* const name : {"1", "2", "3", "4", "5", "6"}) {
        report.passedOver.push_back({name, PassedOver::suffix});
    }
    EXPECT_EQ(
        std::vector<std::string>{
            "Entries passed over: 6 of 7, the suffix is not .txt, .xyz or .csv: 1, 2, 3, 4, 5, ..."},
        inputSentences(report));
}

TEST(InputSentences, sayEveryReason) {
    InputReport report;
    for (int reason = 0; reason <= static_cast<int>(PassedOver::columns); ++reason) {
        report.passedOver.push_back({"a", static_cast<PassedOver>(reason)});
    }
    EXPECT_EQ(9U, inputSentences(report).size());
}

} // namespace vadelwatch
