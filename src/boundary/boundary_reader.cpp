#include "boundary/boundary_reader.hpp"

#include "messages/reporting.hpp"

#include <pugixml.hpp>

#include <utility>

namespace vadelclip {

bool readBoundaryFile(BoundarySet& set, const std::string& boundaryFilePath) {
    pugi::xml_document document;
    const pugi::xml_parse_result result =
        document.load_file(boundaryFilePath.c_str(), boundaryParseOptions, pugi::encoding_auto);
    BoundaryGroup boundaries;
    const std::string error = readBoundaries(boundaries, document, result, boundaryFilePath);
    set = std::move(boundaries.set);
    if (!error.empty()) {
        reportLine(error);
    }
    return error.empty();
}

} // namespace vadelclip
