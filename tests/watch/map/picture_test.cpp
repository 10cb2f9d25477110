#include "watch/map/picture.hpp"

#include "support/file_support.hpp"
#include "support/german_messages.hpp"

#include <gtest/gtest.h>
#include <pugixml.hpp>

#include <filesystem>
#include <string>
#include <vector>

namespace vadelwatch {

using vadelclip::readFile;
using vadelclip::TemporaryDirectory;

namespace {

constexpr const char* squareFile = "<VADELSIM><VadeDGM><group type='boundaries'><polygon id='1'><point x='0' y='0'/>"
                                   "<point x='10' y='0'/><point x='10' y='10'/><point x='0' y='10'/></polygon></group>"
                                   "</VadeDGM></VADELSIM>";

/// The darkest colour of dropped nodes, as SVG writes it.
constexpr const char* droppedAtItsDarkest = "58.8235";

/// A run of a few nodes, ready to be drawn.
struct DrawnRun {
    TemporaryDirectory directory;
    MapRequest request{{},
                       directory.makeDirectory("in"),
                       directory.makeDirectory("out"),
                       directory.write("b.xml", squareFile),
                       directory.pathOf("map.png")};

    void write(const std::string& inputText, const std::string& outputText) const {
        directory.write("in/a.xyz", inputText);
        directory.write("out/a.xyz", outputText);
    }

    /// Draws and returns the bytes of the picture. Fails on an error message.
    std::string draw(const std::string& pictureName) {
        request.pictureFile = directory.pathOf(pictureName);
        EXPECT_EQ("", problem());
        return readFile(request.pictureFile);
    }

    /// Draws with the files that are there now. Returns the error message.
    std::string problem() {
        request.nodeFiles = findNodeFiles(request.inputDirectory);
        return drawMap(request);
    }

    bool hasPicture() const { return directory.tree().count("map.png") > 0; }
};

unsigned int bigEndian(const std::string& bytes, std::size_t place) {
    unsigned int number = 0;
    for (std::size_t i = place; i < place + 4; ++i) {
        number = number * 256U + static_cast<unsigned char>(bytes.at(i));
    }
    return number;
}

/// Writes nodes on both sides of the right edge of the square: half of them are kept.
DrawnRun& withManyNodes(DrawnRun& run, int side) {
    std::string input = "x;y;z\n";
    std::string output = input;
    for (int i = 0; i < side * side; ++i) {
        const double x = 20.0 * (i % side + 0.5) / side;
        const std::string line = std::to_string(x) + ";" + std::to_string(10.0 * (i / side + 0.5) / side) + ";1\n";
        input += line;
        output += x < 10.0 ? line : "";
    }
    run.write(input, output);
    return run;
}

/// Returns the number of images in an SVG picture. Fails if it is not well-formed or has another size.
int imagesInSvg(const std::string& bytes) {
    pugi::xml_document document;
    EXPECT_TRUE(document.load_buffer(bytes.data(), bytes.size()));
    const pugi::xml_node svg = document.child("svg");
    EXPECT_STREQ("1600px", svg.attribute("width").value());
    EXPECT_GE(svg.attribute("height").as_int(), 600);
    return static_cast<int>(document.select_nodes("//image").size());
}

} // namespace

TEST(MapPicture, showsShareOfNodesRead) {
    DrawnRun run;
    std::vector<double> shown;
    run.request.nodes = 320 * 320;
    run.request.showPercent = [&shown](double percent) { shown.push_back(percent); };
    withManyNodes(run, 320).draw("map.png");
    ASSERT_EQ(1U, shown.size());
    EXPECT_DOUBLE_EQ(90.0 * 65536 / (320 * 320), shown.front());
}

TEST(MapPicture, pngHasSignatureAndSize) {
    DrawnRun run;
    run.write("x;y;z\n5;5;1\n15;5;1\n", "x;y;z\n5;5;1\n");
    const std::string bytes = run.draw("map.png");
    EXPECT_EQ("\x89PNG\r\n\x1A\n", bytes.substr(0, 8));
    EXPECT_EQ(1600U, bigEndian(bytes, 16));
    EXPECT_GE(bigEndian(bytes, 20), 600U);
    EXPECT_EQ("IEND", bytes.substr(bytes.size() - 8, 4));
}

TEST(MapPicture, svgHasShapesForFewNodesAndImageForMany) {
    DrawnRun run;
    run.write("x;y;z\n5;5;1\n15;5;1\n", "x;y;z\n5;5;1\n");
    EXPECT_EQ(0, imagesInSvg(run.draw("map.svg")));
    const std::string many = withManyNodes(run, 300).draw("map.svg");
    EXPECT_GE(imagesInSvg(many), 1);
    EXPECT_LT(many.size(), 400000U);
}

TEST(MapPicture, drawsCrowdedNodesDarkerAndExplainsIt) {
    DrawnRun run;
    std::string even = "x;y;z\n";
    for (int i = 0; i < 400; ++i) {
        even += std::to_string(i % 20 + 0.5) + ";" + std::to_string(i / 20 * 0.5) + ";1\n";
    }
    std::string crowded = even;
    for (int i = 0; i < 2000; ++i) {
        crowded += "4." + std::to_string(1000 + i) + ";5.25;1\n";
    }
    run.write(even, "");
    const std::string evenPicture = run.draw("even.svg");
    run.write(crowded, "");
    const std::string crowdedPicture = run.draw("crowded.svg");
    // Each swatch of the legend is a gradient; an even one has the same colour at both ends.
    EXPECT_EQ(std::string::npos, evenPicture.find(droppedAtItsDarkest));
    EXPECT_NE(std::string::npos, crowdedPicture.find(droppedAtItsDarkest));
}

TEST(MapPicture, drawsOutlinesOfManyVerticesThinner) {
    DrawnRun run;
    const auto outlineOf = [](int vertices) {
        std::string text = "<VADELSIM><VadeDGM><group type='boundaries'><polygon id='1'>";
        for (int i = 0; i < vertices; ++i) {
            text += "<point x='" + std::to_string(i % 100) + "' y='" + std::to_string(i / 100) + "'/>";
        }
        return text + "</polygon></group></VadeDGM></VADELSIM>";
    };
    run.directory.write("b.xml", outlineOf(2000));
    EXPECT_NE(std::string::npos, run.draw("few.svg").find("stroke-width:1.4;"));
    run.directory.write("b.xml", outlineOf(2001));
    EXPECT_EQ(std::string::npos, run.draw("many.svg").find("stroke-width:1.4;"));
}

TEST(MapPicture, drawsSamePictureAgain) {
    DrawnRun run;
    withManyNodes(run, 40);
    EXPECT_EQ(run.draw("a.png"), run.draw("b.png"));
}

TEST(MapPicture, drawsTextsInLanguage) {
    DrawnRun run;
    run.write("x;y;z\n5;5;1\n15;5;1\n", "x;y;z\n5;5;1\n");
    const std::string english = run.draw("a.png");
    const GermanMessages german;
    EXPECT_NE(english, run.draw("b.png"));
}

TEST(MapPicture, reportsErrorsInGerman) {
    const GermanMessages german;
    DrawnRun run;
    MapRequest request = run.request;
    request.boundaryFile = "/no/b.xml";
    EXPECT_EQ("Die Grenzdatei /no/b.xml kann nicht gelesen werden: die Datei wurde nicht gefunden.", drawMap(request));
    request.boundaryFile = "/";
    EXPECT_EQ("Die Grenzdatei / kann nicht gelesen werden: sie ist ein Verzeichnis.", drawMap(request));
    request.boundaryFile = run.directory.write("point.xml", "<VADELSIM><VadeDGM><group type='boundaries'><polygon>"
                                                            "<point/></polygon></group></VadeDGM></VADELSIM>");
    EXPECT_EQ("Die Grenzdatei " + request.boundaryFile + " enthält einen Punkt ohne Koordinaten.", drawMap(request));
    EXPECT_EQ("Das Eingabeverzeichnis " + run.request.inputDirectory + " kann nicht gelesen werden.",
              drawMap(run.request));
    request.nodeFiles.isListed = true;
    request.boundaryFile = run.request.boundaryFile;
    request.outputDirectory = "/no/out";
    EXPECT_EQ("Das Ausgabeverzeichnis /no/out kann nicht gelesen werden.", drawMap(request));
    run.write("x;y;z\n5;5;1\n", "x;y;z\n6;6;1\n");
    EXPECT_EQ("Die Datei " + run.directory.pathOf("out/a.xyz") + " enthält Zeilen, die in der Eingabedatei fehlen.",
              run.problem());
    run.write("x;y;z\n5;5;1\n", "");
    run.request.pictureFile = "/no/map.png";
    EXPECT_EQ("Die Karte /no/map.png kann nicht geschrieben werden: No such file or directory.", run.problem());
}

TEST(MapPicture, drawsKeptNodesDifferently) {
    DrawnRun run;
    run.write("x;y;z\n5;5;1\n6;6;1\n", "x;y;z\n5;5;1\n");
    const std::string first = run.draw("a.png");
    run.write("x;y;z\n5;5;1\n6;6;1\n", "x;y;z\n6;6;1\n");
    EXPECT_NE(first, run.draw("b.png"));
}

TEST(MapPicture, drawsOddInput) {
    DrawnRun run;
    EXPECT_GT(run.draw("only-outlines.png").size(), 1000U);
    run.write("x;y;z\n500000.5;6000000.25;1\n", "");
    EXPECT_GT(run.draw("far-off.png").size(), 1000U);
    run.write("x;y;z\n1e300;-1e300;0\n-1e300;1e300;0\n1e308;2;0\nnonsense\n", "");
    EXPECT_GT(run.draw("huge.png").size(), 1000U);
    run.directory.write("b.xml", "<VADELSIM/>");
    run.write("x;y;z\n7;7;1\n", "");
    EXPECT_GT(run.draw("one-node.png").size(), 1000U);
    run.write("x;y;z\n1e-300;-1e-300;0\n-1e-310;1e-305;0\n", "");
    EXPECT_GT(run.draw("tiny.png").size(), 1000U);
    run.write("x;y;z\n7;1;0\n7;2;0\n7;300;0\n", "");
    EXPECT_GT(run.draw("upright-line.png").size(), 1000U);
}

TEST(MapPicture, drawsNamesOfAnyBytes) {
    DrawnRun run;
    run.request.boundaryFile = run.directory.write("\xFF\n<&" + std::string(200, 'w') + ".xml", squareFile);
    EXPECT_EQ(0, imagesInSvg(run.draw("map.svg")));
}

TEST(MapPicture, reportsNothingToDraw) {
    DrawnRun run;
    run.directory.write("b.xml", "<VADELSIM/>");
    EXPECT_EQ("There is nothing to draw: no node has a position and the boundary has no vertex.", run.problem());
    EXPECT_FALSE(run.hasPicture());
}

TEST(MapPicture, reportsUnreadableInput) {
    DrawnRun run;
    MapRequest request = run.request;
    request.boundaryFile = "/no/b.xml";
    EXPECT_EQ("The boundary file /no/b.xml cannot be read: File was not found.", drawMap(request));
    EXPECT_EQ("The input directory " + run.request.inputDirectory + " cannot be read.", drawMap(run.request));
    request.nodeFiles.isListed = true;
    request.boundaryFile = run.request.boundaryFile;
    request.outputDirectory = "/no/out";
    EXPECT_EQ("The output directory /no/out cannot be read.", drawMap(request));
    EXPECT_FALSE(run.hasPicture());
}

TEST(MapPicture, reportsUnwritablePicture) {
    DrawnRun run;
    run.request.pictureFile = "/no/map.png";
    EXPECT_EQ("The map /no/map.png cannot be written: No such file or directory.", run.problem());
    run.request.pictureFile = run.directory.makeLink("full.svg", "/dev/full");
    EXPECT_EQ("The map " + run.request.pictureFile + " cannot be written: No space left on device.", run.problem());
}

TEST(MapPicture, worldFileFailsWithItsName) {
    DrawnRun run;
    run.write("x;y;z\n5;5;1\n", "");
    run.directory.makeDirectory("map.pgw");
    EXPECT_EQ("The world file " + run.directory.pathOf("map.pgw") + " of the map cannot be written: Is a directory.",
              run.problem());
}

TEST(MapPicture, hasAskedSize) {
    DrawnRun run;
    run.request.size = {900, 700};
    const std::string bytes = run.draw("map.png");
    EXPECT_EQ(900U, bigEndian(bytes, 16));
    EXPECT_EQ(700U, bigEndian(bytes, 20));
}

TEST(MapPicture, reportsNodeFileThatIsGone) {
    DrawnRun run;
    run.write("x;y;z\n5;5;1\n", "");
    run.request.nodeFiles = findNodeFiles(run.request.inputDirectory);
    const std::string path = run.directory.pathOf("in/a.xyz");
    const std::string expected = "The node file " + path + " was changed or removed after the run began.";
    run.directory.write("in/a.xyz", "remark\n");
    EXPECT_EQ(expected, drawMap(run.request));
    std::filesystem::remove(path);
    EXPECT_EQ(expected, drawMap(run.request));
    EXPECT_FALSE(run.hasPicture());
}

} // namespace vadelwatch
