/// \file
/// Compares a whole run with the plain run. The input is a boundary file and then any number of node files, with \x1C
/// before each. The first line of a node file is its name; a name that ends in "/" makes a directory.

#include "fuzz_target.hpp"

#include "boundary/boundary_reader.hpp"
#include "support/boundary_file_support.hpp"
#include "support/plain_run_support.hpp"
#include "support/plain_text_support.hpp"

#include <algorithm>

namespace vadelclip {

namespace {

constexpr char sectionMark = '\x1C';

std::vector<std::string> sectionsOf(const std::string& bytes) {
    std::vector<std::string> sections = {""};
    for (const char byte : bytes) {
        if (byte == sectionMark) {
            sections.emplace_back();
        } else {
            sections.back() += byte;
        }
    }
    return sections;
}

/// Makes a node file or a directory of a section. A name that cannot be one is left out.
void addEntry(const ClipRun& job, const std::string& section) {
    const std::size_t lineFeed = section.find('\n');
    std::string name = section.substr(0, std::min<std::size_t>(lineFeed, 40));
    const bool isDirectory = name.ends_with('/');
    std::erase_if(name, [](char byte) { return byte == '/' || byte == '\0'; });
    const std::string path = "base/data/" + name;
    if (name.empty() || name == "." || name == ".." || job.directory.tree().contains(path + "/")) {
        return;
    }
    if (!isDirectory) {
        job.directory.write(path, lineFeed == std::string::npos ? "" : section.substr(lineFeed + 1));
    } else if (!job.directory.tree().contains(path)) {
        job.directory.makeDirectory(path);
    }
}

/// The run stops with the reader's own message and a second one.
RunOutcome outcomeWithoutBoundary(const ClipRun& job, const Reading& boundary) {
    const std::string second = "Boundary file " + job.boundaryFilePath + " does not exist";
    return {1, "", boundary.console + second + "\n", joined({boundary.calls, errorCalls(second)}), {}};
}

/// Returns the lines, cut at line feeds only: a carriage return in the output has been kept.
std::vector<std::string> writtenLines(const std::string& output) {
    std::vector<std::string> lines;
    std::istringstream stream(output);
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(line);
    }
    return lines;
}

/// Requires what holds for every output file: it is the header line of the input, and some of its lines in order.
/// @return the number of kept lines.
std::size_t checkOutputFile(const std::string& input, const std::string& output) {
    const std::vector<std::string> given = terminatedLines(input);
    const std::vector<std::string> kept = writtenLines(output);
    require(output.ends_with('\n') && kept.size() >= 2, "an output file without a kept line");
    requireSameText(given.front(), kept.front(), "header line");
    auto position = given.begin();
    for (const std::string& line : kept) {
        position = std::find(position, given.end(), line);
        require(position != given.end(), "not a line of the input, or out of order");
        ++position;
    }
    return kept.size() - 1;
}

void checkFinishedRun(const ClipRun& job, const FileTree& created) {
    std::size_t total = 0;
    bool countIsReadable = true;
    for (const auto& [path, content] : created) {
        const std::string name = path.substr(std::string("base/out/").size());
        if (name == "total_node_count.txt") {
            // A node file of this name has been clipped into the same place; its lines are in the total.
            countIsReadable = !job.directory.tree().contains("base/data/" + name);
        } else if (!name.empty()) {
            total += checkOutputFile(readFile(job.directory.pathOf("base/data/" + name)), content);
        }
    }
    if (countIsReadable) {
        requireEqual(std::to_string(total) + "\n", created.at("base/out/total_node_count.txt"), "the count");
    }
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::vector<std::string> sections = sectionsOf(InputBytes(data, size).rest());
    ClipRun job;
    job.directory.write("area.xml", sections.front());
    std::for_each(sections.begin() + 1, sections.end(), [&job](const std::string& section) { addEntry(job, section); });

    const Reading boundary = readBoundaryAt(job.boundaryFilePath);
    const RunOutcome expected =
        boundary.succeeded ? plainRun(job, boundary.set) : outcomeWithoutBoundary(job, boundary);
    const RunOutcome got = job.run();
    requireEqual(expected, got, "the run");
    if (got.result == 0) {
        checkFinishedRun(job, got.created);
    }
    return 0;
}

} // namespace vadelclip
