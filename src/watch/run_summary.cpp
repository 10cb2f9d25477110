#include "watch/run_summary.hpp"

#include "watch/show/messages.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <sstream>

namespace vadelwatch {

namespace {

struct Row {
    std::string label;
    std::string value;
    bool isPath = false;
    std::string_view colour{}; ///< Escape sequence, or empty.
};

std::string numberText(std::optional<std::uint64_t> number) {
    return number ? groupedNumber(*number) : "-";
}

std::string nodesText(const RunSummary& summary) {
    std::string kept = numberText(summary.check->keptNodes());
    if (!summary.nodesRead) {
        return kept;
    }
    const std::optional<double> percent = summary.percentKept();
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

std::optional<double> RunSummary::percentKept() const {
    const std::optional<std::uint64_t> kept = check->keptNodes();
    if (nodesRead.value_or(0) == 0 || !kept) {
        return std::nullopt;
    }
    return 100.0 * static_cast<double>(*kept) / static_cast<double>(*nodesRead);
}

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

} // namespace vadelwatch
