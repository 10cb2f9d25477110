/// \file
/// From the XML boundary file to the polygons: every polygon of every group of type "boundaries".
///
/// Lenient about what it does not look at, strict about the few attributes it needs: a bad `id`, `x` or `y` ends the
/// run, anything else passes silently. docs/file-formats.md has the grammar.
#pragma once

#include "boundary/boundary_set.hpp"

#include <string>

namespace pugi {
class xml_node;
}

namespace vadelclip {

/// Reads a boundary file.
///
/// @param set              to fill, empty at the call. After a failure it holds what was complete by then, and the
///                         vertices of the polygon that failed.
/// @param boundaryFilePath used as it stands, for opening the file and in the messages.
/// @return true for success, zero polygons included. Every failure has been reported through `reportLine`.
bool readBoundaryFile(BoundarySet& set, const std::string& boundaryFilePath);

/// Reads a double from an attribute as formatted extraction does in classic notation: white space in front is
/// skipped, whatever follows the number is ignored.
///
/// @param node  may be null.
/// @param value receives the number; undefined after a failure.
/// @return false for a null node, a missing attribute, or a value without a number in range at its start.
bool readNumericAttribute(const pugi::xml_node& node, const char* attributeName, double& value);

} // namespace vadelclip
