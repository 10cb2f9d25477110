#include "shard/input_scan.hpp"

#include "clip/input_selection.hpp"
#include "clip/node_file_header.hpp"
#include "shard/messages.hpp"
#include "text/text_mode.hpp"

#include <boost/filesystem/directory.hpp>
#include <boost/filesystem/file_status.hpp>

#include <algorithm>
#include <functional>
#include <numeric>
#include <queue>
#include <set>
#include <sys/stat.h>
#include <utility>

namespace vadelshard {

namespace {

namespace fs = boost::filesystem;

/// More than the longest header: a byte order mark, seven characters and the line end.
constexpr std::size_t maxHeader = 64;

constexpr std::size_t searchedBytes = 4096;

/// Opening a file takes as long as reading this number of bytes. So small files are distributed by their number.
constexpr std::uint64_t costOfUnit = 16384;

/// Returns the position after the first line feed from `position` on, or the size of the file.
std::uint64_t afterNextLineFeed(const OpenFile& file, std::uint64_t position, std::uint64_t size) {
    while (position < size) {
        const std::string block = file.read(position, searchedBytes);
        const std::size_t lineFeed = block.find('\n');
        if (lineFeed != std::string::npos) {
            return position + lineFeed + 1;
        }
        if (block.empty()) {
            break;
        }
        position += block.size();
    }
    return size;
}

/// Adds a file that has the suffix of a node file.
void addFile(InputScan& scan, const std::string& path, const std::string& name) {
    struct stat status {};
    if (stat(path.c_str(), &status) != 0) {
        return; // It has just been removed, so the tool would not find it either.
    }
    if (!S_ISREG(status.st_mode)) {
        throw Failure(formatMessage("{0} is not a regular file. Only regular files can be split into shards.", path));
    }
    if (!isReadable(path)) {
        scan.unreadable.push_back(name);
        return;
    }
    const FileState state = stateOf(status);
    scan.files.push_back({name, state, 0, state.size});
    if (!scan.hasNodeFile) {
        const std::optional<std::string> line = rawFirstLine(OpenFile::forReading(path));
        scan.hasNodeFile = line && isNodeFileLine(*line);
    }
}

std::uint64_t costOf(const Unit& unit) {
    return unit.end - unit.begin + costOfUnit;
}

std::uint64_t costOf(const Shard& shard) {
    return std::accumulate(shard.begin(), shard.end(), std::uint64_t{0},
                           [](std::uint64_t sum, const Unit& unit) { return sum + costOf(unit); });
}

} // namespace

std::optional<std::string> rawFirstLine(const OpenFile& file) {
    std::string line = file.read(0, maxHeader);
    const std::size_t lineFeed = line.find('\n');
    if (lineFeed != std::string::npos) {
        line.resize(lineFeed + 1);
    } else if (line.size() == maxHeader) {
        return std::nullopt;
    }
    return line;
}

bool isNodeFileLine(const std::string& rawLine) {
    std::string line = rawLine;
    if (line.ends_with('\n')) {
        line.pop_back();
        line.resize(line.size() - vadelclip::carriageReturnsToDrop(line));
    }
    char separator = 0;
    std::int32_t nodeFormat = 0;
    std::string errorText;
    return vadelclip::readNodeFileHeader(line, separator, nodeFormat, errorText);
}

InputScan scanInput(const std::string& inputDirectory) {
    InputScan scan;
    for (const fs::directory_entry& entry : fs::directory_iterator(inputDirectory)) {
        // As in the tool, the status of an entry is read before its suffix is checked: it fails for the same entries.
        const fs::file_type type = entry.status().type();
        const std::string path = entry.path().string();
        if (type != fs::directory_file && type != fs::file_not_found && vadelclip::hasNodeFileSuffix(path)) {
            addFile(scan, path, entry.path().filename().string());
        }
    }
    return scan;
}

void requireSameFiles(const WorkDirectory& work, const std::string& inputDirectory) {
    std::set<std::string> missing;
    for (std::uint64_t index = 0, count = readJob(work).shards; index < count; ++index) {
        for (const Unit& unit : readShard(work, index)) {
            missing.insert(unit.name);
        }
    }
    for (const Unit& file : scanInput(inputDirectory).files) {
        if (missing.erase(file.name) == 0) {
            throw Failure(formatMessage(
                "The input directory has changed since the plan was made: {0} is new. Remove {1} to start anew.",
                file.name, work.path));
        }
    }
    if (!missing.empty()) {
        throw Failure(
            formatMessage("The input directory has changed since the plan was made: {0} is missing. Restore it, "
                          "or remove {1} to start anew.",
                          *missing.begin(), work.path));
    }
}

std::vector<Unit> cutIntoUnits(const std::string& inputDirectory, const Unit& wholeFile, std::uint64_t part) {
    const std::uint64_t size = wholeFile.file.size;
    if (size <= part) {
        return {wholeFile};
    }
    const OpenFile file = OpenFile::forReading(inputDirectory + '/' + wholeFile.name);
    const std::optional<std::string> header = rawFirstLine(file);
    if (!header || !header->ends_with('\n')) {
        return {wholeFile};
    }
    std::vector<Unit> units;
    std::uint64_t begin = 0;
    while (begin < size) {
        // The last byte of the part may be the line feed.
        const std::uint64_t end = size - begin <= part ? size : afterNextLineFeed(file, begin + part - 1, size);
        units.push_back({wholeFile.name, wholeFile.file, begin, end});
        begin = end;
    }
    return units;
}

std::vector<Shard> distribute(std::vector<Unit> units, std::uint64_t wanted) {
    std::sort(units.begin(), units.end(), [](const Unit& a, const Unit& b) {
        if (costOf(a) != costOf(b)) {
            return costOf(a) > costOf(b);
        }
        const int order = a.name.compare(b.name);
        return order != 0 ? order < 0 : a.begin < b.begin;
    });
    using Load = std::pair<std::uint64_t, std::size_t>;
    std::vector<Shard> shards(static_cast<std::size_t>(std::min<std::uint64_t>(wanted, units.size())));
    std::priority_queue<Load, std::vector<Load>, std::greater<>> leastLoaded;
    for (std::size_t i = 0; i < shards.size(); ++i) {
        leastLoaded.emplace(0, i);
    }
    for (Unit& unit : units) {
        const auto [load, index] = leastLoaded.top();
        leastLoaded.pop();
        leastLoaded.emplace(load + costOf(unit), index);
        shards[index].push_back(std::move(unit));
    }
    std::stable_sort(shards.begin(), shards.end(),
                     [](const Shard& a, const Shard& b) { return costOf(a) > costOf(b); });
    return shards;
}

} // namespace vadelshard
