#include "watch/check/line_figures.hpp"

#include "clip/node_line.hpp"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <string_view>

namespace vadelwatch {

namespace {

/// Returns true if the line, followed by another one, is plain.
bool isPlain(const std::string& line, char separator = ';', std::size_t maxColumns = 0) {
    const std::string text = line + "\n9;9;9\n" + std::string(plainLineReach, '\0');
    const char* const last = text.data() + line.size() + 6;
    const char* const end = endOfPlainLine(text.data(), last, separator, maxColumns);
    EXPECT_TRUE(end == nullptr || end == text.data() + line.size()) << line;
    return end != nullptr;
}

/// A processor without SSE2 finds no plain lines.
class PlainLine : public testing::Test {
protected:
    void SetUp() override {
#ifndef __SSE2__
        GTEST_SKIP() << "needs SSE2";
#endif
    }
};

} // namespace

TEST_F(PlainLine, hasTwoDecimalsWithSeparators) {
    for (const char* const line :
         {"1;2;3", "-12.5;-0.25;x", "382251.29;6354680.91;42.9475\r", "1;2;",
          "123456789.123456789;123456789.123456789012;1", "1;2;and a long remark that ends far beyond"}) {
        EXPECT_TRUE(isPlain(line)) << line;
    }
    EXPECT_TRUE(isPlain("1 2 3", ' '));
    EXPECT_TRUE(isPlain("1\t2\t3", '\t'));
}

TEST_F(PlainLine, isNothingElse) {
    for (const char* const line :
         {"", "1;2", ";2;3", "1;;3", "1,5;2;3", "a;2;3", " 1;2;3", "1e;2;3", "1;-;3", "1;.;3", "1.;2;3", "1;2.;3",
          "--1;2;3", "1-;2;3", "+1;2;3", "123456789.123456789123456;123456789.123456789123456;1"}) {
        EXPECT_FALSE(isPlain(line)) << line;
    }
    EXPECT_FALSE(isPlain("1- 2 3", ' '));
    EXPECT_FALSE(isPlain("1  2 3", ' '));
}

TEST_F(PlainLine, countsColumns) {
    EXPECT_TRUE(isPlain("1,2,3", ',', 4));
    EXPECT_TRUE(isPlain("1,2,3,4", ',', 4));
    EXPECT_FALSE(isPlain("1,5,2,5,3", ',', 4));
}

TEST_F(PlainLine, alwaysParses) {
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
            if (isPlain(line, separator)) {
                ++plain;
                ASSERT_TRUE(vadelclip::readNodeLine(line, separator, point)) << line;
            }
        }
    }
    EXPECT_GT(plain, 1000);
}

} // namespace vadelwatch
