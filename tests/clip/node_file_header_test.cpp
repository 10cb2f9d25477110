#include "clip/node_file_header.hpp"

#include "support/catalogue_support.hpp"
#include "support/console_support.hpp"
#include "support/expected_calls_support.hpp"
#include "support/recording_messages.hpp"
#include "support/words.hpp"

#include <gtest/gtest.h>

#include <cstdint>
#include <ostream>
#include <string>
#include <vector>

namespace vadelclip {

namespace {

const std::string separators = "\t ,;";

const std::string separatorText = "ERROR: separator must be either semikolon, comma, space or tab";
const std::string shapeText = "ERROR: Using the xyz format, the first header line must be one of x;y;z , X;Y;Z , "
                              "x;y;z;g , Y;Y;Z;G , while the separator (e.g. \";\" is variable";

/// The separator before a call, and after a call that has not written it.
constexpr char untouched = '?';

/// All results of the parser.
struct Verdict {
    bool accepted;
    char separator;
    std::int32_t nodeFormat;
    std::string errorText;

    bool operator==(const Verdict&) const = default;
};

std::ostream& operator<<(std::ostream& output, const Verdict& verdict) {
    return output << (verdict.accepted ? "accepted" : "rejected") << ", separator "
                  << static_cast<int>(static_cast<unsigned char>(verdict.separator)) << ", format "
                  << verdict.nodeFormat << ", '" << verdict.errorText << "'";
}

Verdict judge(const std::string& line) {
    // Values that no call returns.
    Verdict verdict{false, untouched, 99, "text of an earlier line"};
    verdict.accepted = readNodeFileHeader(line, verdict.separator, verdict.nodeFormat, verdict.errorText);
    return verdict;
}

Verdict accepted(char separator, std::int32_t nodeFormat) {
    return {true, separator, nodeFormat, ""};
}

Verdict rejected(char separator, const std::string& errorText) {
    return {false, separator, 0, errorText};
}

/// Returns "x;y;z" for "xyz" and ';'.
std::string header(const std::string& columns, char separator) {
    std::string line(1, columns[0]);
    for (std::size_t i = 1; i < columns.size(); ++i) {
        line += separator;
        line += columns[i];
    }
    return line;
}

} // namespace

TEST(NodeFileHeader, acceptsFourShapesWithFourSeparators) {
    for (const char separator : separators) {
        for (const std::string& start : {std::string(), byteOrderMark}) {
            EXPECT_EQ(accepted(separator, 1), judge(start + header("xyz", separator)));
            EXPECT_EQ(accepted(separator, 1), judge(start + header("XYZ", separator)));
            EXPECT_EQ(accepted(separator, 2), judge(start + header("xyzg", separator)));
            EXPECT_EQ(accepted(separator, 2), judge(start + header("XYZG", separator)));
        }
    }
}

TEST(NodeFileHeader, rejectsAnyOtherSeparator) {
    for (int byte = 0; byte < 256; ++byte) {
        const char separator = static_cast<char>(byte);
        const bool allowed = byte == 0x09 || byte == 0x20 || byte == 0x2C || byte == 0x3B;
        for (const std::string columns : {"xyz", "XYZ", "xyzg", "XYZG"}) {
            const std::int32_t nodeFormat = columns.size() == 3 ? 1 : 2;
            const Verdict expected = allowed ? accepted(separator, nodeFormat) : rejected(separator, separatorText);
            EXPECT_EQ(expected, judge(header(columns, separator))) << columns << " with byte " << byte;
            EXPECT_EQ(expected, judge(byteOrderMark + header(columns, separator))) << columns << " with byte " << byte;
        }
    }
}

TEST(NodeFileHeader, rejectsAnyOtherFirstByte) {
    for (int byte = 0; byte < 256; ++byte) {
        const char first = static_cast<char>(byte);
        const Verdict expected = first == 'x'   ? accepted(';', 1)
                                 : first == 'X' ? rejected(';', shapeText)
                                                : rejected(untouched, firstCharacterText);
        EXPECT_EQ(expected, judge(std::string(1, first) + ";y;z")) << "byte " << byte;
    }
}

TEST(NodeFileHeader, rejectsEmptyLineWithoutText) {
    EXPECT_EQ(rejected(untouched, ""), judge(""));
}

TEST(NodeFileHeader, rejectsByteOrderMarkAlone) {
    EXPECT_EQ(rejected(untouched, firstCharacterText), judge(byteOrderMark));
    EXPECT_EQ(rejected(untouched, firstCharacterText), judge(byteOrderMark.substr(0, 2)));
    EXPECT_EQ(rejected(untouched, firstCharacterText), judge(byteOrderMark.substr(0, 1)));
}

TEST(NodeFileHeader, removesOnlyOneByteOrderMark) {
    EXPECT_EQ(rejected(untouched, firstCharacterText), judge(byteOrderMark + byteOrderMark + "x;y;z"));
    EXPECT_EQ(rejected(untouched, firstCharacterText), judge("\xEF\xBBx;y;z"));
    EXPECT_EQ(rejected(untouched, firstCharacterText), judge("\xFF\xFEx;y;z"));
    EXPECT_EQ(rejected(';', shapeText), judge("x;y;z" + byteOrderMark));
    EXPECT_EQ(rejected('\xEF', separatorText), judge("x" + byteOrderMark + ";y;z"));
}

TEST(NodeFileHeader, checksFirstCharacterFirst) {
    for (const char* const line : {"y;x;z", "Y;Y;Z;G", " x;y;z", "\tx;y;z", ";x;y;z", "1;2;3", "y:x:z",
                                   "\"x\";\"y\";\"z\"", "#x;y;z", " ", "\r", "y", "z;y;x", "total", "3"}) {
        EXPECT_EQ(rejected(untouched, firstCharacterText), judge(line)) << line;
    }
    EXPECT_EQ(rejected(untouched, firstCharacterText), judge(std::string("\0x;y;z", 6)));
}

TEST(NodeFileHeader, readsZeroByteAsSeparatorAfterOneLetter) {
    EXPECT_EQ(rejected('\0', separatorText), judge("x"));
    EXPECT_EQ(rejected('\0', separatorText), judge("X"));
    EXPECT_EQ(rejected('\0', separatorText), judge(byteOrderMark + "x"));
    EXPECT_EQ(rejected(':', separatorText), judge("x:y:z"));
    EXPECT_EQ(rejected('\r', separatorText), judge("x\r"));
    EXPECT_EQ(rejected('y', separatorText), judge("xyz"));
}

TEST(NodeFileHeader, rejectsAnyOtherShape) {
    std::vector<std::string> lines =
        words("x; x;y x;y; x;y;z; x;y;z;g; x;y;z;g;h x;y;z;h x;y;z;g;g x;y,z x;y;z,g x;Y;Z X;y;z X;Y;z x;y;Z x;y;z;G "
              "X;Y;Z;g x;z;y x;x;x x;;y;;z x;y;zz x;; X; X;Y x;y;z;x;y;z x;y;z\xEF\xBB\xBF");
    lines.insert(lines.end(), {"x;y;z ", "x;y;z\r", "x;y;z\t", "x;y;z;g ", "x;y z", "x; y; z"});
    for (const std::string& line : lines) {
        EXPECT_EQ(rejected(';', shapeText), judge(line)) << line;
        EXPECT_EQ(rejected(';', shapeText), judge(byteOrderMark + line)) << line;
    }
    EXPECT_EQ(rejected(' ', shapeText), judge("x  y  z"));
    EXPECT_EQ(rejected(' ', shapeText), judge("x y z "));
    EXPECT_EQ(rejected('\t', shapeText), judge("x\ty\tz\t"));
    EXPECT_EQ(rejected(',', shapeText), judge("x,y;z"));
}

TEST(NodeFileHeader, readsZeroBytesAsBytes) {
    EXPECT_EQ(rejected(';', shapeText), judge(std::string("x;y;z\0", 6)));
    EXPECT_EQ(rejected(';', shapeText), judge(std::string("x;y\0z", 5)));
    EXPECT_EQ(rejected('\0', separatorText), judge(std::string("x\0y\0z", 5)));
}

TEST(NodeFileHeader, translatesOnlyTextAboutFirstCharacter) {
    const GeneratedLocale german(
        "de.utf8", {{firstCharacterText, "Erstes Zeichen"}, {separatorText, "Trennzeichen"}, {shapeText, "Form"}});
    EXPECT_EQ(rejected(untouched, "Erstes Zeichen"), judge("Y;Y;Z;G"));
    EXPECT_EQ(rejected(':', separatorText), judge("x:y:z"));
    EXPECT_EQ(rejected(';', shapeText), judge("x;y,z"));
    EXPECT_EQ(rejected(untouched, ""), judge(""));
    EXPECT_EQ(accepted(';', 1), judge("x;y;z"));
}

TEST(NodeFileHeader, reportsNothing) {
    clearRecordedCalls();
    ConsoleCapture console;
    for (const char* const line : {"x;y;z", "y;x;z", "x:y:z", "x;y,z", ""}) {
        judge(line);
    }
    EXPECT_EQ("", console.text());
    EXPECT_EQ(Calls(), recordedCalls());
}

} // namespace vadelclip
