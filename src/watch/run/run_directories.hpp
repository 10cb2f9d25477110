/// \file
/// Where a run reads and writes, found in the way of the tool.
#pragma once

#include <string>

namespace vadelwatch {

struct RunDirectories {
    std::string input;
    std::string output;
};

/// The input path is split into parent and last component, and both names are joined to the parent.
///
/// A separator at the end of the input path makes "." its last component, so the output directory lies inside the input
/// directory then; an absolute output name is appended like any other.
RunDirectories runDirectories(const std::string& inputDirectoryPath, const std::string& outputDirectoryName);

} // namespace vadelwatch
