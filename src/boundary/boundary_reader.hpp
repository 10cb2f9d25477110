/// \file
/// Reads the polygons of an XML boundary file: every polygon of every group of type "boundaries".
///
/// A bad `id`, `x` or `y` ends the run. Anything else is ignored silently. docs/file-formats.md has the grammar.
#pragma once

#include "boundary/boundary_set.hpp"

#include <string>

namespace pugi {
class xml_node;
}

namespace vadelclip {

/// Reads a boundary file.
///
/// @param set              receives the polygons; empty at the call. After a failure it contains the polygons read before
///                         the failed one, and some vertices of the failed one.
/// @param boundaryFilePath is used unchanged, for opening the file and in the messages.
/// @return true for success, also if there is no polygon. Every failure has been reported through `reportLine`.
bool readBoundaryFile(BoundarySet& set, const std::string& boundaryFilePath);

/// Reads a double from an attribute as formatted extraction in the classic locale does. Skips white space before the
/// number and ignores all text after it.
///
/// @param node  may be null.
/// @param value receives the number; unspecified after a failure.
/// @return false for a null node, a missing attribute, or a value without a number in range at its start.
bool readNumericAttribute(const pugi::xml_node& node, const char* attributeName, double& value);

} // namespace vadelclip
