/// \file
/// Where a run of the tool reads and writes.
#pragma once

#include <string>

namespace vadelclip {

struct RunDirectories {
    std::string parent; ///< Of both.
    std::string input;
    std::string output;
};

/// Finds the directories as the tool does: splits the input path into parent and last component, and joins the last
/// component and the output name to the parent.
///
/// A separator at the end of the input path makes "." its last component, so the output directory is then inside the
/// input directory. An absolute output name is appended like any other.
RunDirectories runDirectories(const std::string& inputPath, const std::string& outputName);

} // namespace vadelclip
