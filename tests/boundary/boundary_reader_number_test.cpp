// Numbers in a boundary file, in every language.
#include "boundary/boundary_reader.hpp"

#include "support/boundary_file_support.hpp"
#include "support/boundary_support.hpp"
#include "support/catalogue_support.hpp"
#include "support/words.hpp"

#include <gtest/gtest.h>
#include <pugixml.hpp>

#include <functional>

namespace vadelclip {

namespace {

struct NumberCase {
    std::string text;
    double value;
};

const std::vector<NumberCase> goodNumbers = {
    {"1.5", 1.5},
    {" 1.5", 1.5},
    {"\n1.5", 1.5},
    {"\r\n\t\v\f 1.5", 1.5},
    {"1.5abc", 1.5},
    {"1.5&quot;", 1.5},
    {"1.5 2.5", 1.5},
    {"+1.5", 1.5},
    {"-.5", -0.5},
    {".5", 0.5},
    {"5.", 5},
    {"-0", -0.0},
    {"007", 7},
    {"1e3", 1000},
    {"1E+3", 1000},
    {"1.e-3x", 0.001},
    {"1,5", 1},
    {"1&#46;5", 1},
    {"1.000.000,5", 1},
    {"1'000", 1},
    {"1_000", 1},
    {"0x1F", 0},
    {"1.5.5", 1.5},
    {"1-2", 1},
    {"12345678.90123456789", 12345678.90123456789},
    {"0.1", 0.1},
    {"9007199254740993", 9007199254740992},
    {"179769313486231570000000000000000000000e270", 1.7976931348623157e308},
    {"2.2250738585072011e-308", 2.2250738585072011e-308},
    {"4.9e-324", 4.9e-324},
    // The largest double is 1.797693134862315708e308. A text up to half a step above it rounds to it.
    {"1.7976931348623158e308", 1.7976931348623157e308},
    {"1e-999", 0},
    {"1e-99999999999999999999", 0},
};

const std::string noBreakSpace = "\xC2\xA0";
const std::string minusSign = "\xE2\x88\x92";
const std::string arabicOne = "\xD9\xA1";

std::vector<std::string> badNumbers() {
    std::vector<std::string> texts =
        words("abc x1 &#49; ,5 - + . -. +-5 --5 e5 .e5 1e 1e+ 1ex nan NaN inf -inf (1) #1 1e999 -1e999 "
              "1.797693134862315808e308");
    for (const std::string& text : {std::string(), std::string(" "), std::string("- 5"), noBreakSpace + "1",
                                    byteOrderMark + "1", minusSign + "5", arabicOne}) {
        texts.push_back(text);
    }
    return texts;
}

const std::vector<std::pair<std::string, std::string>> goodIds = {
    {"7", "7"},
    {" 7", "7"},
    {"\r\n\t7", "7"},
    {"+7", "7"},
    {"7.9", "7"},
    {"7abc", "7"},
    {"7 8", "7"},
    {"0x1F", "0"},
    {"-3", "-3"},
    {"010", "10"},
    {"1e5", "1"},
    {"1,000", "1"},
    {"1.000", "1"},
    {"-0", "0"},
    {"7&#56;", "7"},
    {"1234567", "1234567"},
    {"2147483647", "2147483647"},
    {"-2147483648", "-2147483648"},
};

const std::vector<std::string> badIds = {"",
                                         " ",
                                         "abc",
                                         "a7",
                                         "-",
                                         "+",
                                         ".5",
                                         "- 7",
                                         "+-7",
                                         "#7",
                                         "&#55;",
                                         "2147483648",
                                         "-2147483649",
                                         "99999999999999999999",
                                         noBreakSpace + "7"};

/// Runs a check in the classic locale, which "en" uses, and in generated ones, which all other languages use.
void inEveryLanguage(const std::function<void()>& check) {
    check();
    for (const char* const name : {"de_DE.utf8", "de.utf8", "fr_FR.utf8"}) {
        SCOPED_TRACE(name);
        const GeneratedLocale locale(name);
        ASSERT_NE(std::locale::classic(), std::locale());
        check();
    }
}

std::string polygonOf(const std::string& id, const std::string& x, const std::string& y) {
    return inBoundaries("<polygon id=\"" + id + "\"><point x=\"" + x + "\" y=\"" + y + "\"/></polygon>");
}

void expectError(const std::string& error, const std::string& bytes) {
    SCOPED_TRACE(bytes);
    expectFailed(error, readBoundaryBytes(bytes));
}

void checkGoodNumbers() {
    for (const NumberCase& number : goodNumbers) {
        expectRead({{{number.value, 9}}}, polygonOf("1", number.text, "9"));
        expectRead({{{9, number.value}}}, polygonOf("1", "9", number.text));
    }
}

void checkBadNumbers() {
    for (const std::string& number : badNumbers()) {
        expectError("Cannot read point 0 in polygon 1", polygonOf("1", number, "9"));
        expectError("Cannot read point 0 in polygon 1", polygonOf("1", "9", number));
    }
}

/// The id is not stored. The message about a bad point shows it.
void checkIds() {
    for (const auto& [text, number] : goodIds) {
        expectError("Cannot read point 0 in polygon " + number, polygonOf(text, "1", ""));
        expectRead({{{1, 2}}}, polygonOf(text, "1", "2"));
    }
    for (const std::string& text : badIds) {
        expectError("Cannot find the id of a polygon in a group of type 0", polygonOf(text, "1", "2"));
    }
}

} // namespace

TEST(BoundaryReaderNumbers, readsLeadingNumberInEveryLanguage) {
    inEveryLanguage(checkGoodNumbers);
}

TEST(BoundaryReaderNumbers, refusesOtherTextsInEveryLanguage) {
    inEveryLanguage(checkBadNumbers);
}

TEST(BoundaryReaderNumbers, readsIdsAs32BitIntegersInEveryLanguage) {
    inEveryLanguage(checkIds);
}

TEST(BoundaryReaderNumbers, printsPlainNumbersInEveryLanguage) {
    std::string points;
    for (int point = 0; point < 12345; ++point) {
        points += "<point x=\"1\" y=\"2\"/>";
    }
    inEveryLanguage([&points] {
        expectFailed("Cannot read point 12345 in polygon 1234567",
                     readBoundaryBytes(inBoundaries("<polygon id=\"1234567\">" + points + "<point/></polygon>")));
    });
}

TEST(ReadNumericAttribute, readsFirstAttributeOfName) {
    pugi::xml_document document;
    ASSERT_TRUE(document.load_string("<point x='1.5abc' x='7' y=' -2e2'/>"));
    double value = 0;
    EXPECT_TRUE(readNumericAttribute(document.child("point"), "x", value));
    EXPECT_EQ(1.5, value);
    EXPECT_TRUE(readNumericAttribute(document.child("point"), "y", value));
    EXPECT_EQ(-200.0, value);
}

TEST(ReadNumericAttribute, failsWithoutNodeAttributeOrNumber) {
    pugi::xml_document document;
    ASSERT_TRUE(document.load_string("<point x='' y='a' z='1e999'/>"));
    double value = 0;
    EXPECT_FALSE(readNumericAttribute(pugi::xml_node(), "x", value));
    EXPECT_FALSE(readNumericAttribute(document.child("other"), "x", value));
    EXPECT_FALSE(readNumericAttribute(document.child("point"), "X", value));
    EXPECT_FALSE(readNumericAttribute(document.child("point"), "x", value));
    EXPECT_FALSE(readNumericAttribute(document.child("point"), "y", value));
    EXPECT_FALSE(readNumericAttribute(document.child("point"), "z", value));
}

} // namespace vadelclip
