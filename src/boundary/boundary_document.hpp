/// \file
/// The elements of a boundary file, in a parsed document or in memory.
///
/// A bad `id`, `x` or `y` is an error. Anything else is ignored silently. docs/file-formats.md has the grammar.
/// Errors are returned as texts and not reported.
#pragma once

#include "boundary/boundary_set.hpp"

#include <cstdint>
#include <string>
#include <vector>

namespace pugi {
class xml_document;
class xml_node;
struct xml_parse_result;
} // namespace pugi

namespace vadelclip {

/// Exactly `parse_pi` and `parse_ws_pcdata`, not the library's default: character references are not replaced, line ends
/// are not normalised, and a processing instruction becomes a node with the name of its target.
extern const unsigned int boundaryParseOptions;

/// The polygons of a set and what the tool does not keep of them.
struct BoundaryGroup {
    std::string type;
    BoundarySet set;
    std::vector<std::int32_t> polygonIds; ///< One for each polygon of the set.
    std::string error;                    ///< Why the rest of the group could not be read. Empty in "boundaries".
};

/// Reads the groups of type "boundaries" of a document, and removes their children from it.
///
/// @param group            receives the polygons; empty at the call. After a failure it contains the polygons read before
///                         the failed one, and some vertices of the failed one.
/// @param result           the result of parsing the document.
/// @param boundaryFilePath used in the texts only.
/// @return the text of the error, empty for success.
std::string readBoundaries(BoundaryGroup& group, const pugi::xml_document& document,
                           const pugi::xml_parse_result& result, const std::string& boundaryFilePath);

/// Reads all groups of a file in memory: first those of type "boundaries" under the rules of the tool, then one entry
/// for each other type in file order. Other types have no influence on the result.
///
/// @return the text of the error, empty for success.
std::string readBoundaryText(std::vector<BoundaryGroup>& groups, std::string content,
                             const std::string& boundaryFilePath);

/// Reads a double from an attribute as formatted extraction in the classic locale does. Skips white space before the
/// number and ignores all text after it.
///
/// @param node  may be null.
/// @param value receives the number; unspecified after a failure.
/// @return false for a null node, a missing attribute, or a value without a number in range at its start.
bool readNumericAttribute(const pugi::xml_node& node, const char* attributeName, double& value);

} // namespace vadelclip
