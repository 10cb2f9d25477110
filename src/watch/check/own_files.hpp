/// \file
/// The files that Vadelwatch itself writes, its log and its map: never in place of what a run reads or makes.
#pragma once

#include <string>

namespace vadelwatch {

/// Tells whether a file to be written is, by whatever name or link, the boundary file or one of the input directory's, or
/// would be one that the tool looks into there.
///
/// @param path need not exist, and neither need the others: a file must not be made where the tool looks for its own.
bool isInputOfRun(const std::string& path, const std::string& inputDirectory, const std::string& boundaryFile);

/// Tells whether two paths lead to the same file, existing or not.
bool isSameFile(const std::string& path, const std::string& otherPath);

/// Tells why a file cannot be replaced there, or made where there is none: whether it, or else its directory, may be
/// written to by this process. A directory cannot be replaced.
///
/// @return 0 if nothing stands against it, else an errno.
int whyUnwritable(const std::string& path);

} // namespace vadelwatch
