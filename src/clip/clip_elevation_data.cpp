#include "clip/clip_elevation_data.hpp"

#include "boundary/boundary_reader.hpp"
#include "boundary/index/boundary_index.hpp"
#include "clip/clip_node_file.hpp"
#include "clip/count32.hpp"
#include "clip/input_selection.hpp"
#include "clip/node_count.hpp"
#include "messages/reporting.hpp"
#include "messages/translation.hpp"

#include <boost/filesystem/operations.hpp>
#include <boost/filesystem/path.hpp>

#include <algorithm>
#include <limits>
#include <numeric>
#ifdef __GLIBC__
#include <malloc.h>
#endif

namespace vadelclip {

namespace {

namespace fs = boost::filesystem;

/// While it exists, freed memory is kept for later allocations of any size. The system takes long to provide new memory,
/// and most memory of the document of a large boundary is free before the index is built.
class FreedMemoryKeeper {
public:
#ifdef __GLIBC__
    FreedMemoryKeeper() {
        mallopt(M_MMAP_MAX, 0);
        mallopt(M_TRIM_THRESHOLD, std::numeric_limits<int>::max());
    }
    ~FreedMemoryKeeper() {
        mallopt(M_MMAP_MAX, defaultMmapMax);
        mallopt(M_TRIM_THRESHOLD, defaultTrimThreshold);
    }
    FreedMemoryKeeper(const FreedMemoryKeeper&) = delete;
    FreedMemoryKeeper& operator=(const FreedMemoryKeeper&) = delete;

private:
    static constexpr int defaultMmapMax = 65536;
    static constexpr int defaultTrimThreshold = 128 * 1024;
#endif
};

/// Returns freed memory to the system: the rest of a run may take hours.
void releaseFreedMemory() {
#ifdef __GLIBC__
    malloc_trim(0);
#endif
}

bool loadBoundary(BoundarySet& boundarySet, const std::string& boundaryFilePath) {
    [[maybe_unused]] const FreedMemoryKeeper keeper;
    clearBoundarySet(boundarySet);
    if (readBoundaryFile(boundarySet, boundaryFilePath)) {
        return true;
    }
    // This message follows every failure of the reader, even if the file exists.
    reportLine(formatMessage("Boundary file {0} does not exist", boundaryFilePath));
    return false;
}

bool checkParentDirectory(const std::string& inputParentDirectory) {
    if (fs::is_directory(fs::status(inputParentDirectory))) {
        return true;
    }
    reportLine(formatMessage("Directory {0} does not exist", inputParentDirectory));
    return false;
}

bool checkInputDirectory(const std::string& inputDirectory) {
    if (fs::is_directory(fs::status(inputDirectory))) {
        return true;
    }
    reportLine(formatMessage("Input directory {0} does not exist", inputDirectory));
    return false;
}

/// A path that exists and is not a directory passes here; creating the directory then fails.
bool checkOutputDirectory(const std::string& outputDirectory) {
    if (!fs::is_directory(fs::status(outputDirectory))) {
        return true;
    }
    reportLine(formatMessage(
        "Output directory {0} already exists, aborting in order avoid overwriting of existing data", outputDirectory));
    return false;
}

/// Returns the number of lines to read, plus 1. Unlike the number of progress, it does not wrap around. No line is
/// read of a file with a negative count.
double countLines(const InputSelection& selection) {
    return std::accumulate(selection.lineCounts.begin(), selection.lineCounts.end(), 1.0,
                           [](double sum, std::int32_t lineCount) { return sum + std::max(lineCount, 0); });
}

BoundaryIndex indexFor(const InputSelection& selection, BoundarySet& boundarySet) {
    [[maybe_unused]] const FreedMemoryKeeper keeper;
    return BoundaryIndex(boundarySet, countLines(selection));
}

/// Clips the selected files one after the other and returns the total number of kept lines.
std::int32_t clipFiles(const InputSelection& selection, const std::string& outputDirectory,
                       const BoundaryIndex& boundary) {
    const std::int32_t totalLines = sumLineCounts(selection.lineCounts);
    double linesDone = 0.0;
    std::int32_t totalKeptNodes = 0;
    for (std::size_t i = 0; i < selection.inputFiles.size(); ++i) {
        const std::string& inputPath = selection.inputFiles[i];
        const std::int32_t lineCount = selection.lineCounts[i];
        const std::string outputPath = (fs::path(outputDirectory) / fs::path(inputPath).filename()).string();
        const std::int32_t keptNodes = clipNodeFile(inputPath, outputPath, lineCount, boundary, linesDone, totalLines);
        totalKeptNodes = addWrapping(totalKeptNodes, keptNodes);
        linesDone += lineCount;
    }
    return totalKeptNodes;
}

} // namespace

std::int32_t clipElevationData(BoundarySet& boundarySet, std::string inputParentDirectory,
                               std::string inputDirectoryName, std::string outputDirectoryName,
                               std::string boundaryFilePath) {
    if (!loadBoundary(boundarySet, boundaryFilePath)) {
        return 1;
    }
    if (!checkParentDirectory(inputParentDirectory)) {
        return 1;
    }
    const std::string inputDirectory = (fs::path(inputParentDirectory) / inputDirectoryName).string();
    if (!checkInputDirectory(inputDirectory)) {
        return 1;
    }
    const std::string outputDirectory = (fs::path(inputParentDirectory) / outputDirectoryName).string();
    if (!checkOutputDirectory(outputDirectory)) {
        return 1;
    }
    fs::create_directory(outputDirectory);

    const InputSelection selection = selectInputFiles(inputDirectory);
    if (selection.inputFiles.empty()) {
        reportLine(translateMessage("There are no input files."));
        return 1;
    }
    const BoundaryIndex boundary = indexFor(selection, boundarySet);
    releaseFreedMemory();
    const std::int32_t totalKeptNodes = clipFiles(selection, outputDirectory, boundary);
    writeNodeCount(outputDirectory, totalKeptNodes);
    return 0;
}

} // namespace vadelclip
