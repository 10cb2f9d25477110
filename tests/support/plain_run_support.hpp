/// \file
/// A plain reference implementation of a run: one string stream for each line, and the second implementation of the
/// containment test (containment_oracle_support.hpp) for each polygon. The polygons are those of the tool's boundary
/// reader.
#pragma once

#include "support/run_support.hpp"

namespace vadelclip {

/// Returns the expected result of a job. Writes nothing.
///
/// @param job      readable inputs and a good boundary file.
/// @param boundary the polygons of that file.
RunOutcome plainRun(const ClipRun& job, const BoundarySet& boundary);

} // namespace vadelclip
