#include "shard/job.hpp"

#include "shard/messages.hpp"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <string_view>
#include <system_error>

namespace vadelshard {

namespace {

using Json = nlohmann::json;

constexpr std::string_view suffix = ".shards";
constexpr const char* hexadecimalDigits = "0123456789ABCDEF";

/// JSON holds no invalid UTF-8, and names may: every byte that is not printable ASCII becomes %XX.
std::string encoded(std::string_view name) {
    std::string text;
    for (const char character : name) {
        const auto byte = static_cast<unsigned char>(character);
        if (byte < 0x20U || byte >= 0x7FU || byte == '%') {
            text += '%';
            text += hexadecimalDigits[byte >> 4U];
            text += hexadecimalDigits[byte & 15U];
        } else {
            text += character;
        }
    }
    return text;
}

std::string decoded(const std::string& text) {
    std::string name;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '%' && i + 2 < text.size()) {
            name += static_cast<char>(std::stoi(text.substr(i + 1, 2), nullptr, 16));
            i += 2;
        } else {
            name += text[i];
        }
    }
    return name;
}

Json readJson(const std::string& path) {
    Json json = Json::parse(readWholeFile(path), nullptr, false);
    if (!json.is_object()) {
        throw Failure(formatMessage("{0} is damaged.", path));
    }
    return json;
}

/// Reads a file of the work directory. A value that is missing or has another type is a `Failure`.
template <typename Read>
auto readRecord(const std::string& path, const Read& read) {
    try {
        return read(readJson(path));
    } catch (const std::logic_error&) {
        throw Failure(formatMessage("{0} is damaged.", path));
    } catch (const Json::exception&) {
        throw Failure(formatMessage("{0} is damaged.", path));
    }
}

} // namespace

std::string scratchPrefix(const Job& job) {
    return "vadelshard-" + job.id + '-';
}

std::string scratchRoot() {
    for (const char* const name : {"SLURM_TMPDIR", "TMPDIR"}) {
        const char* const value = std::getenv(name);
        if (value != nullptr && *value != '\0') {
            return value;
        }
    }
    return "/tmp";
}

std::string WorkDirectory::output() const {
    return path.substr(0, path.size() - suffix.size());
}

bool WorkDirectory::isMergedAndRemoved() const {
    std::error_code error;
    return exists(output() + "/total_node_count.txt") &&
           std::all_of(std::filesystem::directory_iterator(path, error), std::filesystem::directory_iterator(),
                       [](const auto& entry) { return entry.path().filename() == "lock"; });
}

WorkDirectory workDirectoryAt(std::string path) {
    while (path.size() > 1 && path.ends_with('/')) {
        path.pop_back();
    }
    if (!path.ends_with(suffix) || path.size() == suffix.size()) {
        throw Failure(formatMessage("{0} is not the name of a work directory: it must end in .shards.", path));
    }
    return {path};
}

void writePlan(const std::string& directory, const Job& job, const std::vector<Shard>& shards) {
    for (std::size_t i = 0; i < shards.size(); ++i) {
        Json units = Json::array();
        for (const Unit& unit : shards[i]) {
            units.push_back({{"name", encoded(unit.name)},
                             {"begin", unit.begin},
                             {"end", unit.end},
                             {"size", unit.file.size},
                             {"modified", unit.file.modified}});
        }
        writeWholeFile(directory + '/' + std::to_string(i) + ".json", Json({{"units", units}}).dump());
    }
    const Json json = {{"id", job.id},
                       {"input_directory", encoded(job.inputDirectory)},
                       {"files", job.files},
                       {"wanted_shards", job.wantedShards},
                       {"units", job.units},
                       {"language", encoded(job.language)},
                       {"shards", shards.size()},
                       {"part", job.part}};
    writeWholeFile(directory + "/job.json", json.dump() + '\n');
}

Job readJob(const WorkDirectory& work) {
    // If the plan exists but cannot be reached, the failure to read it says why.
    if (!exists(work.plan()) && errno == ENOENT) {
        throw Failure(formatMessage("There is no plan in {0}. Run Vadelshard plan first.", work.path));
    }
    return readRecord(work.plan() + "/job.json", [](const Json& json) {
        return Job{json.at("id"),
                   decoded(json.at("input_directory")),
                   decoded(json.at("language")),
                   json.at("wanted_shards"),
                   json.at("part"),
                   json.at("shards"),
                   json.at("files"),
                   json.at("units")};
    });
}

Shard readShard(const WorkDirectory& work, std::uint64_t index) {
    return readRecord(work.plan() + '/' + std::to_string(index) + ".json", [](const Json& json) {
        Shard shard;
        for (const Json& unit : json.at("units")) {
            shard.push_back(
                {decoded(unit.at("name")), {unit.at("size"), unit.at("modified")}, unit.at("begin"), unit.at("end")});
        }
        return shard;
    });
}

void writeReport(const std::string& directory, const ShardReport& report) {
    const Json json = {{"kept_lines", report.keptLines}, {"output_sizes", report.outputSizes}};
    writeWholeFile(directory + "/report.json", json.dump() + '\n');
}

bool readReport(const WorkDirectory& work, std::uint64_t index, ShardReport& report) {
    const std::string path = work.done(index) + "/report.json";
    if (!exists(path)) {
        return false;
    }
    report = readRecord(path, [](const Json& json) {
        return ShardReport{json.at("kept_lines"), json.at("output_sizes")};
    });
    return true;
}

} // namespace vadelshard
