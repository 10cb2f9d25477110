#include "clip/node_line.hpp"

#include "support/catalogue_support.hpp"
#include "support/words.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cstdint>
#include <limits>
#include <memory>
#include <string>
#include <vector>

namespace vadelclip {

namespace {

/// Returns the outcome of one line as a text: both numbers to the last bit, or "dropped".
std::string outcome(const std::string& line, char separator) {
    Point2D point{};
    if (!readNodeLine(line, separator, point)) {
        return "dropped";
    }
    return std::to_string(std::bit_cast<std::uint64_t>(point.x)) + "|" +
           std::to_string(std::bit_cast<std::uint64_t>(point.y));
}

std::string numbers(double x, double y) {
    return std::to_string(std::bit_cast<std::uint64_t>(x)) + "|" + std::to_string(std::bit_cast<std::uint64_t>(y));
}

constexpr const char* dropped = "dropped";

struct NumberAtFront {
    std::string text;
    double value;
};

// Texts that are read as a number if anything follows them, and the number.
const std::vector<NumberAtFront>& numbersAtFront() {
    static const std::vector<NumberAtFront> cases = {
        {"1", 1.0},
        {"+1", 1.0},
        {"-1", -1.0},
        {"00012", 12.0},
        {"-0", -0.0},
        {"5.", 5.0},
        {".5", 0.5},
        {"-.5", -0.5},
        {"+.5", 0.5},
        {"1e5", 100000.0},
        {"1E5", 100000.0},
        {"1e+5", 100000.0},
        {"1.e5", 100000.0},
        {"1e-2", 0.01},
        // Rounded to nearest, ties to even.
        {"0.1", 0x1.999999999999ap-4},
        {"9007199254740993", 0x1p53},
        {"9007199254740995", 0x1.0000000000002p53},
        {"0.30000000000000004", 0x1.3333333333334p-2},
        {"123456789012345678901234567890", 0x1.8ee90ff6c373ep96},
        {"1.7976931348623157e308", std::numeric_limits<double>::max()},
        // A number that is too small is no failure, but one that is too large is.
        {"1e-999", 0.0},
        {"2e-324", 0.0},
        {"4.9e-324", 0x1p-1074},
        {"1e-310", 0x0.012688b70e62bp-1022},
        // A number ends at the first byte that cannot continue it. The rest is skipped like other text before the separator.
        {"1e+5x", 100000.0},
        {"0x10", 0.0},
        {"1'000", 1.0},
        {"1d5", 1.0},
        {"1f", 1.0},
        {"1_0", 1.0},
        {"1.2.3", 1.2},
        {"1.234.567", 1.234},
        {"1-2", 1.0},
        {std::string("1\0002", 3), 1.0},
        {"1\xC2\xA0", 1.0},
    };
    return cases;
}

std::vector<std::string> noNumbersAtFront() {
    std::vector<std::string> cases =
        words("- + . -. +-5 --5 1e 1e+ 1e- 1ee5 1e.5 .e5 e5 inf -inf nan NaN INF abc infinity "
              "1e999 -1e999 1.8e308 $1 x \"1\" (1) #1 _1 '1 \xEF\xBB\xBF+1 \xD9\xA1");
    for (const std::string& text : {std::string(), std::string("- 5"), std::string("1e 5"), std::string("\xC2\xA0+1"),
                                    std::string("\xE2\x88\x92+1"), std::string("\0001", 2), std::string(1000, '9')}) {
        cases.push_back(text);
    }
    return cases;
}

/// Every test runs under the classic locale (no name) and under generated ones.
class NodeLine : public testing::TestWithParam<const char*> {
protected:
    void SetUp() override {
        if (GetParam() != std::string()) {
            generated = std::make_unique<GeneratedLocale>(GetParam());
        }
    }

private:
    std::unique_ptr<GeneratedLocale> generated;
};

std::string caseName(const testing::TestParamInfo<const char*>& info) {
    std::string name = info.param == std::string() ? "classic" : "generated_" + std::string(info.param);
    name.erase(std::remove(name.begin(), name.end(), '.'), name.end());
    return name;
}

INSTANTIATE_TEST_SUITE_P(Locales, NodeLine, testing::Values("", "de.utf8", "de_DE.utf8", "fr_FR.utf8", ".utf8"),
                         caseName);

} // namespace

TEST_P(NodeLine, readsThreeNumbersWithEachSeparator) {
    EXPECT_EQ(numbers(1.5, -2.25), outcome("1.5;-2.25;3", ';'));
    EXPECT_EQ(numbers(1.5, -2.25), outcome("1.5,-2.25,3", ','));
    EXPECT_EQ(numbers(1.5, -2.25), outcome("1.5\t-2.25\t3", '\t'));
    EXPECT_EQ(numbers(1.5, -2.25), outcome("1.5 -2.25 3", ' '));
}

TEST_P(NodeLine, ignoresBytesAfterY) {
    for (const char* const rest :
         {";", ";3", ";;;", ";abc", ";3;4;5;6", " ", "\t", "\r", "x", ",", "-", "\"", ";nan"}) {
        EXPECT_EQ(numbers(1, 2), outcome(std::string("1;2") + rest, ';')) << rest;
    }
    EXPECT_EQ(numbers(1, 2), outcome(std::string("1;2\0", 4), ';'));
}

TEST_P(NodeLine, dropsLineThatEndsAfterY) {
    for (const char* const y : {"2", "+2", "2.", ".5", "2.5", "1e5", "-0", "00012"}) {
        EXPECT_EQ(dropped, outcome(std::string("1;") + y, ';')) << y;
        EXPECT_EQ(dropped, outcome(std::string("1 ") + y, ' ')) << y;
    }
    EXPECT_EQ(dropped, outcome("1.0 2.0", ' '));
    EXPECT_EQ(numbers(1, 2), outcome("1.0 2.0 ", ' '));
    EXPECT_EQ(numbers(1, 2), outcome("1.0 2.0 3.0", ' '));
}

TEST_P(NodeLine, dropsLineWithoutY) {
    for (const char* const line : {"", " ", "\t", "\r", "1", "1.5", " 1", "1 ", "1;", "1; ", "1;;", "1;;2;3", ";",
                                   ";1;2;3", ";;", "text", "x;y;z", "1;x;2", "total;1;2"}) {
        EXPECT_EQ(dropped, outcome(line, ';')) << "'" << line << "'";
    }
}

TEST_P(NodeLine, readsEveryFormOfX) {
    for (const NumberAtFront& number : numbersAtFront()) {
        EXPECT_EQ(numbers(number.value, 7), outcome(number.text + ";7;z", ';')) << number.text;
        EXPECT_EQ(numbers(number.value, 7), outcome(number.text + "\t7\tz", '\t')) << number.text;
    }
}

TEST_P(NodeLine, readsEveryFormOfY) {
    for (const NumberAtFront& number : numbersAtFront()) {
        EXPECT_EQ(numbers(7, number.value), outcome("7;" + number.text + ";z", ';')) << number.text;
        EXPECT_EQ(numbers(7, number.value), outcome("7 " + number.text + " z", ' ')) << number.text;
    }
    // Here only the rest of the text follows y, and it is enough.
    EXPECT_EQ(numbers(7, 0), outcome("7;0x10", ';'));
    EXPECT_EQ(numbers(7, 1), outcome("7;1,5", ';'));
    EXPECT_EQ(numbers(7, 1), outcome("7;1f", ';'));
}

TEST_P(NodeLine, dropsLineWithTextThatIsNotNumber) {
    for (const std::string& text : noNumbersAtFront()) {
        EXPECT_EQ(dropped, outcome(text + ";7;z", ';')) << text;
        EXPECT_EQ(dropped, outcome("7;" + text + ";z", ';')) << text;
        EXPECT_EQ(dropped, outcome("7;" + text, ';')) << text;
    }
}

TEST_P(NodeLine, neverReadsCommaAsDecimalPoint) {
    EXPECT_EQ(numbers(1, 7), outcome("1,5;7,5;z", ';'));
    EXPECT_EQ(numbers(1, 7), outcome("1,000;7;z", ';'));
    EXPECT_EQ(numbers(1, 5), outcome("1,5,7,5", ','));
    EXPECT_EQ(numbers(1, 0), outcome("1,000,7", ','));
}

TEST_P(NodeLine, skipsWhiteSpaceBeforeNumber) {
    EXPECT_EQ(numbers(1, 2), outcome("  1 ; 2 ;3", ';'));
    EXPECT_EQ(numbers(1, 2), outcome(" \t\n\v\f\r1; \t\n\v\f\r2;3", ';'));
    EXPECT_EQ(numbers(1, 2), outcome("  1    2    3", ' '));
    EXPECT_EQ(numbers(1, 2), outcome("1 \t 2 \t 3", '\t'));
}

TEST_P(NodeLine, skipsEmptyColumnsBetweenTabs) {
    // The first tab is skipped as white space, so the columns move up. Kept on purpose.
    EXPECT_EQ(numbers(5, 6), outcome("\t5\t6\t7", '\t'));
    EXPECT_EQ(numbers(5, 6), outcome("5\t\t6\t7", '\t'));
}

TEST_P(NodeLine, requiresSeparatorBetweenNumbers) {
    EXPECT_EQ(dropped, outcome("1 2 3", ';'));
    EXPECT_EQ(dropped, outcome("1,2,3", ';'));
    EXPECT_EQ(dropped, outcome("1;2;3", ','));
    EXPECT_EQ(dropped, outcome("1 2 3", '\t'));
    EXPECT_EQ(dropped, outcome("1;2;3", ' '));
    // With a space as separator, only the extraction separates the numbers: no separator is searched for.
    EXPECT_EQ(numbers(1, 2), outcome("1\t2\t3", ' '));
    EXPECT_EQ(numbers(1, -2), outcome("1-2 3", ' '));
    EXPECT_EQ(numbers(1.5, 0.5), outcome("1.5.5 3", ' '));
}

TEST_P(NodeLine, acceptsUpTo99BytesBeforeSeparator) {
    for (const char separator : {';', ',', '\t'}) {
        for (const char filler : {'a', ' ', '9', '\xFF', '\0'}) {
            // After a letter, so that digits are not part of x.
            const std::string start = std::string("1a") + std::string(97, filler);
            const std::string end = {separator, '2', separator, '3'};
            EXPECT_EQ(numbers(1, 2), outcome(start + end, separator));
            EXPECT_EQ(numbers(1, 2), outcome(start + filler + end, separator));
            EXPECT_EQ(dropped, outcome(start + filler + filler + end, separator));
        }
    }
    EXPECT_EQ(numbers(1, 2), outcome(std::string("1") + std::string(99, ' ') + ";2;", ';'));
    EXPECT_EQ(dropped, outcome(std::string("1") + std::string(100, ' ') + ";2;", ';'));
    EXPECT_EQ(dropped, outcome(std::string("1") + std::string(1000, 'a') + ";2;", ';'));
    EXPECT_EQ(dropped, outcome(std::string("1") + std::string(99, 'a'), ';'));
}

TEST_P(NodeLine, acceptsAnyNumberOfSpaces) {
    EXPECT_EQ(numbers(1, 2), outcome(std::string("1") + std::string(1000, ' ') + "2 3", ' '));
    EXPECT_EQ(numbers(1, 2), outcome(std::string("1;") + std::string(1000, ' ') + "2;3", ';'));
    EXPECT_EQ(numbers(1, 2), outcome(std::string(1000, ' ') + "1;2;3", ';'));
}

TEST_P(NodeLine, readsEachLineIndependently) {
    EXPECT_EQ(dropped, outcome("1;2", ';'));
    EXPECT_EQ(numbers(3, 4), outcome("3;4;5", ';'));
    EXPECT_EQ(dropped, outcome("", ';'));
    EXPECT_EQ(numbers(3, 4), outcome("3;4;5", ';'));
}

TEST_P(NodeLine, readsLongLines) {
    EXPECT_EQ(numbers(1, 2), outcome(std::string("1;2;") + std::string(1000000, 'z'), ';'));
    EXPECT_EQ(numbers(1, 2), outcome(std::string(1000, '0') + "1;2." + std::string(1000, '0') + ";", ';'));
}

} // namespace vadelclip
