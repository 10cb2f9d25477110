#include "shard/output_parts.hpp"

#include "clip/count32.hpp"
#include "shard/input_scan.hpp"
#include "shard/interruption.hpp"
#include "shard/job_status.hpp"
#include "shard/locked_directory.hpp"
#include "shard/messages.hpp"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <tuple>

namespace vadelshard {

namespace {

constexpr const char* countFile = "total_node_count.txt";

/// Adds the outputs of a shard.
///
/// @return false if the shard is not done, or a file is not as long as its report says.
bool addParts(const WorkDirectory& work, std::uint64_t index, std::vector<Part>& parts) {
    const Shard shard = readShard(work, index);
    ShardReport report;
    if (!readReport(work, index, report) || report.keptLines.size() != shard.size() ||
        report.outputSizes.size() != shard.size()) {
        return false;
    }
    for (std::size_t i = 0; i < shard.size(); ++i) {
        if (report.outputSizes[i] == 0) {
            continue;
        }
        const std::string path = work.done(index) + '/' + std::to_string(i);
        if (!exists(path) || OpenFile::forReading(path).state().size != report.outputSizes[i]) {
            return false;
        }
        parts.push_back({shard[i].name, shard[i].begin, path, report.keptLines[i]});
    }
    return true;
}

/// Moves away a result that cannot be merged, so that its shard is missing again.
void discardResult(const WorkDirectory& work, std::uint64_t index) {
    if (exists(work.done(index))) {
        const LockedDirectory discarded(work.attempts() + '/' + std::to_string(index) + '.');
        moveFile(work.done(index), discarded.path() + "/result");
    }
}

/// Joins the parts of one file. Each begins with the header of the file: only the first one keeps it.
void joinParts(const Part* first, const Part* last, const std::string& target) {
    OpenFile output = OpenFile::forWriting(target);
    for (const Part* part = first; part != last; ++part) {
        const OpenFile input = OpenFile::forReading(part->path);
        const std::size_t header = rawFirstLine(input).value_or("").size();
        output.append(input, part == first ? 0 : header, input.state().size);
    }
    output.close();
}

/// Makes and fills a directory.
///
/// @return the figures of the job, to be published.
nlohmann::json buildOutput(const std::string& directory, const std::vector<Part>& parts) {
    makeDirectory(directory);
    std::uint64_t keptLines = 0;
    std::uint64_t files = 0;
    for (auto first = parts.begin(); first != parts.end();) {
        failIfInterrupted();
        const auto last =
            std::find_if(first, parts.end(), [first](const Part& part) { return part.name != first->name; });
        for (auto part = first; part != last; ++part) {
            keptLines += part->keptLines;
        }
        // A node file of this name is replaced by the count, as in one run.
        if (first->name != countFile) {
            const std::string target = directory + '/' + first->name;
            if (last - first == 1) {
                linkOrCopy(first->path, target);
            } else {
                joinParts(&*first, &*first + (last - first), target);
            }
            ++files;
        }
        first = last;
    }
    // The count of one run is a sum of 32 bits.
    const std::int32_t count = vadelclip::wrapTo32(keptLines);
    writeWholeFile(directory + '/' + countFile, std::to_string(count) + '\n');
    return {{"kept_lines", keptLines}, {"files", files}, {"total_node_count", count}};
}

} // namespace

std::vector<Part> allParts(const WorkDirectory& work, const Job& job) {
    std::vector<Part> parts;
    std::vector<std::uint64_t> missing;
    for (std::uint64_t index = 0; index < job.shards; ++index) {
        if (!addParts(work, index, parts)) {
            discardResult(work, index);
            missing.push_back(index);
        }
    }
    if (!missing.empty()) {
        throw Failure(formatMessage("{0} of {1} shards are missing: {2}", std::to_string(missing.size()),
                                    std::to_string(job.shards), arrayExpression(missing)));
    }
    std::sort(parts.begin(), parts.end(),
              [](const Part& a, const Part& b) { return std::tie(a.name, a.begin) < std::tie(b.name, b.begin); });
    return parts;
}

void prepareOutput(const WorkDirectory& work, const std::vector<Part>& parts) {
    // Both are built elsewhere: where locks do not reach other hosts, another merge may run at the same time.
    const std::string attemptPrefix = "merge.";
    removeAbandoned(work.attempts(), attemptPrefix);
    const LockedDirectory attempt(work.attempts() + '/' + attemptPrefix);
    const std::string merged = attempt.path() + "/merged";
    const std::string figures = attempt.path() + "/figures";
    writeWholeFile(figures, buildOutput(merged, parts).dump() + '\n');
    try {
        moveFile(merged, work.merged());
    } catch (const Failure&) {
        // Another merge may have been first. Its directory has the same content.
        if (!exists(work.merged())) {
            throw;
        }
    }
    moveFile(figures, work.published());
}

} // namespace vadelshard
