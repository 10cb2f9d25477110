/// \file
/// Reports errors, the one error channel of the tool.
#pragma once

#include <string>

namespace vadelclip {

/// Reports an error: the text as a line on the console, flushed, then as an ErrorMessage of level 2.
///
/// The console comes first, so the line can be read when the message arrives. Neither channel can fail as far as the
/// caller is concerned. The tool's only other console line is the one of `setUpMessageCatalogues`.
void reportLine(std::string text);

} // namespace vadelclip
