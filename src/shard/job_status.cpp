#include "shard/job_status.hpp"

#include "shard/locked_directory.hpp"

#include <filesystem>
#include <set>
#include <system_error>

namespace vadelshard {

namespace {

std::set<std::string> runningShards(const WorkDirectory& work) {
    std::set<std::string> shards;
    std::error_code error;
    for (std::filesystem::directory_iterator entry(work.attempts(), error), end; !error && entry != end;
         entry.increment(error)) {
        if (isInUse(entry->path().string())) {
            shards.insert(entry->path().stem().string());
        }
    }
    return shards;
}

} // namespace

JobStatus readStatus(const WorkDirectory& work, const Job& job) {
    JobStatus status;
    status.shards = job.shards;
    const std::set<std::string> running = runningShards(work);
    for (std::uint64_t index = 0; index < job.shards; ++index) {
        ShardReport report;
        if (readReport(work, index, report)) {
            ++status.done;
            for (const std::uint64_t lines : report.keptLines) {
                status.keptLines += lines;
            }
        } else if (running.contains(std::to_string(index))) {
            status.running.push_back(index);
        } else {
            status.missing.push_back(index);
        }
    }
    return status;
}

std::string arrayExpression(const std::vector<std::uint64_t>& indexes) {
    std::string text;
    for (std::size_t first = 0; first < indexes.size();) {
        std::size_t last = first;
        while (last + 1 < indexes.size() && indexes[last + 1] == indexes[last] + 1) {
            ++last;
        }
        if (!text.empty()) {
            text += ',';
        }
        text += std::to_string(indexes[first]);
        if (last > first) {
            text += '-';
            text += std::to_string(indexes[last]);
        }
        first = last + 1;
    }
    return text;
}

} // namespace vadelshard
