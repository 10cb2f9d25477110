#include "support/plain_run_support.hpp"

#include "boundary/contains_point.hpp"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <sstream>

namespace {

struct PlainFile {
    std::string name;
    Calls calls;
    std::string headerLine;
    std::vector<std::string> lines; ///< Those that end in a line feed, without their line ends.
};

/// Everything before the last line feed, cut at line feeds; a carriage return before one goes with it.
std::vector<std::string> linesOf(const std::string& content) {
    std::vector<std::string> lines;
    std::size_t start = 0;
    for (std::size_t end = content.find('\n'); end != std::string::npos; end = content.find('\n', start)) {
        const std::size_t length = end - start;
        lines.push_back(content.substr(start, length > 0 && content[end - 1] == '\r' ? length - 1 : length));
        start = end + 1;
    }
    return lines;
}

std::vector<PlainFile> readFiles(const ClipRun& job) {
    std::vector<PlainFile> files;
    for (const auto& entry : std::filesystem::directory_iterator(job.directory.pathOf("base/data"))) {
        std::vector<std::string> lines = linesOf(readFile(entry.path().string()));
        const std::string headerLine = lines.front();
        lines.erase(lines.begin());
        files.push_back({entry.path().filename().string(), {}, headerLine, lines});
    }
    return files;
}

bool parsePlainly(const std::string& line, char separator, Point2D& point) {
    std::stringstream stream(line);
    stream >> point.x;
    if (!stream.good()) {
        return false;
    }
    if (separator != ' ') {
        int attempts = 0;
        char byte = 0;
        do {
            if (attempts == 100 || !stream.get(byte)) {
                return false;
            }
            ++attempts;
        } while (byte != separator);
    }
    stream >> point.y;
    return stream.good();
}

bool isKept(const std::string& line, char separator, BoundarySet& boundary) {
    Point2D point{};
    return parsePlainly(line, separator, point) &&
           std::any_of(boundary.polygons.begin(), boundary.polygons.end(),
                       [&](BoundaryPolygon& polygon) { return containsPoint(polygon, point, boundary.vertices); });
}

std::string exact(double value) {
    char digits[40];
    std::snprintf(digits, sizeof digits, "%.17g", value);
    return digits;
}

} // namespace

RunOutcome plainRun(const ClipRun& job, BoundarySet boundary) {
    const std::vector<PlainFile> files = readFiles(job);
    std::size_t totalLines = 0;
    for (const PlainFile& file : files) {
        totalLines += file.lines.size();
    }
    const double percentPerLine = 100.0 / static_cast<double>(totalLines);
    double linesDone = 0.0;
    int totalKept = 0;
    Calls calls;
    FileTree created;
    for (const PlainFile& file : files) {
        const auto lineCount = static_cast<double>(file.lines.size());
        const std::size_t markSize = file.headerLine.starts_with("\xEF\xBB\xBF") ? 3 : 0;
        const char separator = file.headerLine[markSize + 1];
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
                                  exact((lineCount + linesDone) * percentPerLine) + " " +
                                  std::to_string(file.lines.size());
        calls = joined({calls, stateCalls(), progressCalls(range, static_cast<int>(file.lines.size()))});
        totalKept += kept;
        linesDone += lineCount;
    }
    return finishedRun(totalKept, withoutSignOfNan(calls), created);
}
