#include "text/number_text.hpp"

#include "support/catalogue_support.hpp"
#include "support/plain_text_support.hpp"
#include "support/workload.hpp"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace vadelclip {

namespace {

class RandomTexts {
public:
    explicit RandomTexts(std::uint64_t seed) : random(seed) {}

    std::string next() {
        text.clear();
        // Long texts are rare because they take most of the time.
        switch (below(32)) {
        case 0:
        case 1:
            addJunk(1 + below(12));
            break;
        case 2:
        case 3:
            addExact(std::bit_cast<double>(random()), "%.17g");
            break;
        case 4:
        case 5:
            addHalfway();
            break;
        case 6:
            addNumber(20 + below(400), below(400));
            break;
        case 7:
            addNumber(below(3), 280 + below(100));
            break;
        case 8:
            addNumber(300 + below(20), below(3));
            break;
        case 9:
        case 10:
            addBlanks();
            addNumber(1 + below(3), below(6));
            text += below(2) == 0 ? 'e' : 'E';
            addNumber(below(4), 0);
            break;
        default:
            if (below(4) == 0) {
                addBlanks();
            }
            addNumber(below(10), below(14));
        }
        addTail();
        return text;
    }

private:
    std::uint64_t below(std::uint64_t limit) { return random() % limit; }

    void addDigits(std::uint64_t count) {
        while (count > 0) {
            std::uint64_t drawn = random();
            for (int digits = 16; digits > 0 && count > 0; --digits, --count) {
                text += static_cast<char>('0' + drawn % 10);
                drawn /= 10;
            }
        }
    }

    void addNumber(std::uint64_t whole, std::uint64_t fraction) {
        if (below(3) == 0) {
            text += below(2) == 0 ? '-' : '+';
        }
        addDigits(whole);
        if (fraction > 0 || below(8) == 0) {
            text += '.';
        }
        addDigits(fraction);
    }

    void addExact(double value, const char* format) {
        char digits[800];
        std::snprintf(digits, sizeof digits, format, value);
        text += digits;
    }

    /// Appends a decimal exactly between two doubles, or next to it, so that the last digit decides the rounding.
    void addHalfway() {
        const auto mantissa = static_cast<double>((std::uint64_t{1} << 52) + random() % (std::uint64_t{1} << 52));
        const auto exponent = static_cast<int>(below(120)) - 100;
        const auto doubled = static_cast<long double>(mantissa) * 2.0L + 1.0L;
        char digits[800];
        std::snprintf(digits, sizeof digits, "%.70Lf", std::ldexp(doubled, exponent - 1));
        text = digits;
        if (below(2) == 0) {
            text += static_cast<char>('0' + below(10));
        }
    }

    void addBlanks() {
        static const std::string blanks = " \t\n\v\f\r";
        for (std::uint64_t count = below(4); count > 0; --count) {
            text += blanks[below(blanks.size())];
        }
    }

    void addJunk(std::uint64_t count) {
        static const std::string bytes = std::string("0123456789+-.,eExXinfa; \t'") + '\0' + "\xEF\xA0";
        for (; count > 0; --count) {
            text += bytes[below(bytes.size())];
        }
    }

    void addTail() {
        switch (below(4)) {
        case 0:
            break;
        case 1:
            addJunk(1 + below(3));
            break;
        default:
            text += ';';
        }
    }

    std::mt19937_64 random;
    std::string text;
};

testing::AssertionResult agrees(PlainNumberReader& plain, std::string_view text) {
    const NumberReading expected = plain.read(std::string(text));
    const NumberReading got = readNumber(text);
    if (sameReading(expected, got)) {
        return testing::AssertionSuccess();
    }
    return testing::AssertionFailure() << testing::PrintToString(text) << "\nexpected " << describe(expected)
                                       << "\ngot      " << describe(got);
}

void expectSameReading(std::string_view text) {
    PlainNumberReader plain;
    EXPECT_TRUE(agrees(plain, text));
}

void compareRandomTexts(std::uint64_t seed, int count) {
    RandomTexts texts(seed);
    PlainNumberReader plain;
    for (int i = 0; i < count; ++i) {
        ASSERT_TRUE(agrees(plain, texts.next()));
    }
}

struct Example {
    const char* text;
    double value;
    std::size_t length;
};

} // namespace

TEST(NumberText, readsAsFarAsStream) {
    const Example examples[] = {
        {"1", 1.0, 1},
        {"+1;", 1.0, 2},
        {"-0;", -0.0, 2},
        {"00012 ", 12.0, 5},
        {" \t\n\v\f\r5;", 5.0, 7},
        {"5.;", 5.0, 2},
        {".5;", 0.5, 2},
        {"-.5;", -0.5, 3},
        {"1.2.3", 1.2, 3},
        {"1,5", 1.0, 1},
        {"0x10", 0.0, 1},
        {"1e+5x", 100000.0, 4},
        {"1.e5;", 100000.0, 4},
        {"9007199254740993;", 9007199254740992.0, 16},
        {"18446744073709551617;", 18446744073709551616.0, 20}, // 2^64 + 1 wraps around to 1
        {"0.0000000000000000000001;", 1e-22, 24},
        {"0.1234567890123456789012345;", 0.1234567890123456789012345, 27},
        {"2e-324;", 0.0, 6},
    };
    for (const Example& example : examples) {
        const NumberReading expected{example.value, example.length};
        EXPECT_TRUE(sameReading(expected, readNumber(example.text)))
            << example.text << ' ' << describe(readNumber(example.text));
    }
}

TEST(NumberText, failsWhereStreamFails) {
    for (const char* const text :
         {"", "  ", "-", "+", ".", "-.;", "+-5", "- 5", "1e", "1e;", "1e+;", "1e 5", ".e5;", "inf", "nan",
          "\xEF\xBB\xBF"
          "1;",
          "1e999", "-1e999;", "abc"}) {
        EXPECT_TRUE(readNumber(text).failed()) << text;
    }
}

TEST(NumberText, agreesOnAnyNumberOfDigitsAfterPoint) {
    for (std::size_t digits = 1; digits <= 25; ++digits) {
        for (const char* const last : {"1", "7", "123", "9007199254740992"}) {
            const std::string end(last);
            if (end.size() <= digits) {
                const std::string fraction = std::string(digits - end.size(), '0') + end;
                expectSameReading("0." + fraction + ";");
                expectSameReading("." + fraction);
            }
        }
    }
}

TEST(NumberText, agreesOnTextsCutAtEveryByte) {
    for (const char* const blanks : {"", " ", "\t", " \t\n\v\f\r", "            "}) {
        for (const char* const sign : {"", "-", "+", "- ", "+-"}) {
            for (const char* const number :
                 {"7", "1234567.25;", "12345678", "123456789.123456789;", "382250.2917130358;", "9007199254740992.5;",
                  "9007199254740993;", "1234567890123456789", "12345678901234567890", "0.0000000000000000001;", ".5.5",
                  "5..5", "1.5e", "1.5E+10;", "1e-5x", "00000000000000000000001;", "12/5", "12:5", "1 2"}) {
                const std::string text = std::string(blanks) + sign + number;
                for (std::size_t length = 0; length <= text.size(); ++length) {
                    // A view, so that the bytes after the cut exist but must not be read.
                    const std::string_view cut = std::string_view(text).substr(0, length);
                    expectSameReading(cut);
                    // Without bytes after the cut, sanitizers find any byte that is read there.
                    const std::vector<char> copy(cut.begin(), cut.end());
                    expectSameReading({copy.data(), copy.size()});
                }
            }
        }
    }
}

TEST(NumberText, agreesOnEachByteNextToDigit) {
    for (int value = 0; value < 256; ++value) {
        const std::string byte(1, static_cast<char>(value));
        expectSameReading(byte + "5;");
        expectSameReading("5" + byte + "5");
        expectSameReading("5e1" + byte + "5");
    }
}

TEST(NumberText, agreesOnEachByteAtEachPlaceOfFraction) {
    for (std::size_t length = 1; length <= 20; ++length) {
        for (std::size_t place = 0; place < length; ++place) {
            for (int value = 0; value < 256; ++value) {
                std::string fraction = std::string("12345678901234567890").substr(0, length);
                fraction[place] = static_cast<char>(value);
                expectSameReading("7." + fraction);
            }
        }
    }
}

TEST(NumberText, agreesOnEachByteAtEachPlaceOfInteger) {
    for (std::size_t length = 1; length <= 10; ++length) {
        for (std::size_t place = 0; place <= length; ++place) {
            for (int value = 0; value < 256; ++value) {
                std::string integer = std::string("9382716504").substr(0, length) + ".";
                integer[place] = static_cast<char>(value);
                expectSameReading(integer + "25;7");
            }
        }
    }
}

TEST(NumberText, agreesOnRandomTexts) {
    compareRandomTexts(1, workload(25000000));
}

TEST(NumberText, agreesOnOtherRandomTexts) {
    compareRandomTexts(2, workload(25000000));
}

TEST(NumberText, agreesUnderGeneratedGermanLocale) {
    const GeneratedLocale german("de_DE.utf8");
    compareRandomTexts(3, workload(1000000));
}

} // namespace vadelclip
