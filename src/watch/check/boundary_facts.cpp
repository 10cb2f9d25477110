#include "watch/check/boundary_facts.hpp"

#include "watch/check/outlines.hpp"
#include "watch/show/messages.hpp"

#include <pugixml.hpp>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <fstream>
#include <sys/stat.h>
#include <unistd.h>

namespace vadelwatch {

namespace {

/// Returns "line 3, column 5" of a byte in a file. Columns are bytes.
std::string placeOf(const std::string& path, std::ptrdiff_t offset) {
    std::string text(static_cast<std::size_t>(offset), '\0');
    std::ifstream input(path, std::ios::binary);
    input.read(text.data(), offset);
    text.resize(static_cast<std::size_t>(input.gcount()));
    const std::size_t lineStart = text.rfind('\n') + 1; // 0 without a line feed
    return formatMessage("line {0}, column {1}", std::to_string(std::count(text.begin(), text.end(), '\n') + 1),
                         std::to_string(text.size() - lineStart + 1));
}

} // namespace

BoundaryFacts readBoundaryFacts(const std::string& boundaryFile) {
    MapOutlines outlines;
    readMapOutlines(boundaryFile, outlines);
    BoundaryFacts facts{extentOf(outlines), outlines.size(), 0};
    for (const auto& outline : outlines) {
        facts.mostVertices = std::max(facts.mostVertices, outline.size());
    }
    return facts;
}

std::string whyBoundaryNotFound(const std::string& boundaryFile) {
    struct stat status {};
    if (stat(boundaryFile.c_str(), &status) != 0) {
        return "";
    }
    std::string reason;
    if (S_ISDIR(status.st_mode)) {
        reason = translateMessage("it is a directory");
    } else if (!S_ISREG(status.st_mode)) {
        return ""; // Reading it may take bytes from another reader.
    } else if (faccessat(AT_FDCWD, boundaryFile.c_str(), R_OK, AT_EACCESS) != 0) {
        reason = std::strerror(errno);
    } else {
        pugi::xml_document document;
        const pugi::xml_parse_result result = document.load_file(
            boundaryFile.c_str(), pugi::parse_pi | pugi::parse_ws_pcdata, pugi::encoding_auto); // as the tool does
        if (result.status == pugi::status_ok) {
            return "";
        }
        reason = result.description();
        // Offsets in other encodings are not those of the file.
        if (result.encoding == pugi::encoding_utf8) {
            reason += ", " + placeOf(boundaryFile, result.offset);
        }
    }
    return formatMessage("The boundary file {0} exists, but cannot be read: {1}.", boundaryFile, reason);
}

} // namespace vadelwatch
