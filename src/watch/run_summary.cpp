#include "watch/run_summary.hpp"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <utility>

namespace {

using Json = nlohmann::ordered_json;
using Row = std::pair<std::string, std::string>;

/// Percent of the nodes read, where that has a meaning.
std::optional<double> percentKept(const RunSummary& summary) {
    if (!summary.nodesRead || *summary.nodesRead == 0) {
        return std::nullopt;
    }
    return 100.0 * static_cast<double>(summary.nodesKept) / static_cast<double>(*summary.nodesRead);
}

std::string nodesText(const RunSummary& summary, const WatchTexts& texts) {
    const std::string kept = groupedNumber(summary.nodesKept);
    if (!summary.nodesRead) {
        return kept;
    }
    const std::optional<double> percent = percentKept(summary);
    return fmt::format(fmt::runtime(texts.keptOfRead), kept, groupedNumber(*summary.nodesRead),
                       percent ? decimalNumber(*percent, 1, texts) : "-");
}

/// Columns of a label; its letters are one column wide each.
std::size_t columnsOf(const std::string& label) {
    return static_cast<std::size_t>(
        std::count_if(label.begin(), label.end(), [](char byte) { return (byte & 0xC0) != 0x80; }));
}

std::string alignedRows(const std::vector<Row>& rows) {
    std::size_t widest = 0;
    for (const Row& row : rows) {
        widest = std::max(widest, columnsOf(row.first));
    }
    std::string text;
    for (const Row& row : rows) {
        text += "  " + row.first + std::string(widest - columnsOf(row.first) + 2, ' ') + row.second + "\n";
    }
    return text;
}

template <typename Value>
Json orNull(const std::optional<Value>& value) {
    return value ? Json(*value) : Json();
}

} // namespace

std::string summaryText(const RunSummary& summary, const WatchTexts& texts) {
    const std::string title = summary.closingText.empty() ? "" : summary.closingText + "\n";
    return title + alignedRows({
                       {texts.filesRead, groupedNumber(summary.filesRead)},
                       {texts.filesWritten, groupedNumber(summary.filesWritten)},
                       {texts.nodesKept, nodesText(summary, texts)},
                       {texts.time, fmt::format(fmt::runtime(texts.seconds), decimalNumber(summary.seconds, 1, texts))},
                       {texts.outputDirectory, summary.outputDirectory},
                       {texts.check, summary.addsUp ? texts.checkPassed : texts.checkFailed},
                   });
}

std::string summaryJson(const RunSummary& summary) {
    const bool finished = summary.finished;
    Json object;
    object["finished"] = finished;
    object["exit_status"] = summary.exitStatus;
    object["files_read"] = finished ? Json(summary.filesRead) : Json();
    object["files_written"] = finished ? Json(summary.filesWritten) : Json();
    object["nodes_read"] = finished ? orNull(summary.nodesRead) : Json();
    object["nodes_kept"] = finished ? Json(summary.nodesKept) : Json();
    object["percent_kept"] = finished ? orNull(percentKept(summary)) : Json();
    object["total_node_count"] = finished ? orNull(summary.nodeCount) : Json();
    object["adds_up"] = finished ? Json(summary.addsUp) : Json();
    object["seconds"] = summary.seconds;
    object["output_directory"] = summary.outputDirectory;
    object["errors"] = summary.errors;
    return object.dump(-1, ' ', false, Json::error_handler_t::replace) + '\n';
}
