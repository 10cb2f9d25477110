#include "clip/clip_node_file.hpp"

#include "app/reporting.hpp"
#include "boundary/contains_point.hpp"
#include "clip/count32.hpp"
#include "clip/node_file_header.hpp"
#include "clip/node_line.hpp"
#include "text/text_lines.hpp"

#include <ProcessMessage.h>

#include <boost/filesystem/operations.hpp>
#include <boost/filesystem/path.hpp>

#include <fstream>

namespace {

void writeLine(std::ostream& output, const std::string& line) {
    output << line << '\n';
    output.flush();
}

bool anyPolygonContains(BoundarySet& boundary, Point2D point) {
    for (BoundaryPolygon& polygon : boundary.polygons) {
        if (containsPoint(polygon, point, boundary.vertices)) {
            return true;
        }
    }
    return false;
}

void sendClippingState() {
    const StateMessage message(1, translateMessage("Clipping elevation data..."), true);
}

/// Runs over the lines behind the header and returns the number of kept ones.
std::int32_t clipLines(std::istream& input, std::ostream& output, char separator, std::int32_t lineCount,
                       BoundarySet& boundary, ProgressMessage& progress) {
    std::int32_t keptNodes = 0;
    std::string line;
    for (std::int32_t i = 0; i < lineCount; ++i) {
        progress.OnProgress(i, false);
        readTextLine(input, line);
        Point2D point{};
        // Dropped in silence: a line that does not parse, and any point outside.
        if (readNodeLine(line, separator, point) && anyPolygonContains(boundary, point)) {
            writeLine(output, line);
            keptNodes = addWrapping(keptNodes, 1);
        }
    }
    return keptNodes;
}

/// The pass while both streams are open. They end with it, the output first.
std::int32_t clipStreams(const std::string& inputPath, const std::string& outputPath, std::int32_t lineCount,
                         BoundarySet& boundary, double linesDone, std::int32_t totalLines) {
    std::ifstream input(inputPath);
    // Opened before the input has been looked at, so an existing file is emptied whatever comes after.
    std::ofstream output(outputPath);
    std::string headerLine;
    readTextLine(input, headerLine);

    char separator = 0;
    std::int32_t nodeFormat = 0;
    std::string errorText;
    if (!readNodeFileHeader(headerLine, separator, nodeFormat, errorText)) {
        reportLine(errorText);
        // Not 0: the empty output file stays, and the total counts one. Both belong to this branch.
        return 1;
    }
    writeLine(output, headerLine);
    sendClippingState();

    const double percentPerLine = 100.0 / totalLines;
    ProgressMessage progress(percentPerLine * linesDone, (lineCount + linesDone) * percentPerLine, lineCount);
    const std::int32_t keptNodes = clipLines(input, output, separator, lineCount, boundary, progress);
    input.close();
    output.close();
    return keptNodes;
}

} // namespace

std::int32_t clipNodeFile(const std::string& inputPath, const std::string& outputPath, std::int32_t lineCount,
                          BoundarySet& boundary, double linesDone, std::int32_t totalLines) {
    const std::int32_t keptNodes = clipStreams(inputPath, outputPath, lineCount, boundary, linesDone, totalLines);
    if (keptNodes < 1) {
        boost::filesystem::remove(outputPath);
    }
    return keptNodes;
}
