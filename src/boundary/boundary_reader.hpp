/// \file
/// Reads the polygons of an XML boundary file: every polygon of every group of type "boundaries".
///
/// A bad `id`, `x` or `y` ends the run. Anything else is ignored silently. docs/file-formats.md has the grammar.
#pragma once

#include "boundary/boundary_document.hpp"

#include <string>

namespace vadelclip {

/// Reads a boundary file.
///
/// @param set              receives the polygons; empty at the call. After a failure it contains the polygons read before
///                         the failed one, and some vertices of the failed one.
/// @param boundaryFilePath is used unchanged, for opening the file and in the messages.
/// @return true for success, also if there is no polygon. Every failure has been reported through `reportLine`.
bool readBoundaryFile(BoundarySet& set, const std::string& boundaryFilePath);

} // namespace vadelclip
