#include "watch/run_summary.hpp"

#include "watch/show/messages.hpp"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
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

std::string numberText(std::optional<std::uint64_t> number) {
    return number ? groupedNumber(*number) : "-";
}

/// Returns the percentage of kept nodes, or nothing if the number of nodes read is 0 or one of the numbers is unknown.
std::optional<double> percentKept(const RunSummary& summary) {
    const std::optional<std::uint64_t> kept = summary.check->keptNodes();
    if (summary.nodesRead.value_or(0) == 0 || !kept) {
        return std::nullopt;
    }
    return 100.0 * static_cast<double>(*kept) / static_cast<double>(*summary.nodesRead);
}

std::string nodesText(const RunSummary& summary) {
    std::string kept = numberText(summary.check->keptNodes());
    if (!summary.nodesRead) {
        return kept;
    }
    const std::optional<double> percent = percentKept(summary);
    return formatMessage("{0} of {1} ({2} %)", kept, groupedNumber(*summary.nodesRead),
                         percent ? shareText(*percent) : "-");
}

/// Returns a line for each node file, with its figures before its name.
std::string filesText(const std::vector<InputFile>& files) {
    using Cells = std::array<std::string, 6>;
    std::vector<Cells> lines{{translateMessage("lines"), translateMessage("kept"), translateMessage("outside"),
                              translateMessage("unparsable"), translateMessage("bytes"),
                              translateMessage("node file")}};
    for (const InputFile& file : files) {
        const LineFigures& figures = file.figures;
        lines.push_back({groupedNumber(figures.count.nodeLines()), numberText(file.kept), numberText(file.outside()),
                         groupedNumber(figures.unparsable.count), groupedNumber(figures.count.bytes),
                         shownName(file.name)});
    }
    std::array<std::size_t, 5> widths{};
    for (const Cells& cells : lines) {
        for (std::size_t i = 0; i < widths.size(); ++i) {
            widths[i] = std::max(widths[i], columnsOf(cells[i]));
        }
    }
    std::string text;
    for (const Cells& cells : lines) {
        for (std::size_t i = 0; i < widths.size(); ++i) {
            text.append(2 + widths[i] - columnsOf(cells[i]), ' ');
            text += cells[i];
        }
        text += fmt::format("  {}\n", cells.back());
    }
    return text;
}

bool isDigit(int character) {
    return character >= '0' && character <= '9';
}

/// Wraps a sentence between words.
///
/// @param nextIndent of all lines but the first.
std::string wrapped(const std::string& sentence, const std::string& indent, const std::string& nextIndent,
                    std::size_t columns) {
    std::string text;
    std::string line = indent;
    std::istringstream words(sentence);
    for (std::string word, next; words >> word;) {
        // The space in a grouped number, such as 5 000.
        while (isDigit(word.back()) && isDigit((words >> std::ws).peek()) && words >> next) {
            word += ' ' + next;
        }
        const bool isFirst = line.find_first_not_of(' ') == std::string::npos;
        if (!isFirst && columnsOf(line) + 1 + columnsOf(word) > columns) {
            text += line + "\n";
            line = nextIndent;
        } else if (!isFirst) {
            line += ' ';
        }
        line += word;
    }
    return text + line + "\n";
}

/// Each value is next to its label, or below it if the table would be wider than the window. A path is never wrapped.
std::string tableText(const std::vector<Row>& rows, std::size_t columns) {
    std::size_t labelColumns = 0;
    std::size_t valueColumns = 0;
    for (const Row& row : rows) {
        labelColumns = std::max(labelColumns, columnsOf(row.label));
        valueColumns = std::max(valueColumns, row.isPath ? 0 : columnsOf(row.value));
    }
    const bool isWide = labelColumns + valueColumns + 4 <= columns;
    std::string text;
    for (const Row& row : rows) {
        const std::string_view colourEnd = row.colour.empty() ? "" : "\033[0m";
        if (isWide) {
            const std::string space(labelColumns - columnsOf(row.label) + 2, ' ');
            text += fmt::format("  {}{}{}{}{}\n", row.label, space, row.colour, row.value, colourEnd);
        } else {
            const std::string value =
                row.isPath ? fmt::format("    {}\n", row.value) : wrapped(row.value, "    ", "    ", columns);
            text += fmt::format("  {}\n{}{}{}", row.label, row.colour, value, colourEnd);
        }
    }
    return text;
}

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

/// Returns true if a number of lines differs from the count. A check fails also if one of them is unknown.
bool hasDifference(const OutputCheck& check) {
    return !check.directoryError && check.nodeCount && check.missingNodes() != 0;
}

std::string verdictOf(const OutputCheck& check) {
    if (check.addsUp) {
        return translateMessage("the lines add up to total_node_count.txt");
    }
    if (hasDifference(check)) {
        return translateMessage("the lines do not add up to total_node_count.txt");
    }
    if (check.directoryError) {
        return translateMessage("the output directory cannot be read");
    }
    if (check.nodeCount) {
        return translateMessage("not every output file can be counted");
    }
    return check.hasNodeCountFile ? translateMessage("total_node_count.txt holds no number")
                                  : translateMessage("there is no total_node_count.txt");
}

std::string headlineOf(const RunSummary& summary) {
    if (summary.check->addsUp) {
        return summary.record.closingText;
    }
    return hasDifference(*summary.check) ? translateMessage("Clipping ended, but its output does not add up")
                                         : translateMessage("Clipping ended, but its output cannot be checked");
}

} // namespace

std::string summaryText(const RunSummary& summary, std::size_t columns, bool colour) {
    const OutputCheck& check = *summary.check;
    const std::string_view verdictColour = check.addsUp ? "\033[32m" : "\033[31m";
    const std::vector<Row> rows{
        {translateMessage("Node files read"), groupedNumber(summary.record.passes)},
        {translateMessage("Files written"), check.directoryError ? "-" : groupedNumber(check.files.size())},
        {translateMessage("Nodes kept"), nodesText(summary)},
        {translateMessage("Time"), decimalNumber(summary.record.seconds, 1) + " s"},
        {translateMessage("Output directory"), shownName(summary.outputDirectory), true},
        {translateMessage("Check"), verdictOf(check), false, colour ? verdictColour : ""},
    };
    const std::string headline = headlineOf(summary);
    std::string text = (headline.empty() ? "" : wrapped(headline, "", "", columns)) + tableText(rows, columns);
    for (const std::string& sentence : inputSentences(summary.input)) {
        text += wrapped(sentence, "  ", "    ", columns);
    }
    return summary.options.verbose && !summary.input.files.empty() ? text + filesText(summary.input.files) : text;
}

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
        object["percent_kept"] = orNull(percentKept(summary));
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
