#include "watch/check/outlines.hpp"

#include "boundary/boundary_document.hpp"
#include "watch/show/messages.hpp"

#include <pugixml.hpp>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <string_view>
#include <system_error>
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

/// Parses the file with the options of the tool.
/// @return why it cannot be read, empty on success.
std::string load(pugi::xml_document& document, const std::string& path) {
    std::error_code error;
    if (std::filesystem::is_directory(path, error)) {
        // The parser would report that memory is missing.
        return translateMessage("it is a directory");
    }
    if (faccessat(AT_FDCWD, path.c_str(), R_OK, AT_EACCESS) != 0) {
        return errno == ENOENT ? translateMessage("File was not found") : std::strerror(errno);
    }
    const pugi::xml_parse_result result =
        document.load_file(path.c_str(), vadelclip::boundaryParseOptions, pugi::encoding_auto);
    if (result.status == pugi::status_ok) {
        return "";
    }
    // Offsets in other encodings are not those of the file.
    return result.description() + (result.encoding == pugi::encoding_utf8 ? ", " + placeOf(path, result.offset) : "");
}

std::string cannotBeRead(const std::string& boundaryFile, const std::string& reason) {
    return formatMessage("The boundary file {0} cannot be read: {1}.", boundaryFile, reason);
}

bool readOutline(const pugi::xml_node& polygon, std::vector<MapPosition>& outline) {
    for (const pugi::xml_node& point : polygon.children("point")) {
        double x = 0.0;
        double y = 0.0;
        if (!vadelclip::readNumericAttribute(point, "x", x) || !vadelclip::readNumericAttribute(point, "y", y)) {
            return false;
        }
        outline.push_back(
            {std::clamp(x, -largestDrawable, largestDrawable), std::clamp(y, -largestDrawable, largestDrawable)});
    }
    return true;
}

} // namespace

std::string readMapOutlines(const std::string& boundaryFile, MapOutlines& outlines) {
    pugi::xml_document document;
    const std::string reason = load(document, boundaryFile);
    if (!reason.empty()) {
        return cannotBeRead(boundaryFile, reason);
    }
    for (const pugi::xml_node& group : document.child("VADELSIM").child("VadeDGM").children("group")) {
        if (std::string_view(group.attribute("type").value()) != "boundaries") {
            continue;
        }
        for (const pugi::xml_node& polygon : group.children("polygon")) {
            outlines.emplace_back();
            if (!readOutline(polygon, outlines.back())) {
                return formatMessage("The boundary file {0} holds a point without coordinates.", boundaryFile);
            }
        }
    }
    return "";
}

MapExtent extentOf(const MapOutlines& outlines) {
    MapExtent extent;
    for (const std::vector<MapPosition>& outline : outlines) {
        for (const MapPosition& vertex : outline) {
            includePosition(extent, vertex);
        }
    }
    return extent;
}

std::string whyBoundaryNotFound(const std::string& boundaryFile) {
    std::error_code error;
    const std::filesystem::file_status status = std::filesystem::status(boundaryFile, error);
    if (status.type() == std::filesystem::file_type::none) {
        // It is unknown if the file exists: a directory of the path may not be searched, for example.
        return cannotBeRead(boundaryFile, error.message());
    }
    if (!std::filesystem::exists(status)) {
        return "";
    }
    pugi::xml_document document;
    const std::string reason = std::filesystem::is_regular_file(status) || std::filesystem::is_directory(status)
                                   ? load(document, boundaryFile)
                                   : translateMessage("it is not a regular file");
    return reason.empty()
               ? ""
               : formatMessage("The boundary file {0} exists, but cannot be read: {1}.", boundaryFile, reason);
}

} // namespace vadelwatch
