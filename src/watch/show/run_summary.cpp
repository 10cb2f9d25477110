#include "watch/show/run_summary.hpp"

#include "watch/show/messages.hpp"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <sstream>

namespace vadelwatch {

namespace {

using OrderedJson = nlohmann::ordered_json;

struct Row {
    std::string label;
    std::string value;
    bool isPath = false;
    std::string_view colour{}; ///< Escape sequence, or empty.
};

/// Returns the share of the nodes read, or nothing if their number is 0 or unknown.
std::optional<double> percentKept(const RunSummary& summary) {
    if (!summary.nodesRead || *summary.nodesRead == 0) {
        return std::nullopt;
    }
    return 100.0 * static_cast<double>(summary.nodesKept) / static_cast<double>(*summary.nodesRead);
}

std::string nodesText(const RunSummary& summary) {
    std::string kept = groupedNumber(summary.nodesKept);
    if (!summary.nodesRead) {
        return kept;
    }
    const std::optional<double> percent = percentKept(summary);
    return formatMessage("{0} of {1} ({2} %)", kept, groupedNumber(*summary.nodesRead),
                         percent ? decimalNumber(*percent, 1) : "-");
}

/// Wraps a sentence between words.
std::string wrapped(const std::string& sentence, const std::string& indent, std::size_t columns) {
    std::string text;
    std::string line = indent;
    std::istringstream words(sentence);
    for (std::string word; words >> word;) {
        if (line.size() > indent.size() && columnsOf(line) + 1 + columnsOf(word) > columns) {
            text += line + "\n";
            line = indent;
        }
        line += (line.size() > indent.size() ? " " : "") + word;
    }
    return text + line + "\n";
}

std::string_view colourEnd(const Row& row) {
    return row.colour.empty() ? "" : "\033[0m";
}

std::string alignedRows(const std::vector<Row>& rows, std::size_t labelColumns) {
    std::string text;
    for (const Row& row : rows) {
        const std::string space(labelColumns - columnsOf(row.label) + 2, ' ');
        text += fmt::format("  {}{}{}{}{}\n", row.label, space, row.colour, row.value, colourEnd(row));
    }
    return text;
}

std::string stackedRows(const std::vector<Row>& rows, std::size_t columns) {
    std::string text;
    for (const Row& row : rows) {
        text += fmt::format("  {}\n", row.label);
        text += row.colour;
        text += row.isPath ? fmt::format("    {}\n", row.value) : wrapped(row.value, "    ", columns);
        text += colourEnd(row);
    }
    return text;
}

std::string tableText(const std::vector<Row>& rows, std::size_t columns) {
    std::size_t labelColumns = 0;
    std::size_t valueColumns = 0;
    for (const Row& row : rows) {
        labelColumns = std::max(labelColumns, columnsOf(row.label));
        // A path is never wrapped, so its width does not matter.
        valueColumns = std::max(valueColumns, row.isPath ? 0 : columnsOf(row.value));
    }
    return labelColumns + valueColumns + 4 <= columns ? alignedRows(rows, labelColumns) : stackedRows(rows, columns);
}

template <typename Value>
OrderedJson orNull(const std::optional<Value>& value) {
    return value ? OrderedJson(*value) : OrderedJson();
}

} // namespace

std::string summaryText(const RunSummary& summary, std::size_t columns, bool colour) {
    const std::string_view verdict = summary.addsUp ? "\033[32m" : "\033[31m";
    const std::string check = summary.addsUp ? translateMessage("the lines add up to total_node_count.txt")
                                             : translateMessage("the lines do not add up to total_node_count.txt");
    const std::vector<Row> rows{
        {translateMessage("Node files read"), groupedNumber(summary.filesRead)},
        {translateMessage("Files written"), groupedNumber(summary.filesWritten)},
        {translateMessage("Nodes kept"), nodesText(summary)},
        {translateMessage("Time"), decimalNumber(summary.seconds, 1) + " s"},
        {translateMessage("Output directory"), shownName(summary.outputDirectory), true},
        {translateMessage("Check"), check, false, colour ? verdict : ""},
    };
    const std::string headline =
        summary.addsUp ? summary.closingText : translateMessage("Clipping ended, but its output does not add up");
    const std::string title = headline.empty() ? "" : wrapped(headline, "", columns);
    return title + tableText(rows, columns);
}

std::string summaryJson(const RunSummary& summary) {
    const bool finished = summary.finished;
    // Not null at first: without memory for its conversion the library would destroy an object that is not there.
    OrderedJson object = OrderedJson::object();
    object["finished"] = finished;
    object["exit_status"] = summary.exitStatus;
    object["files_read"] = finished ? OrderedJson(summary.filesRead) : OrderedJson();
    object["files_written"] = finished ? OrderedJson(summary.filesWritten) : OrderedJson();
    object["nodes_read"] = finished ? orNull(summary.nodesRead) : OrderedJson();
    object["nodes_kept"] = finished ? OrderedJson(summary.nodesKept) : OrderedJson();
    object["percent_kept"] = finished ? orNull(percentKept(summary)) : OrderedJson();
    object["total_node_count"] = finished ? orNull(summary.nodeCount) : OrderedJson();
    object["adds_up"] = finished ? OrderedJson(summary.addsUp) : OrderedJson();
    object["seconds"] = summary.seconds;
    object["output_directory"] = summary.outputDirectory;
    object["errors"] = summary.errors;
    return object.dump(-1, ' ', false, OrderedJson::error_handler_t::replace) + '\n';
}

} // namespace vadelwatch
