#include "watch/show/run_summary.hpp"

#include "support/german_messages.hpp"

#include <gtest/gtest.h>

#include <limits>

namespace vadelwatch {

namespace {

constexpr std::size_t unlimited = std::numeric_limits<std::size_t>::max();

RunSummary finishedRun() {
    RunSummary summary;
    summary.closingText = "Finished clipping";
    summary.finished = true;
    summary.filesRead = 6;
    summary.filesWritten = 5;
    summary.nodesRead = 133463;
    summary.nodesKept = 10315;
    summary.nodeCount = 10315;
    summary.addsUp = true;
    summary.seconds = 0.25;
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
    summary.closingText.clear();
    summary.nodesRead.reset();
    summary.addsUp = false;
    const std::string text = summaryText(summary, unlimited);
    EXPECT_EQ(0U, text.find("Clipping ended, but its output does not add up\n  Node files read"));
    EXPECT_NE(std::string::npos, text.find("  Nodes kept        10 315\n"));
    EXPECT_NE(std::string::npos, text.find("the lines do not add up to"));
    summary.nodesRead = 0;
    summary.nodesKept = 0;
    EXPECT_NE(std::string::npos, summaryText(summary, unlimited).find("0 of 0 (- %)\n"));
}

TEST(RunSummary, coloursVerdict) {
    RunSummary summary = finishedRun();
    EXPECT_NE(std::string::npos, summaryText(summary, unlimited, true).find("  \033[32mthe lines add up to"));
    EXPECT_TRUE(summaryText(summary, unlimited, true).ends_with("total_node_count.txt\033[0m\n"));
    summary.addsUp = false;
    EXPECT_NE(std::string::npos, summaryText(summary, unlimited, true).find("  \033[31mthe lines do not add up"));
    EXPECT_NE(std::string::npos, summaryText(summary, 14, true).find("\033[31m    the lines"));
}

TEST(RunSummary, isJson) {
    RunSummary summary = finishedRun();
    summary.nodesRead = 41260;
    EXPECT_EQ(R"({"finished":true,"exit_status":0,"files_read":6,"files_written":5,"nodes_read":41260,)"
              R"("nodes_kept":10315,"percent_kept":25.0,"total_node_count":10315,"adds_up":true,"seconds":0.25,)"
              R"("output_directory":"base/Höhe 1","errors":[]})"
              "\n",
              summaryJson(summary));
}

TEST(RunSummary, isJsonOfFailedRun) {
    RunSummary summary;
    summary.exitStatus = 1;
    summary.outputDirectory = "caf\xE9";
    summary.errors = {"a", "b"};
    EXPECT_EQ(R"({"finished":false,"exit_status":1,"files_read":null,"files_written":null,"nodes_read":null,)"
              R"("nodes_kept":null,"percent_kept":null,"total_node_count":null,"adds_up":null,"seconds":0.0,)"
              "\"output_directory\":\"caf\xEF\xBF\xBD\",\"errors\":[\"a\",\"b\"]}\n",
              summaryJson(summary));
}

} // namespace vadelwatch
