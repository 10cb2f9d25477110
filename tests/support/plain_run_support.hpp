/// \file
/// The run as its rules tell it, without any of the tool's short cuts: one string stream per line, the second writing of
/// the containment test (containment_oracle_support.hpp) for each polygon. What the tool is compared with; the polygons
/// themselves are those that the boundary reader gives.
#pragma once

#include "support/run_support.hpp"

namespace vadelclip {

/// Works out what a job is to leave behind. Nothing is written.
///
/// @param job      readable inputs and a good boundary file.
/// @param boundary the polygons of that file.
RunOutcome plainRun(const ClipRun& job, const BoundarySet& boundary);

} // namespace vadelclip
