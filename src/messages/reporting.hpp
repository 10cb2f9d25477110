/// \file
/// Reports errors of the tool.
#pragma once

#include <string>

namespace vadelclip {

/// Reports an error: the text as a line on the console, flushed, then as an ErrorMessage of level 2.
///
/// Writes to the console first, so that the line is there when the message arrives. Failures of either are ignored. The
/// only other console line of the tool is the one of `setUpMessageCatalogues`.
void reportLine(std::string text);

} // namespace vadelclip
