// The text around the numbers of a boundary file: encodings, references, white space; and the messages in translation.
#include "boundary/boundary_reader.hpp"

#include "support/boundary_file_support.hpp"
#include "support/boundary_support.hpp"
#include "support/catalogue_support.hpp"
#include "support/file_support.hpp"

#include <gtest/gtest.h>

namespace vadelclip {

namespace {

/// Returns an ASCII text with this number of zero bytes before and after each letter, as in UTF-16 and UTF-32.
std::string widened(const std::string& text, std::size_t zerosBefore, std::size_t zerosAfter) {
    std::string bytes;
    for (const char letter : text) {
        bytes += std::string(zerosBefore, '\0') + letter + std::string(zerosAfter, '\0');
    }
    return bytes;
}

} // namespace

TEST(BoundaryReaderText, mayHaveAnyUnicodeEncoding) {
    const std::string text =
        "<?xml version=\"1.0\"?>" + inBoundaries("<polygon id=\"1\"><point x=\"1.5\" y=\"-2.5\"/></polygon>");
    const std::string zeros(2, '\0');
    const std::pair<std::string, std::string> encodings[] = {{byteOrderMark, text},
                                                             {"\xFF\xFE", widened(text, 0, 1)},
                                                             {"\xFE\xFF", widened(text, 1, 0)},
                                                             {"\xFF\xFE" + zeros, widened(text, 0, 3)},
                                                             {zeros + "\xFE\xFF", widened(text, 3, 0)}};
    for (const auto& [mark, content] : encodings) {
        expectRead({{{1.5, -2.5}}}, content);
        expectRead({{{1.5, -2.5}}}, mark + content);
    }
}

TEST(BoundaryReaderText, mayDeclareWrongEncoding) {
    expectRead({triangle}, "<?xml version=\"1.0\" encoding=\"UTF-16\"?>" + inBoundaries(triangleElement));
}

TEST(BoundaryReaderText, mayBeLatin1OrInvalidUtf8) {
    const std::string content =
        inBoundaries("<polygon id=\"1\" name=\"\xE4\"><point x=\"1.5\xE4\" y=\"2\"/></polygon>");
    expectRead({{{1.5, 2}}}, "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>" + content);
    expectRead({{{1.5, 2}}}, content);
}

TEST(BoundaryReaderText, mayHaveAnyWhiteSpaceBetweenAttributes) {
    for (const std::string space : {"\n", "\r\n", "\r", "\t"}) {
        std::string polygon = "<polygon id='1' > <point x = '1' y='2' /> </polygon >";
        for (std::size_t place = 0; (place = polygon.find(' ', place)) != std::string::npos; place += space.size()) {
            polygon.replace(place, 1, space);
        }
        expectRead({{{1, 2}}}, inBoundaries(polygon));
    }
}

TEST(BoundaryReaderText, doesNotReplaceReferences) {
    expectRead({{{1, 2}}},
               "<!DOCTYPE VADELSIM [<!ENTITY one \"1\">]>" +
                   inBoundaries("&unknown;<polygon id=\"1&one;\"><point x=\"1&lt;5\" y=\"2&unknown;\"/></polygon>"));
    expectFailed("Cannot read point 0 in polygon 3",
                 readBoundaryBytes("<!DOCTYPE VADELSIM [<!ENTITY one \"1\">]>" +
                                   inBoundaries("<polygon id=\"3\"><point x=\"&one;\" y=\"2\"/></polygon>")));
}

TEST(BoundaryReaderText, mayBeNestedDeeply) {
    std::string opening;
    std::string closing;
    for (int level = 0; level < 100000; ++level) {
        opening += "<a>";
        closing += "</a>";
    }
    const Reading reading = readBoundaryBytes(inBoundaries(opening + closing + triangleElement));
    EXPECT_TRUE(reading.succeeded);
    EXPECT_EQ(asText(setOf({triangle})), asText(reading.set));
}

TEST(BoundaryReaderMessages, areTranslated) {
    const GeneratedLocale locale(
        "de_DE.utf8", {{"Cannot read point {0} in polygon {1}", "Polygon {1}: Punkt {0} ist unlesbar"},
                       {"Cannot find the id of a polygon in a group of type {0}", "Polygon ohne Nummer ({0})"},
                       {"Boundary file {0} not found", "{0}: nicht da"},
                       {"Could not find the VadeDGM tag in the boundary file {0}", "{0}: kein VadeDGM"}});
    expectFailed("Polygon 6: Punkt 0 ist unlesbar",
                 readBoundaryBytes(inBoundaries("<polygon id=\"6\"><point/></polygon>")));
    expectFailed("Polygon ohne Nummer (0)", readBoundaryBytes(inBoundaries("<polygon/>")));

    const TemporaryDirectory directory;
    expectFailed(directory.pathOf("a") + ": nicht da", readBoundaryAt(directory.pathOf("a")));
    const std::string other = directory.write("b", "<other/>");
    expectFailed(other + ": kein VadeDGM", readBoundaryAt(other));
}

} // namespace vadelclip
