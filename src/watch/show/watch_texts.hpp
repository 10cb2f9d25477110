/// \file
/// What Vadelwatch itself says, in English and in German. Placeholders are those of fmt.
///
/// The tool's own texts come from its catalogues; help and usage errors are English in every language.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace vadelwatch {

/// What stands in the map, and why there is none.
struct MapTexts {
    const char* title; ///< {0} last component of the input directory, {1} of the boundary file.

    // The legend.
    const char* kept;
    const char* keptShare; ///< {0} percent.
    const char* dropped;
    const char* boundary;
    const char* node;  ///< {0} is one.
    const char* nodes; ///< {0} how many, here and below.
    const char* polygon;
    const char* polygons;
    const char* darker;
    const char* beyond; ///< {0} `node` or `nodes`.
    const char* lineWithoutPosition;
    const char* linesWithoutPosition;
    const char* coordinateUnits;

    // Sentences.
    const char* boundaryUnreadable; ///< {0} path, {1} reason: one of the next two, or the words of a library.
    const char* isDirectory;
    const char* fileNotFound;
    const char* boundaryPoint;    ///< {0} path.
    const char* inputUnreadable;  ///< {0} path.
    const char* outputUnreadable; ///< {0} path.
    const char* strangeLines;     ///< {0} path of an output file.
    const char* nothingToDraw;
    const char* pictureUnwritten; ///< {0} path, {1} reason.
    const char* pictureUndrawn;   ///< {0} path, {1} reason.
};

struct WatchTexts {
    char decimalPoint;

    // The line of progress.
    const char* linesPerSecond;
    const char* elapsed;
    const char* remaining;

    // The summary.
    const char* filesRead;
    const char* filesWritten;
    const char* nodesKept;
    const char* keptOfRead; ///< {0} kept, {1} read, {2} percent.
    const char* time;
    const char* seconds; ///< {0} seconds.
    const char* outputDirectory;
    const char* check;
    const char* checkPassed;
    const char* checkFailed;

    // Ends that are not the tool's own.
    const char* cannotStart;         ///< {0} path of the tool, {1} reason.
    const char* unknownDirectory;    ///< where the executable stands cannot be found out
    const char* notWatched;          ///< {0} reason.
    const char* endedBySignal;       ///< {0} name of the signal, {1} its number.
    const char* unknownStatus;       ///< {0} exit status.
    const char* interrupted;         ///< {0} name of the signal that asked for the end.
    const char* interruptedStatus;   ///< {0} the same, {1} exit status.
    const char* interruptedFinished; ///< {0} the same.
    const char* notComplete;         ///< {0} path of the output directory.
    const char* cannotWrite; ///< {0} path of the log or map, {1} reason: one of the next three, or the system's.
    const char* runReadsIt;
    const char* runMakesIt;
    const char* isTheMap;
    const char* cannotWriteSummary; ///< {0} reason.

    // The check.
    const char* linesDiffer;      ///< {0} lines found, {1} count of the tool, {2} lines missing.
    const char* linesTooMany;     ///< {0} lines found, {1} count of the tool, {2} lines too many.
    const char* linesUncounted;   ///< {0} lines found.
    const char* noNodeCount;      ///< {0} lines found.
    const char* noNodeCountFile;  ///< {0} lines found.
    const char* outputUnreadable; ///< {0} path of the output directory, {1} reason.
    const char* fileEmpty;        ///< {0} name.
    const char* fileCut;          ///< {0} name, {1} complete lines in it.
    const char* fileWithoutNode;  ///< {0} name.
    const char* fileUnreadable;   ///< {0} name.
    const char* fileNotRegular;   ///< {0} name.
    const char* fileIsDirectory;  ///< {0} name.
    const char* fileMissing;      ///< {0} name of the node file.
    const char* moreFilesMissing; ///< {0} how many.
    const char* fileWithoutInput; ///< {0} name.
    const char* headerRejected;   ///< {0} how many.
    const char* countOverwrites;  ///< no argument
    const char* inputChanged;     ///< {0} name.
    const char* diskFull;         ///< {0} path of the output directory.
    const char* noInodes;         ///< {0} the same.
    const char* notWritable;      ///< {0} the same, {1} reason.
    const char* noOutputFile;     ///< no argument
    const char* noSuspect;        ///< no argument

    MapTexts map;
};

/// Texts to go with the language the tool is asked for: German where the tool speaks German in UTF-8, English
/// otherwise.
const WatchTexts& watchTexts(const std::optional<std::string>& language);

/// A text with these values, as `shownName` has them, in the places of its placeholders.
std::string filledIn(const char* text, const std::vector<std::string>& values);

/// Digits in groups of three with blanks between them, which no language takes for a decimal sign.
std::string groupedNumber(std::uint64_t number);

/// A number with so many decimals and the decimal sign of the language.
std::string decimalNumber(double number, int decimals, const WatchTexts& texts);

} // namespace vadelwatch
