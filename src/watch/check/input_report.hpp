/// \file
/// The input report: what the tool did not take from the input directory, and what looks wrong in it.
#pragma once

#include "watch/check/node_files.hpp"
#include "watch/check/output_check.hpp"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace vadelwatch {

/// The likely reason why a run kept no node.
enum class NothingKeptReason { noPolygon, fewVertices, noPosition, exchanged, noOverlap, outside, unknown };

struct NothingKept {
    NothingKeptReason reason = NothingKeptReason::outside;
    MapExtent nodes; ///< Of the positions that were read; empty if there are none.
    MapExtent boundary;
    bool isSampled = false; ///< Not every position was read.
};

struct InputFile {
    std::string name;
    LineFigures figures;
    std::optional<std::uint64_t> kept; ///< Lines of its output file. Unknown if the file cannot be read.
    bool looksExchanged = false;       ///< See docs/vadelwatch.md.
    bool addsUp = true;                ///< The whole output adds up, so no kept line is lost.

    /// Returns the number of lines that parse and were not kept. Unknown if kept lines may be lost.
    std::optional<std::uint64_t> outside() const;
};

struct InputReport {
    std::vector<InputFile> files; ///< Empty if not every node file could be read.
    std::vector<PassedOverEntry> passedOver;
    std::uint64_t entries = 0; ///< Node files and entries that were passed over.
    std::optional<NothingKept> nothingKept;
};

/// Reports on the input of a run that did not finish: entries only.
InputReport reportEntries(const NodeFiles& nodeFiles);

/// Reports on the input of a finished run. Reads no node file. Reads the boundary file only if a node file has
/// no output.
InputReport reportInput(const NodeFiles& nodeFiles, const OutputCheck& check, const std::string& boundaryFile);

/// Returns one sentence for each finding that a reader should know. A warning about a run that kept nothing is first.
std::vector<std::string> inputSentences(const InputReport& report);

} // namespace vadelwatch
