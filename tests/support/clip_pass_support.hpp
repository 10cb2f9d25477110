/// \file
/// One clip pass and all its results.
#pragma once

#include "boundary/boundary_set.hpp"
#include "support/boundary_support.hpp"
#include "support/expected_calls_support.hpp"
#include "support/file_support.hpp"

#include <cstdint>
#include <ostream>
#include <string>
#include <vector>

namespace vadelclip {

struct PassOutcome {
    std::int32_t keptNodes = 0;
    FileTree outputDirectory;
    std::string console;
    Calls calls;

    bool operator==(const PassOutcome&) const = default;
};

std::ostream& operator<<(std::ostream& output, const PassOutcome& outcome);

/// A pass from in/a.xyz to out/a.xyz in a new directory. The directories `in` and `out` exist, the files do not.
class ClipPass {
public:
    ClipPass() : boundary(setOf({counterClockwiseSquare})) {
        directory.makeDirectory("in");
        directory.makeDirectory("out");
    }

    /// Runs the pass and returns its results. Expects that nothing outside of the output directory changes.
    PassOutcome run(std::int32_t lineCount, double linesDone, std::int32_t totalLines);

    /// Runs the pass of a run over this one file.
    PassOutcome run(std::int32_t lineCount) { return run(lineCount, 0.0, lineCount); }

    /// Writes the input first.
    PassOutcome run(const std::string& input, std::int32_t lineCount) {
        directory.write("in/a.xyz", input);
        return run(lineCount);
    }

    /// Returns the calls of the last pass, even if it ended in an exception.
    static Calls callsSoFar();

    TemporaryDirectory directory;
    BoundarySet boundary;
    std::string inputPath = directory.pathOf("in/a.xyz");
    std::string outputPath = directory.pathOf("out/a.xyz");
};

} // namespace vadelclip
