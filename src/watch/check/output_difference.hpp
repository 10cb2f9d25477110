/// \file
/// Explains a difference between the lines of the output files and the count that the tool wrote.
#pragma once

#include "watch/check/output_check.hpp"

#include <cstddef>
#include <string>
#include <vector>

namespace vadelwatch {

/// Facts about a run that may explain a difference, in addition to its output.
struct RunEvidence {
    const NodeFiles& nodeFiles;  ///< As they were when the run began.
    std::size_t rejectedHeaders; ///< The number of errors: a finished run reports no others.
    std::string outputDirectory;
};

/// A possible reason of a difference.
struct Suspect {
    std::string file; ///< Empty if it is not one file.
    std::string text; ///< Begins with the name of the file.
};

struct Difference {
    std::string size; ///< Empty if everything adds up.
    std::vector<Suspect> suspects;
};

Difference findDifference(const OutputCheck& check, const RunEvidence& evidence);

/// Returns the lines for people: first the size, then one line for every suspect. None if everything adds up.
std::vector<std::string> describeDifference(const Difference& difference);

} // namespace vadelwatch
