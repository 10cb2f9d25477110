/// \file
/// Checks the paths of the files that Vadelwatch writes, its log and its map. They must not replace a file that the run
/// reads or makes.
#pragma once

#include <string>

namespace vadelwatch {

/// Returns true if a file written to this path would replace the boundary file or a file of the input directory, under
/// any name or link, or would be a new file that the tool takes for a node file.
///
/// @param path need not exist, like the other paths: a new file in place of a missing input file is refused too.
bool isInputOfRun(const std::string& path, const std::string& inputDirectory, const std::string& boundaryFile);

/// Returns true if two paths lead to the same file, existing or not.
bool isSameFile(const std::string& first, const std::string& second);

/// Returns true if a path, existing or not, leads to a directory that exists, or into it.
bool isWithin(const std::string& path, const std::string& directory);

/// Checks that this process may write to the file or, if there is none, to its directory. A directory cannot be
/// replaced.
///
/// @return 0 if the file can be written, else an errno.
int whyUnwritable(const std::string& path);

} // namespace vadelwatch
