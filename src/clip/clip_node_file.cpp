#include "clip/clip_node_file.hpp"

#include "boundary/index/boundary_index.hpp"
#include "clip/count32.hpp"
#include "clip/node_file_header.hpp"
#include "clip/node_line_filter.hpp"
#include "messages/reporting.hpp"
#include "messages/translation.hpp"
#include "text/line_reader.hpp"

#include <ProcessMessage.h>

#include <boost/filesystem/operations.hpp>
#include <boost/filesystem/path.hpp>

#include <fstream>
#include <string>
#include <string_view>

namespace vadelclip {

namespace {

/// Flushes each line, so that a reader of the growing output file always sees whole lines.
void writeLine(std::ostream& output, std::string_view lineWithLineFeed) {
    output.write(lineWithLineFeed.data(), static_cast<std::streamsize>(lineWithLineFeed.size()));
    output.flush();
}

void sendClippingState() {
    // The message may be delivered when it ends: its text must outlive it.
    const std::string text = translateMessage("Clipping elevation data...");
    const StateMessage message(1, text, true);
}

/// Copies the lines to keep and returns their number. The header has been read.
std::int32_t clipLines(LineReader& input, std::ostream& output, char separator, std::int32_t lineCount,
                       const BoundaryIndex& boundary, ProgressMessage& progress) {
    NodeLineFilter filter(input, separator, boundary);
    std::int32_t keptNodes = 0;
    for (std::int32_t i = 0; i < lineCount; ++i) {
        progress.OnProgress(i, false);
        const std::string_view line = filter.lineIfKept(i);
        if (!line.empty()) {
            writeLine(output, line);
            keptNodes = addWrapping(keptNodes, 1);
        }
    }
    return keptNodes;
}

/// The part of the pass with open streams. Both are closed when it returns, the output first.
std::int32_t clipStreams(const std::string& inputPath, const std::string& outputPath, std::int32_t lineCount,
                         const BoundaryIndex& boundary, double linesDone, std::int32_t totalLines) {
    LineReader input(inputPath);
    // Opened before the input is read, so an existing file is emptied in every case.
    std::ofstream output(outputPath);
    const std::string headerLine(input.nextLine());

    char separator = 0;
    std::int32_t nodeFormat = 0;
    std::string errorText;
    if (!readNodeFileHeader(headerLine, separator, nodeFormat, errorText)) {
        reportLine(errorText);
        // Not 0, on purpose: the empty output file is not removed, and the total counts one line.
        return 1;
    }
    writeLine(output, input.lineWithLineFeed());
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
                          const BoundaryIndex& boundary, double linesDone, std::int32_t totalLines) {
    const std::int32_t keptNodes = clipStreams(inputPath, outputPath, lineCount, boundary, linesDone, totalLines);
    if (keptNodes < 1) {
        boost::filesystem::remove(outputPath);
    }
    return keptNodes;
}

} // namespace vadelclip
