/// \file
/// The node files of a directory, cut into units and distributed over shards.
#pragma once

#include "shard/job.hpp"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace vadelshard {

/// Returns the first line of a file with its line end, byte order mark included, without reading further.
///
/// @return nothing if the line is longer than any header: the file is not a node file.
std::optional<std::string> rawFirstLine(const OpenFile& file);

/// Returns true if the tool selects a file with this first line.
bool isNodeFileLine(const std::string& rawLine);

struct InputScan {
    std::vector<Unit> files;             ///< Whole files with the suffix of a node file.
    std::vector<std::string> unreadable; ///< Names of files that the tool would skip because it cannot open them.
    bool hasNodeFile = false;            ///< The tool would select at least one of them.
};

/// Lists a directory once. Opens only as many files as needed to find the first node file.
///
/// @throws Failure for an entry with the suffix of a node file that is no regular file: the tool would read it, but it has
///         no size and cannot be read twice.
/// @throws boost::filesystem::filesystem_error where the tool would fail in the same way.
InputScan scanInput(const std::string& inputDirectory);

/// Compares the names of the node files with the plan: a file that is added after it would be left out silently.
///
/// @throws Failure if a file is new or missing.
void requireSameFiles(const WorkDirectory& work, const std::string& inputDirectory);

/// Cuts a file that is longer than `part` bytes after line feeds, by seeking to each place. A file whose first line is
/// too long for a header is left whole.
///
/// A part has at most `part` line feeds, so with 2^31 - 1 the 32-bit line count of the tool cannot wrap.
std::vector<Unit> cutIntoUnits(const std::string& inputDirectory, const Unit& wholeFile, std::uint64_t part);

/// Puts the units, largest first, each into the shard with the fewest bytes. The largest shard is the first one.
///
/// @return at most `wanted` shards, none of them empty.
std::vector<Shard> distribute(std::vector<Unit> units, std::uint64_t wanted);

} // namespace vadelshard
