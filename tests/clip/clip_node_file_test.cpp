#include "clip/clip_node_file.hpp"

#include "support/catalogue_support.hpp"
#include "support/clip_pass_support.hpp"

#include <gtest/gtest.h>

#include <string>

namespace vadelclip {

namespace {

/// Returns the outcome of a pass that read `lineCount` lines, all of the run, and wrote `output`.
PassOutcome kept(std::int32_t keptNodes, const std::string& output, std::int32_t lineCount) {
    const std::string values = "0 100 " + std::to_string(lineCount);
    return {keptNodes, {{"a.xyz", output}}, "", joined({stateCalls(), progressCalls(values, lineCount)})};
}

PassOutcome keptNothing(std::int32_t lineCount) {
    PassOutcome outcome = kept(0, "", lineCount);
    outcome.outputDirectory.clear();
    return outcome;
}

} // namespace

TEST(ClipNodeFile, copiesHeaderAndLinesInsideInOrder) {
    ClipPass pass;
    EXPECT_EQ(kept(3, "x;y;z\n5;5;1\n9;1;2\n1;9;3\n", 5), pass.run("x;y;z\n5;5;1\n11;5;0\n9;1;2\n5;-1;0\n1;9;3\n", 5));
}

TEST(ClipNodeFile, copiesLinesByteForByte) {
    ClipPass pass;
    const std::string lines = "  5.000 ;\t+5;  abc;\xFF \n5e0;5;\n1,5;7;\"text\";;;\n0x1;0;z\n5;5;" +
                              std::string("\0 zero", 6) + "\n5;5;\r3\n5;5;z;with;more;columns\n";
    EXPECT_EQ(kept(7, "x;y;z\n" + lines, 7), pass.run("x;y;z\n" + lines, 7));
}

TEST(ClipNodeFile, copiesHeaderUnchanged) {
    ClipPass pass;
    EXPECT_EQ(kept(1, "\xEF\xBB\xBFX,Y,Z,G\n5,5,1,2\n", 1), pass.run("\xEF\xBB\xBFX,Y,Z,G\n5,5,1,2\n", 1));
    EXPECT_EQ(kept(1, "x\ty\tz\n5\t5\t1\n", 1), pass.run("x\ty\tz\n5\t5\t1\n", 1));
    EXPECT_EQ(kept(1, "x y z\n5 5 1\n", 1), pass.run("x y z\n5 5 1\n", 1));
}

TEST(ClipNodeFile, removesCarriageReturnBeforeLineFeed) {
    ClipPass pass;
    EXPECT_EQ(kept(2, "x;y;z\n5;5;1\n6;6;2\r\n", 3), pass.run("x;y;z\r\n5;5;1\r\n5;5\r\n6;6;2\r\r\n", 3));
}

TEST(ClipNodeFile, dropsLinesThatDoNotParse) {
    ClipPass pass;
    EXPECT_EQ(kept(1, "x;y;z\n5;5;1\n", 9), pass.run("x;y;z\n\ntext\n5\n5;\n5;5\n5 5 1\n;5;5;1\nx;y;z\n5;5;1\n", 9));
    EXPECT_EQ(kept(2, "x y z\n5 5 \n5 5 1\n", 3), pass.run("x y z\n5 5\n5 5 \n5 5 1\n", 3));
}

TEST(ClipNodeFile, writesLineInSeveralPolygonsOnce) {
    ClipPass pass;
    pass.boundary = setOf({{{0, 0}, {10, 0}, {10, 10}, {0, 10}}, {{4, 4}, {20, 4}, {20, 20}, {4, 20}}});
    const std::string nodes = "x;y;z\n1;1;first\n5;5;both\n15;15;second\n1;15;none\n";
    const PassOutcome expected = kept(3, "x;y;z\n1;1;first\n5;5;both\n15;15;second\n", 4);
    EXPECT_EQ(expected, pass.run(nodes, 4));
    std::swap(pass.boundary.polygons[0], pass.boundary.polygons[1]);
    EXPECT_EQ(expected, pass.run(nodes, 4));
}

TEST(ClipNodeFile, keepsPointsOnOutline) {
    ClipPass pass;
    EXPECT_EQ(kept(2, "x;y;z\n10;10;corner\n0;5;edge\n", 3),
              pass.run("x;y;z\n10;10;corner\n0;5;edge\n10.0001;5;outside\n", 3));
}

TEST(ClipNodeFile, dropsPointsInHole) {
    ClipPass pass;
    pass.boundary = setOf({{{0, 0}, {10, 0}, {10, 10}, {0, 10}}, {{4, 4}, {6, 4}, {6, 6}, {4, 6}}});
    pass.boundary.polygons[0].childPolygons = {pass.boundary.polygons[1]};
    pass.boundary.polygons.pop_back();
    EXPECT_EQ(kept(1, "x;y;z\n1;1;1\n", 2), pass.run("x;y;z\n5;5;1\n1;1;1\n", 2));
}

TEST(ClipNodeFile, keepsPointsOnPolygonOfTwoVertices) {
    ClipPass pass;
    pass.boundary = setOf({{{0, 0}, {8, 0}}});
    EXPECT_EQ(kept(2, "x;y;z\n4;0;1\n8;0;2\n", 3), pass.run("x;y;z\n4;0;1\n8;0;2\n4;1;3\n", 3));
    EXPECT_EQ(1u, pass.boundary.polygons[0].edges.size());
    EXPECT_EQ(kept(1, "x;y;z\n4;0;1\n", 1), pass.run("x;y;z\n4;0;1\n", 1));
    EXPECT_EQ(1u, pass.boundary.polygons[0].edges.size());
}

TEST(ClipNodeFile, keepsNothingWithoutPolygons) {
    ClipPass pass;
    pass.boundary = BoundarySet();
    EXPECT_EQ(keptNothing(2), pass.run("x;y;z\n0;0;0\n5;5;1\n", 2));
}

TEST(ClipNodeFile, removesOutputWithoutKeptLines) {
    ClipPass pass;
    pass.directory.write("out/other.xyz", "stays");
    PassOutcome expected = keptNothing(2);
    expected.outputDirectory = {{"other.xyz", "stays"}};
    EXPECT_EQ(expected, pass.run("x;y;z\n11;5;1\n5;11;2\n", 2));
}

TEST(ClipNodeFile, replacesOrRemovesExistingOutput) {
    ClipPass pass;
    pass.directory.write("out/a.xyz", "the content of an earlier run, which is rather long\n");
    EXPECT_EQ(kept(1, "x;y;z\n5;5;1\n", 1), pass.run("x;y;z\n5;5;1\n", 1));
    EXPECT_EQ(keptNothing(1), pass.run("x;y;z\n11;5;1\n", 1));
}

TEST(ClipNodeFile, readsGivenNumberOfLines) {
    ClipPass pass;
    const std::string nodes = "x;y;z\n5;5;1\n6;6;2\n7;7;3\n";
    EXPECT_EQ(kept(3, nodes, 3), pass.run(nodes, 3));
    EXPECT_EQ(kept(2, "x;y;z\n5;5;1\n6;6;2\n", 2), pass.run(nodes, 2));
    EXPECT_EQ(kept(3, nodes, 6), pass.run(nodes, 6));
    EXPECT_EQ(keptNothing(2), pass.run("x;y;z\n", 2));
}

TEST(ClipNodeFile, dropsLastLineWithoutLineFeed) {
    ClipPass pass;
    EXPECT_EQ(kept(1, "x;y;z\n5;5;1\n", 1), pass.run("x;y;z\n5;5;1\n6;6;2", 1));
    // If the line count includes it, it is an ordinary line and keeps the carriage return at its end.
    EXPECT_EQ(kept(2, "x;y;z\n5;5;1\n6;6;2\r\n", 2), pass.run("x;y;z\n5;5;1\n6;6;2\r", 2));
    // It is not read again for the missing lines after it.
    EXPECT_EQ(kept(2, "x;y;z\n5;5;1\n6;6;2\n", 5), pass.run("x;y;z\n5;5;1\n6;6;2", 5));
}

TEST(ClipNodeFile, readsNoLineWithoutNodeLines) {
    ClipPass pass;
    pass.directory.write("in/a.xyz", "x;y;z\n5;5;1\n");
    const PassOutcome zero{0, {}, "", joined({stateCalls(), progressCalls("50 50 0", 0)})};
    EXPECT_EQ(zero, pass.run(0, 2.0, 4));
    const PassOutcome one{0, {}, "", joined({stateCalls(), progressCalls("50 25 -1", 0)})};
    EXPECT_EQ(one, pass.run(-1, 2.0, 4));
    const PassOutcome many{0, {}, "", joined({stateCalls(), progressCalls("-0 214748364800 -2147483648", 0)})};
    EXPECT_EQ(many, pass.run(-2147483647 - 1, 0.0, -1));
}

TEST(ClipNodeFile, acceptsHeaderWithoutLineFeed) {
    ClipPass pass;
    pass.directory.write("in/a.xyz", "x;y;z");
    const PassOutcome expected{0, {}, "", joined({stateCalls(), progressCalls("0 -25 -1", 0)})};
    EXPECT_EQ(expected, pass.run(-1, 0.0, 4));
}

TEST(ClipNodeFile, sendsProgressRangeOfFile) {
    ClipPass pass;
    pass.directory.write("in/a.xyz", "x;y;z\n5;5;1\n6;6;2\n");
    const PassOutcome half{
        2, {{"a.xyz", "x;y;z\n5;5;1\n6;6;2\n"}}, "", joined({stateCalls(), progressCalls("37.5 62.5 2", 2)})};
    EXPECT_EQ(half, pass.run(2, 3.0, 8));
}

TEST(ClipNodeFile, acceptsMoreLinesDoneThanIntegerHolds) {
    ClipPass pass;
    pass.directory.write("in/a.xyz", "x;y;z\n1;1;5\n");
    EXPECT_EQ(pass.run(1, 3e9, 1000000000).calls, joined({stateCalls(), progressCalls("300 300.00000009999997 1", 1)}));
}

TEST(ClipNodeFile, computesProgressRangeFromShareOfOneLine) {
    ClipPass pass;
    // Eleventh parts are not exact, so any other order of the operations changes the last digits.
    EXPECT_EQ(joined({stateCalls(), progressCalls("45.45454545454546 100.00000000000001 6", 6)}),
              (pass.directory.write("in/a.xyz", "x;y;z\n"), pass.run(6, 5.0, 11).calls));
}

TEST(ClipNodeFile, sendsInfiniteProgressWithoutLines) {
    ClipPass pass;
    pass.directory.write("in/a.xyz", "x;y;z\n5;5;1\n");
    EXPECT_EQ(joined({stateCalls(), progressCalls("nan nan 0", 0)}), pass.run(0, 0.0, 0).calls);
    EXPECT_EQ(joined({stateCalls(), progressCalls("nan -inf -1", 0)}), pass.run(-1, 0.0, 0).calls);
    EXPECT_EQ(joined({stateCalls(), progressCalls("-inf nan 1", 1)}), pass.run(1, -1.0, 0).calls);
    const PassOutcome first{
        1, {{"a.xyz", "x;y;z\n5;5;1\n"}}, "", joined({stateCalls(), progressCalls("nan inf 1", 1)})};
    EXPECT_EQ(first, pass.run(1, 0.0, 0));
}

TEST(ClipNodeFile, sendsFallingRangeIfTotalWrapsAround) {
    ClipPass pass;
    pass.directory.write("in/a.xyz", "x;y;z\n5;5;1\n");
    EXPECT_EQ(joined({stateCalls(), progressCalls("-25 -50 1", 1)}), pass.run(1, 1.0, -4).calls);
}

TEST(ClipNodeFile, translatesStateWithoutFormatting) {
    const GeneratedLocale german("de.utf8", {{"Clipping elevation data...", "Höhendaten {0} {"}});
    ClipPass pass;
    PassOutcome expected = kept(1, "x;y;z\n5;5;1\n", 1);
    expected.calls[0] = "StateMessage 1 true Höhendaten {0} {";
    EXPECT_EQ(expected, pass.run("x;y;z\n5;5;1\n", 1));
}

TEST(ClipNodeFile, readsClassicNotationInEveryLanguage) {
    for (const char* const name : {"de.utf8", "de_DE.utf8", "fr_FR.utf8"}) {
        const GeneratedLocale generated(name);
        ClipPass pass;
        // With a decimal comma the first would be at 10.9 and the second at 1500.
        EXPECT_EQ(kept(2, "x;y;z\n10,9;5;1\n1.500;5;2\n", 3), pass.run("x;y;z\n10,9;5;1\n1.500;5;2\n10.9;5;3\n", 3));
    }
}

} // namespace vadelclip
