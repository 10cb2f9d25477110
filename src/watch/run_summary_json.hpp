/// \file
/// The summary of a run as JSON. docs/vadelwatch-summary.schema.json describes it.
#pragma once

#include "watch/run_summary.hpp"

#include <string>

namespace vadelwatch {

/// Returns one JSON object and a line feed. Unknown values are null, and so are most values of a run whose
/// output is not checked.
std::string summaryJson(const RunSummary& summary);

} // namespace vadelwatch
