#include "watch/run_summary.hpp"

#include "watch/run_summary_json.hpp"
#include "watch/show/messages.hpp"

#include "support/german_messages.hpp"

#include <gtest/gtest.h>

#include <limits>

namespace vadelwatch {

namespace {

constexpr std::size_t unlimited = std::numeric_limits<std::size_t>::max();

RunSummary finishedRun() {
    RunSummary summary;
    summary.record.closingText = "Finished clipping";
    summary.record.passes = 6;
    summary.record.seconds = 0.25;
    summary.finished = true;
    summary.nodesRead = 133463;
    OutputCheck& check = summary.check.emplace();
    check.files.resize(5);
    check.nodeLines = 10315;
    check.nodeCount = 10315;
    check.addsUp = true;
    summary.outputDirectory = "base/Höhe 1";
    return summary;
}

} // namespace

TEST(RunSummary, isATable) {
    EXPECT_EQ("Finished clipping\n"
              "  Node files read   6\n"
              "  Files written     5\n"
              "  Nodes kept        10 315 of 133 463 (7.7 %)\n"
              "  Time              0.2 s\n"
              "  Output directory  base/Höhe 1\n"
              "  Check             the lines add up to total_node_count.txt\n",
              summaryText(finishedRun(), unlimited));
}

TEST(RunSummary, alignsLabelsWithUmlauts) {
    const GermanMessages german;
    EXPECT_EQ("Finished clipping\n"
              "  Knotendateien gelesen  6\n"
              "  Dateien geschrieben    5\n"
              "  Knoten behalten        10 315 von 133 463 (7,7 %)\n"
              "  Dauer                  0,2 s\n"
              "  Ausgabeverzeichnis     base/Höhe 1\n"
              "  Prüfung                die Zeilenzahl stimmt mit total_node_count.txt überein\n",
              summaryText(finishedRun(), 80));
}

TEST(RunSummary, stacksValuesInNarrowWindow) {
    EXPECT_EQ("Finished\n"
              "clipping\n"
              "  Node files read\n"
              "    6\n"
              "  Files written\n"
              "    5\n"
              "  Nodes kept\n"
              "    10 315 of\n"
              "    133 463\n"
              "    (7.7 %)\n"
              "  Time\n"
              "    0.2 s\n"
              "  Output directory\n"
              "    base/Höhe 1\n"
              "  Check\n"
              "    the lines\n"
              "    add up to\n"
              "    total_node_count.txt\n",
              summaryText(finishedRun(), 14));
}

TEST(RunSummary, escapesControlCharactersOfPath) {
    RunSummary summary = finishedRun();
    summary.outputDirectory = "base/\033[2J\n\x7F";
    for (const std::size_t columns : {unlimited, std::size_t{14}}) {
        const std::string text = summaryText(summary, columns);
        EXPECT_NE(std::string::npos, text.find("  base/\\x1B[2J\\x0A\\x7F\n")) << text;
    }
    EXPECT_NE(std::string::npos, summaryJson(summary).find(R"("base/\u001b[2J\n)"));
}

TEST(RunSummary, leavesOutUnknownValues) {
    RunSummary summary = finishedRun();
    summary.record.closingText.clear();
    summary.nodesRead.reset();
    summary.check->addsUp = false;
    summary.check->nodeCount = 10316;
    const std::string text = summaryText(summary, unlimited);
    EXPECT_EQ(0U, text.find("Clipping ended, but its output does not add up\n  Node files read"));
    EXPECT_NE(std::string::npos, text.find("  Nodes kept        10 315\n"));
    EXPECT_NE(std::string::npos, text.find("the lines do not add up to"));
    summary.nodesRead = 0;
    summary.check->addsUp = true;
    summary.check->nodeLines = 0;
    EXPECT_NE(std::string::npos, summaryText(summary, unlimited).find("0 of 0 (- %)\n"));
}

TEST(RunSummary, verdictSaysWhyCheckIsImpossible) {
    RunSummary summary = finishedRun();
    summary.check->addsUp = false;
    const auto expectVerdict = [&summary](const std::string& verdict) {
        const std::string text = summaryText(summary, unlimited);
        EXPECT_EQ(0U, text.find("Clipping ended, but its output cannot be checked\n")) << text;
        EXPECT_TRUE(text.ends_with("  Check             " + verdict + "\n")) << text;
    };
    expectVerdict("not every output file can be counted");
    summary.check->nodeCount.reset();
    expectVerdict("there is no total_node_count.txt");
    summary.check->hasNodeCountFile = true;
    expectVerdict("total_node_count.txt holds no number");
    summary.check->directoryError = std::make_error_code(std::errc::permission_denied);
    expectVerdict("the output directory cannot be read");
}

TEST(RunSummary, numbersOfUnreadableDirectoryAreUnknown) {
    RunSummary summary = finishedRun();
    summary.check->addsUp = false;
    summary.check->directoryError = std::make_error_code(std::errc::permission_denied);
    const std::string text = summaryText(summary, unlimited);
    EXPECT_NE(std::string::npos, text.find("Files written     -\n  Nodes kept        - of 133 463 (- %)\n")) << text;
    EXPECT_NE(std::string::npos, summaryJson(summary).find(R"("files_written":null,"nodes_read":133463,)"
                                                           R"("nodes_kept":null,"percent_kept":null,)"));
}

TEST(RunSummary, coloursVerdict) {
    RunSummary summary = finishedRun();
    EXPECT_NE(std::string::npos, summaryText(summary, unlimited, true).find("  \033[32mthe lines add up to"));
    EXPECT_TRUE(summaryText(summary, unlimited, true).ends_with("total_node_count.txt\033[0m\n"));
    summary.check->addsUp = false;
    summary.check->nodeCount = 10316;
    EXPECT_NE(std::string::npos, summaryText(summary, unlimited, true).find("  \033[31mthe lines do not add up"));
    EXPECT_NE(std::string::npos, summaryText(summary, 14, true).find("\033[31m    the lines"));
}

TEST(RunSummary, showsShareAsExactOnlyIfItIs) {
    EXPECT_EQ("0.0", shareText(0.0));
    EXPECT_EQ("<0.1", shareText(1e-9));
    EXPECT_EQ("<0.1", shareText(0.0999));
    EXPECT_EQ("0.1", shareText(0.1));
    EXPECT_EQ("99.9", shareText(99.9));
    EXPECT_EQ(">99.9", shareText(99.96));
    EXPECT_EQ("100.0", shareText(100.0));
    const GermanMessages german;
    EXPECT_EQ("<0,1", shareText(0.05));
}

TEST(RunSummary, keepsGroupedNumbersInOneLine) {
    RunSummary summary = finishedRun();
    summary.input.entries = 1234567;
    summary.input.passedOver = {{"D.TXT", PassedOver::capitals}};
    const std::string text = summaryText(summary, 34);
    EXPECT_TRUE(text.ends_with("  Entries passed over: 1 of\n    1 234 567, the suffix has\n"
                               "    capital letters: D.TXT\n"))
        << text;
}

TEST(RunSummary, jsonHasReasonsWithoutNameOfProgram) {
    RunSummary summary;
    summary.failure = "Vadelwatch: interrupted by SIGINT.";
    summary.whyNoMap = "Vadelwatch: interrupted.";
    const std::string json = summaryJson(summary);
    EXPECT_NE(std::string::npos, json.find(R"("failure":"interrupted by SIGINT.")")) << json;
    EXPECT_NE(std::string::npos, json.find(R"("why_no_map":"interrupted.")")) << json;
}

TEST(RunSummary, hasSentencesAndTableOfFiles) {
    RunSummary summary = finishedRun();
    summary.input.entries = 2;
    summary.input.passedOver = {{"D\033.TXT", PassedOver::capitals}};
    summary.input.files = {{"a.xyz", LineFigures{{39, 4, true}, {}, {}, {}}, 2, false}};
    const std::string sentence = "  Entries passed over: 1 of 2, the suffix has capital letters: D\\x1B.TXT\n";
    EXPECT_TRUE(summaryText(summary, unlimited).ends_with(sentence)) << summaryText(summary, unlimited);
    EXPECT_TRUE(summaryText(summary, 52)
                    .ends_with("  Entries passed over: 1 of 2, the suffix has\n"
                               "    capital letters: D\\x1B.TXT\n"))
        << summaryText(summary, 52);
    summary.options.verbose = true;
    EXPECT_TRUE(summaryText(summary, unlimited)
                    .ends_with(sentence + "  lines  kept  outside  unparsable  bytes  node file\n"
                                          "      3     2        1           0     39  a.xyz\n"))
        << summaryText(summary, unlimited);
}

TEST(RunSummary, isJson) {
    RunSummary summary = finishedRun();
    summary.nodesRead = 41260;
    summary.startTime = "2026-11-22T09:30:00Z";
    summary.whyNoMap = "not asked for";
    summary.options.boundaryFilePath = "area.xml";
    summary.input.passedOver = {{"D.TXT", PassedOver::capitals}};
    summary.input.files = {{"a.xyz", LineFigures{{39, 4, true}, {1, 3}, {}, {}}, 2, false}};
    summary.input.nothingKept = NothingKept{NothingKeptReason::noOverlap, {1, 2, 3, 4.5}, {}};
    EXPECT_EQ(0U,
              summaryJson(summary).find(
                  R"({"finished":true,"exit_status":0,"files_read":6,"files_written":5,"nodes_read":41260,)"
                  R"("nodes_kept":10315,"percent_kept":25.0,"total_node_count":10315,"adds_up":true,"seconds":0.25,)"
                  R"("output_directory":"base/Höhe 1","errors":[],"failure":null,"signal":null,"interrupted_by":null,)"
                  R"("suspects":[],"map":null,"why_no_map":"not asked for","arguments":{"input_directory_path":"",)"
                  R"("output_directory_name":"","boundary_file_path":"area.xml"},"language":"de","version":")"));
    EXPECT_NE(
        std::string::npos,
        summaryJson(summary).find(
            R"("start_time":"2026-11-22T09:30:00Z","input":{"passed_over":[{"name":"D.TXT",)"
            R"("reason":"capitals in the suffix"}],"files":[{"name":"a.xyz","bytes":39,"lines":3,"kept":2,)"
            R"("dropped_outside":0,"dropped_unparsable":{"count":1,"first_line":3},)"
            R"("decimal_commas":{"count":0,"first_line":null},"ends_in_line_feed":true,"looks_exchanged":false}],)"
            R"("nothing_kept":{"reason":"no overlap","nodes":[1.0,2.0,3.0,4.5],"nodes_are_sampled":false,"boundary":null},"sentences":[)"));
}

TEST(RunSummary, isJsonOfFailedRun) {
    RunSummary summary;
    summary.exitStatus = 1;
    summary.outputDirectory = "caf\xE9";
    summary.record.errors = {"a", "b"};
    summary.failure = std::string("a");
    summary.record.end.signal = 9;
    summary.suspects = {{"b.xyz", "b.xyz: empty"}, {"", "No space"}};
    EXPECT_EQ(0U, summaryJson(summary).find(
                      R"({"finished":false,"exit_status":1,"files_read":null,"files_written":null,"nodes_read":null,)"
                      R"("nodes_kept":null,"percent_kept":null,"total_node_count":null,"adds_up":null,"seconds":0.0,)"
                      "\"output_directory\":\"caf\xEF\xBF\xBD\",\"errors\":[\"a\",\"b\"],"
                      R"("failure":"a","signal":9,"interrupted_by":null,)"
                      R"("suspects":[{"file":"b.xyz","reason":"b.xyz: empty"},{"file":null,"reason":"No space"}],)"));
}

} // namespace vadelwatch
