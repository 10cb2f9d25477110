#include "support/plain_run_support.hpp"

#include "support/containment_oracle_support.hpp"
#include "support/plain_text_support.hpp"

#include <algorithm>
#include <cstdio>
#include <filesystem>

namespace vadelclip {

namespace {

struct PlainFile {
    std::string name;
    std::string headerLine;
    std::vector<std::string> lines; ///< Those that end in a line feed, without their line ends.
    int lineCount;
};

bool isNodeFileName(const std::string& name) {
    return name.ends_with(".txt") || name.ends_with(".xyz") || name.ends_with(".csv");
}

/// Returns the four shapes with each separator.
const std::vector<std::string>& headerLines() {
    static const std::vector<std::string> lines = {
        "x\ty\tz", "X\tY\tZ", "x\ty\tz\tg", "X\tY\tZ\tG", "x y z", "X Y Z", "x y z g", "X Y Z G",
        "x,y,z",   "X,Y,Z",   "x,y,z,g",    "X,Y,Z,G",    "x;y;z", "X;Y;Z", "x;y;z;g", "X;Y;Z;G"};
    return lines;
}

std::string withoutMark(const std::string& headerLine) {
    return headerLine.starts_with("\xEF\xBB\xBF") ? headerLine.substr(3) : headerLine;
}

bool isHeaderLine(const std::string& line) {
    return std::find(headerLines().begin(), headerLines().end(), withoutMark(line)) != headerLines().end();
}

/// Reads the node files of the job in the order of the walk.
std::vector<PlainFile> readFiles(const ClipRun& job) {
    std::vector<PlainFile> files;
    for (const auto& entry : std::filesystem::directory_iterator(job.directory.pathOf("base/data"))) {
        if (entry.is_directory() || !isNodeFileName(entry.path().string())) {
            continue;
        }
        const std::string content = readFile(entry.path().string());
        std::vector<std::string> lines = terminatedLines(content);
        const std::string headerLine = lines.empty() ? unterminatedLine(content) : lines.front();
        if (isHeaderLine(headerLine)) {
            // The header is not counted. Without any line feed, the count is -1.
            const int lineCount = static_cast<int>(lines.size()) - 1;
            lines.erase(lines.begin(), lines.empty() ? lines.begin() : lines.begin() + 1);
            files.push_back({entry.path().filename().string(), headerLine, lines, lineCount});
        }
    }
    return files;
}

bool isKept(const std::string& line, char separator, const BoundarySet& boundary) {
    Point2D point{};
    oracle::Ways ways{};
    return readNodeLinePlainly(line, separator, point) &&
           std::any_of(boundary.polygons.begin(), boundary.polygons.end(), [&](const BoundaryPolygon& polygon) {
               return oracle::contains(polygon, point, boundary.vertices, ways);
           });
}

std::string exact(double value) {
    char digits[40];
    std::snprintf(digits, sizeof digits, "%.17g", value);
    return digits;
}

} // namespace

RunOutcome plainRun(const ClipRun& job, const BoundarySet& boundary) {
    const std::vector<PlainFile> files = readFiles(job);
    if (files.empty()) {
        return stoppedRun({"There are no input files."}, {{"base/out/", ""}});
    }
    int totalLines = 0;
    for (const PlainFile& file : files) {
        totalLines += file.lineCount;
    }
    const double percentPerLine = 100.0 / totalLines;
    double linesDone = 0.0;
    int totalKept = 0;
    Calls calls;
    FileTree created;
    for (const PlainFile& file : files) {
        const char separator = withoutMark(file.headerLine)[1];
        std::string output = file.headerLine + '\n';
        int kept = 0;
        for (const std::string& line : file.lines) {
            if (isKept(line, separator, boundary)) {
                output += line + '\n';
                ++kept;
            }
        }
        if (kept > 0) {
            created["base/out/" + file.name] = output;
        }
        const std::string range = exact(percentPerLine * linesDone) + " " +
                                  exact((file.lineCount + linesDone) * percentPerLine) + " " +
                                  std::to_string(file.lineCount);
        calls = joined({calls, stateCalls(), progressCalls(range, file.lineCount)});
        totalKept += kept;
        linesDone += file.lineCount;
    }
    return finishedRun(totalKept, withoutSignOfNan(calls), created);
}

} // namespace vadelclip
