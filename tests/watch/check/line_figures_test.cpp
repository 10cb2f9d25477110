#include "watch/check/line_figures.hpp"

#include "clip/node_line.hpp"

#include "support/file_support.hpp"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <string_view>

namespace vadelwatch {

using vadelclip::TemporaryDirectory;

namespace {

LineFigures figuresOf(const std::string& content) {
    const TemporaryDirectory directory;
    return readLineFigures(directory.write("a", content), false).value();
}

std::string repeated(const std::string& text, int times) {
    std::string all;
    for (int i = 0; i < times; ++i) {
        all += text;
    }
    return all;
}

} // namespace

TEST(LineFigures, countsLinesThatDoNotParse) {
    for (const unsigned int before : {0U, 3000U}) {
        const LineFigures figures =
            figuresOf("x;y;z\r\n" + repeated("1;1;1\r\n", static_cast<int>(before)) + "1;1;1\r\n2;2\r\n\r\n3;3;3\r\n4");
        EXPECT_EQ(before + 4U, figures.count.nodeLines());
        EXPECT_EQ(2U, figures.unparsable.count);
        EXPECT_EQ(before + 3U, figures.unparsable.first);
        EXPECT_EQ(0U, figures.decimalCommas.count);
        EXPECT_FALSE(figures.count.endsInLineFeed);
    }
}

TEST(LineFigures, dropsCarriageReturnOfLineEndOnly) {
    // Something must follow y; the first carriage return is such a byte, the second is part of the line end.
    EXPECT_EQ(1U, figuresOf("x;y;z\n1;1\r\n").unparsable.count);
    EXPECT_EQ(0U, figuresOf("x;y;z\n1;1\r\r\n").unparsable.count);
}

TEST(LineFigures, findsDecimalCommas) {
    struct Case {
        std::string content;
        std::uint64_t count;
        std::uint64_t first;
    };
    for (const Case& each :
         {Case{"x;y;z\n1;1;1\n387000,5;5638000,5;1\n1;2,5;1\n", 2, 3}, Case{"x;y;z\n1;1;1,5\n1, 2;3 ,;4\n", 0, 0},
          Case{"x y z\n387000,5 5638000,5 1\n", 1, 2}, Case{"x,y,z\n1,2,3\n1,2,3,4\n387000,5,5638000,5,1\n", 1, 4},
          Case{"x,y,z,g\n1,2,3,4,5\n1,5,2,5,3,4\n", 1, 3},
          Case{"x,y,z\n" + repeated("1,2,3\n", 2000) + "387000,5,5638000,5,1\n", 1, 2002}}) {
        const LineFigures figures = figuresOf(each.content);
        EXPECT_EQ(each.count, figures.decimalCommas.count) << each.content;
        EXPECT_EQ(each.first, figures.decimalCommas.first) << each.content;
    }
}

TEST(LineFigures, countsTheSameInSampledLines) {
    const std::string content = "x;y;z\n" + repeated("1;1;1\n2.5;-2.5;2\nbad\n3,5;3;3\n+4;4;4\n5;5\n", 20000);
    const LineFigures figures = figuresOf(content);
    EXPECT_EQ(120000U, figures.count.nodeLines());
    EXPECT_EQ(40000U, figures.unparsable.count);
    EXPECT_EQ(4U, figures.unparsable.first);
    EXPECT_EQ(20000U, figures.decimalCommas.count);
    EXPECT_EQ(content.size(), figures.count.bytes);
}

TEST(LineFigures, hasExtentOfFirstLinesAndOfSample) {
    const std::string few = "x;y;z\n" + repeated("1;2;1\n", 998) + "-9;8;1\n";
    EXPECT_FALSE(figuresOf(few).isSampled);
    const MapExtent extent = figuresOf(few).positions;
    EXPECT_EQ(-9.0, extent.minX);
    EXPECT_EQ(1.0, extent.maxX);
    EXPECT_EQ(2.0, extent.minY);
    EXPECT_EQ(8.0, extent.maxY);
    const LineFigures one = figuresOf(few + "70;2;1\n" + repeated("1;2;1\n", 100));
    EXPECT_TRUE(one.isSampled);
    EXPECT_EQ(1.0, one.positions.maxX);
    EXPECT_EQ(70.0, figuresOf(few + repeated("70;2;1\n", 64)).positions.maxX);
    EXPECT_EQ(70.0, figuresOf(few + " 70;2;1\n").positions.maxX);
    EXPECT_TRUE(isEmpty(figuresOf("x;y;z\nbad\n").positions));
}

TEST(LineFigures, readsVeryLongLines) {
    const std::string longText(3U << 20U, 'a');
    const LineFigures figures = figuresOf("x;y;z\n1;1;" + longText + "\n" + longText + "\n1;1;1\n");
    EXPECT_EQ(3U, figures.count.nodeLines());
    EXPECT_EQ(1U, figures.unparsable.count);
    EXPECT_EQ(3U, figures.unparsable.first);
}

TEST(LineFigures, needHeader) {
    const TemporaryDirectory directory;
    EXPECT_FALSE(readLineFigures(directory.write("a", "remark\n"), false));
    EXPECT_FALSE(readLineFigures(directory.pathOf("none"), false));
    EXPECT_FALSE(readLineFigures(directory.write("b", "x;y;z\n"), true));
}

TEST(PlainLine, hasTwoDecimalsWithSeparators) {
    for (const char* const line :
         {"1;2;3", "-12.5;-0.25;x", "382251.29;6354680.91;42.9475\r", "1;2;",
          "123456789.123456789;123456789.123456789012;1", "1;2;and a long remark that ends far after the numbers"}) {
        EXPECT_TRUE(isPlainLine(line, ';')) << line;
    }
    EXPECT_TRUE(isPlainLine("1 2 3", ' '));
    EXPECT_TRUE(isPlainLine("1\t2\t3", '\t'));
}

TEST(PlainLine, isNothingElse) {
    for (const char* const line :
         {"",          "1;2",    ";2;3",    "1;;3",   "1,5;2;3",
          "a;2;3",     " 1;2;3", "1e;2;3",  "1;-;3",  "1;.;3",
          "1.;2;3",    "1;2.;3", "--1;2;3", "1-;2;3", "+1;2;3",
          "1.2.3;4;5", "-",      "1.",      "1;-",    "123456789.123456789123456;123456789.123456789123456;1"}) {
        EXPECT_FALSE(isPlainLine(line, ';')) << line;
    }
    EXPECT_FALSE(isPlainLine("1- 2 3", ' '));
    EXPECT_FALSE(isPlainLine("1  2 3", ' '));
}

TEST(PlainLine, alwaysParses) {
    constexpr std::string_view bytes = "0123456789....---,;; \te\r+";
    std::mt19937 random(7);
    int plain = 0;
    for (int i = 0; i < 300000; ++i) {
        std::string line(random() % 14, ' ');
        for (char& byte : line) {
            byte = bytes[random() % bytes.size()];
        }
        for (const char separator : {';', ',', ' ', '\t'}) {
            vadelclip::Point2D point{};
            if (isPlainLine(line, separator)) {
                ++plain;
                ASSERT_TRUE(vadelclip::readNodeLine(line, separator, point)) << line;
            }
        }
    }
    EXPECT_GT(plain, 1000);
}

} // namespace vadelwatch
