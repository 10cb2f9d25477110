#include "watch/run_summary_json.hpp"

#include <nlohmann/json.hpp>

#include <array>
#include <string_view>

namespace vadelwatch {

namespace {

using OrderedJson = nlohmann::ordered_json;

template <typename Value>
OrderedJson orNull(const std::optional<Value>& value) {
    return value ? OrderedJson(*value) : OrderedJson();
}

OrderedJson orNull(const std::string& text) {
    return text.empty() ? OrderedJson() : OrderedJson(text);
}

OrderedJson orNull(int signal) {
    return signal == 0 ? OrderedJson() : OrderedJson(signal);
}

/// Returns a text without the name that begins a line on standard error.
std::string withoutProgram(const std::string& text) {
    constexpr std::string_view program = "Vadelwatch: ";
    return text.starts_with(program) ? text.substr(program.size()) : text;
}

OrderedJson linesJson(const FoundLines& lines) {
    return {{"count", lines.count}, {"first_line", lines.count == 0 ? OrderedJson() : OrderedJson(lines.first)}};
}

OrderedJson extentJson(const MapExtent& extent) {
    return isEmpty(extent) ? OrderedJson() : OrderedJson{extent.minX, extent.minY, extent.maxX, extent.maxY};
}

const char* nameOf(PassedOver reason) {
    constexpr std::array names{"suffix",
                               "capitals in the suffix",
                               "directory",
                               "unreadable",
                               "empty first line",
                               "first line without end",
                               "header: first character",
                               "header: separator",
                               "header: columns"};
    return names.at(static_cast<std::size_t>(reason));
}

const char* nameOf(NothingKeptReason reason) {
    constexpr std::array names{
        "no polygon", "fewer than three points", "no position", "x and y exchanged", "no overlap", "outside",
        "unknown"};
    return names.at(static_cast<std::size_t>(reason));
}

OrderedJson inputJson(const InputReport& input) {
    OrderedJson passedOver = OrderedJson::array();
    for (const PassedOverEntry& entry : input.passedOver) {
        passedOver.push_back({{"name", entry.name}, {"reason", nameOf(entry.reason)}});
    }
    OrderedJson files = OrderedJson::array();
    for (const InputFile& file : input.files) {
        const LineFigures& figures = file.figures;
        files.push_back({{"name", file.name},
                         {"bytes", figures.count.bytes},
                         {"lines", figures.count.nodeLines()},
                         {"kept", orNull(file.kept)},
                         {"dropped_outside", orNull(file.outside())},
                         {"dropped_unparsable", linesJson(figures.unparsable)},
                         {"decimal_commas", linesJson(figures.decimalCommas)},
                         {"ends_in_line_feed", figures.count.endsInLineFeed},
                         {"looks_exchanged", file.looksExchanged}});
    }
    OrderedJson nothingKept;
    if (input.nothingKept) {
        nothingKept = {{"reason", nameOf(input.nothingKept->reason)},
                       {"nodes", extentJson(input.nothingKept->nodes)},
                       {"nodes_are_sampled", input.nothingKept->isSampled},
                       {"boundary", extentJson(input.nothingKept->boundary)}};
    }
    return {{"passed_over", passedOver},
            {"files", files},
            {"nothing_kept", nothingKept},
            {"sentences", inputSentences(input)}};
}

OrderedJson suspectsJson(const std::vector<Suspect>& suspects) {
    OrderedJson list = OrderedJson::array();
    for (const Suspect& suspect : suspects) {
        list.push_back({{"file", orNull(suspect.file)}, {"reason", suspect.text}});
    }
    return list;
}

} // namespace

std::string summaryJson(const RunSummary& summary) {
    const RunRecord& record = summary.record;
    // Begins as an object, not as null: if memory runs out while null is converted, the library destroys an object that
    // does not exist.
    OrderedJson object = OrderedJson::object();
    object["finished"] = summary.finished;
    object["exit_status"] = summary.exitStatus;
    for (const char* const key :
         {"files_read", "files_written", "nodes_read", "nodes_kept", "percent_kept", "total_node_count", "adds_up"}) {
        object[key] = nullptr;
    }
    if (summary.check) {
        object["files_read"] = record.passes;
        if (!summary.check->directoryError) {
            object["files_written"] = summary.check->files.size();
        }
        object["nodes_read"] = orNull(summary.nodesRead);
        object["nodes_kept"] = orNull(summary.check->keptNodes());
        object["percent_kept"] = orNull(summary.percentKept());
        object["total_node_count"] = orNull(summary.check->nodeCount);
        object["adds_up"] = summary.check->addsUp;
    }
    object["seconds"] = record.seconds;
    object["output_directory"] = summary.outputDirectory;
    object["errors"] = record.errors;
    object["failure"] = orNull(withoutProgram(summary.failure));
    object["signal"] = orNull(record.end.signal);
    object["interrupted_by"] = orNull(record.interruptedBy);
    object["suspects"] = suspectsJson(summary.suspects);
    object["map"] = summary.whyNoMap.empty() ? orNull(summary.options.mapPath) : OrderedJson();
    object["why_no_map"] = orNull(withoutProgram(summary.whyNoMap));
    object["arguments"] = {{"input_directory_path", summary.options.inputDirectoryPath},
                           {"output_directory_name", summary.options.outputDirectoryName},
                           {"boundary_file_path", summary.options.boundaryFilePath}};
    object["language"] = summary.options.language.value_or("de");
    object["version"] = VADELWATCH_VERSION;
    object["start_time"] = summary.startTime;
    object["input"] = inputJson(summary.input);
    return object.dump(-1, ' ', false, OrderedJson::error_handler_t::replace) + '\n';
}

} // namespace vadelwatch
