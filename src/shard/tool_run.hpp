/// \file
/// Runs the tool that is in the directory of this executable.
#pragma once

#include <string>
#include <vector>

namespace vadelshard {

/// Runs the tool with the console of this process.
///
/// @return its exit status; 128 and the number of the signal if one ended it.
/// @throws Failure if it cannot be started, or if this process was asked to end.
int runTool(const std::vector<std::string>& arguments);

/// Does the same, with console and messages in files.
int runTool(const std::vector<std::string>& arguments, const std::string& consoleFile, const std::string& messageFile);

} // namespace vadelshard
