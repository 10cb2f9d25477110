#include "watch/watch_texts.hpp"

#include "watch/shown_name.hpp"

#include <fmt/args.h>
#include <fmt/format.h>

#include <cctype>

namespace {

constexpr WatchTexts english = {
    .decimalPoint = '.',
    .linesPerSecond = "lines/s",
    .elapsed = "elapsed",
    .remaining = "left",
    .filesRead = "Node files read",
    .filesWritten = "Files written",
    .nodesKept = "Nodes kept",
    .keptOfRead = "{0} of {1} ({2} %)",
    .time = "Time",
    .seconds = "{0} s",
    .outputDirectory = "Output directory",
    .check = "Check",
    .checkPassed = "the lines add up to total_node_count.txt",
    .checkFailed = "the lines do not add up to total_node_count.txt",
    .cannotStart = "Vadelwatch: cannot start {0}: {1}",
    .unknownDirectory = "Vadelwatch: cannot find out where Vadelclip stands: /proc/self/exe cannot be read",
    .endedBySignal = "Vadelwatch: Vadelclip was ended by signal {1} (SIG{0}).",
    .unknownStatus = "Vadelwatch: Vadelclip ended abnormally, with exit status {0}.",
    .interrupted = "Vadelwatch: interrupted by SIG{0}, Vadelclip has ended.",
    .interruptedStatus = "Vadelwatch: interrupted by SIG{0}, Vadelclip has ended with exit status {1}.",
    .interruptedFinished = "Vadelwatch: interrupted by SIG{0}, Vadelclip finished all the same.",
    .notComplete = " The output in {0} is not complete.",
    .cannotWrite = "Vadelwatch: cannot write {0}",
    .cannotWriteSummary = "Vadelwatch: cannot write the summary: {0}",
    .linesDiffer = "Vadelwatch: the output files hold {0} nodes, total_node_count.txt says {1}: {2} are missing.",
    .linesTooMany = "Vadelwatch: the output files hold {0} nodes, total_node_count.txt says {1}: {2} too many.",
    .noNodeCount =
        "Vadelwatch: the output files hold {0} nodes, and total_node_count.txt holds no number to compare with.",
    .noNodeCountFile =
        "Vadelwatch: the output files hold {0} nodes, and there is no total_node_count.txt to compare with.",
    .outputUnreadable = "Vadelwatch: the output directory {0} cannot be read: {1}",
    .fileEmpty = "  {0}: empty, without even its header",
    .fileCut = "  {0}: its last line is cut off, {1} whole nodes before it",
    .fileWithoutNode = "  {0}: a header and no node; the tool leaves no such file",
    .fileUnreadable = "  {0}: cannot be read",
    .fileNotRegular = "  {0}: not a regular file, its lines cannot be counted",
    .headerRejected = "  {0} of the node files lost the header during the run: each counts 1 and has no lines",
    .countOverwrites =
        "  total_node_count.txt: also the name of a node file; its nodes count, and its output was overwritten",
    .inputChanged = "  {0}: the node file was changed during the run",
    .diskFull = "  No space is left on the file system of {0}.",
    .noOutputFile = "  There is no output file.",
    .noSuspect = "  Every file looks whole, so which one the difference belongs to cannot be told.",
};

constexpr WatchTexts german = {
    .decimalPoint = ',',
    .linesPerSecond = "Zeilen/s",
    .elapsed = "vergangen",
    .remaining = "übrig",
    .filesRead = "Punktdateien gelesen",
    .filesWritten = "Dateien geschrieben",
    .nodesKept = "Punkte behalten",
    .keptOfRead = "{0} von {1} ({2} %)",
    .time = "Zeit",
    .seconds = "{0} s",
    .outputDirectory = "Ausgabeverzeichnis",
    .check = "Prüfung",
    .checkPassed = "die Zeilen ergeben total_node_count.txt",
    .checkFailed = "die Zeilen ergeben nicht total_node_count.txt",
    .cannotStart = "Vadelwatch: {0} kann nicht gestartet werden: {1}",
    .unknownDirectory = "Vadelwatch: wo Vadelclip liegt, ist unbekannt: /proc/self/exe ist nicht lesbar",
    .endedBySignal = "Vadelwatch: Vadelclip wurde durch Signal {1} (SIG{0}) beendet.",
    .unknownStatus = "Vadelwatch: Vadelclip endete außerplanmäßig, mit Status {0}.",
    .interrupted = "Vadelwatch: abgebrochen durch SIG{0}, Vadelclip ist beendet.",
    .interruptedStatus = "Vadelwatch: abgebrochen durch SIG{0}, Vadelclip endete mit Status {1}.",
    .interruptedFinished = "Vadelwatch: unterbrochen durch SIG{0}, Vadelclip ist trotzdem fertig geworden.",
    .notComplete = " Die Ausgabe in {0} ist nicht vollständig.",
    .cannotWrite = "Vadelwatch: {0} kann nicht geschrieben werden",
    .cannotWriteSummary = "Vadelwatch: die Zusammenfassung kann nicht geschrieben werden: {0}",
    .linesDiffer = "Vadelwatch: die Ausgabedateien enthalten {0} Punkte, total_node_count.txt sagt {1}: {2} fehlen.",
    .linesTooMany = "Vadelwatch: die Ausgabedateien enthalten {0} Punkte, total_node_count.txt sagt {1}: {2} zu viel.",
    .noNodeCount =
        "Vadelwatch: die Ausgabedateien enthalten {0} Punkte, und total_node_count.txt enthält keine Zahl zum "
        "Vergleich.",
    .noNodeCountFile =
        "Vadelwatch: die Ausgabedateien enthalten {0} Punkte, und es gibt kein total_node_count.txt zum Vergleich.",
    .outputUnreadable = "Vadelwatch: das Ausgabeverzeichnis {0} kann nicht gelesen werden: {1}",
    .fileEmpty = "  {0}: leer, auch ohne Kopfzeile",
    .fileCut = "  {0}: die letzte Zeile ist abgeschnitten, davor {1} ganze Punkte",
    .fileWithoutNode = "  {0}: eine Kopfzeile und kein Punkt; so lässt das Werkzeug keine Datei zurück",
    .fileUnreadable = "  {0}: nicht lesbar",
    .fileNotRegular = "  {0}: keine gewöhnliche Datei, ihre Zeilen sind nicht zählbar",
    .headerRejected =
        "  {0} der Punktdateien verloren während des Laufs die Kopfzeile: jede zählt 1 und hat keine Zeilen",
    .countOverwrites = "  total_node_count.txt: auch der Name einer Punktdatei; ihre Punkte zählen, ihre Ausgabe wurde "
                       "überschrieben",
    .inputChanged = "  {0}: die Punktdatei wurde während des Laufs verändert",
    .diskFull = "  Auf dem Dateisystem von {0} ist kein Platz mehr.",
    .noOutputFile = "  Es gibt keine Ausgabedatei.",
    .noSuspect = "  Jede Datei sieht ganz aus; zu welcher der Unterschied gehört, ist nicht festzustellen.",
};

} // namespace

const WatchTexts& watchTexts(const std::optional<std::string>& language) {
    if (!language) {
        return german;
    }
    const std::string folder = language->substr(0, 2);
    const bool named = folder == "de" || folder == "DE" || folder == "De" || folder == "dE";
    const bool ends = language->size() <= 2 || std::isalnum(static_cast<unsigned char>((*language)[2])) == 0;
    return named && ends ? german : english;
}

std::string filledIn(const char* text, const std::vector<std::string>& values) {
    fmt::dynamic_format_arg_store<fmt::format_context> arguments;
    for (const std::string& value : values) {
        arguments.push_back(shownName(value));
    }
    return fmt::vformat(text, arguments);
}

std::string groupedNumber(std::uint64_t number) {
    std::string digits = std::to_string(number);
    for (std::size_t at = digits.size(); at > 3; at -= 3) {
        digits.insert(at - 3, 1, ' ');
    }
    return digits;
}

std::string decimalNumber(double number, int decimals, const WatchTexts& texts) {
    std::string digits = fmt::format("{:.{}f}", number, decimals);
    const std::size_t point = digits.find('.');
    if (point != std::string::npos) {
        digits[point] = texts.decimalPoint;
    }
    return digits;
}
