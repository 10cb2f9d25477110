#include "boundary/boundary_reader.hpp"

#include "boundary/document_memory.hpp"
#include "boundary/huge_pages.hpp"
#include "messages/reporting.hpp"

#include <boost/filesystem/operations.hpp>
#include <pugixml.hpp>

#include <cstdint>
#include <optional>
#include <utility>

namespace vadelclip {

namespace {

/// A smaller document needs no huge pages.
constexpr std::uintmax_t minLargeFile = hugePageSize;

bool isLargeFile(const std::string& path) {
    boost::system::error_code error;
    const std::uintmax_t size = boost::filesystem::file_size(path, error);
    return !error && size >= minLargeFile;
}

} // namespace

bool readBoundaryFile(BoundarySet& set, const std::string& boundaryFilePath) {
    std::optional<DocumentMemory> memory; // released after the document
    if (isLargeFile(boundaryFilePath)) {
        memory.emplace();
    }
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
