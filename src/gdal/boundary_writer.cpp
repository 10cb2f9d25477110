#include "gdal/boundary_writer.hpp"

#include "gdal/file_target.hpp"

#include <cpl_error.h>
#include <cpl_multiproc.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <charconv>
#include <cstddef>

namespace vadelclip_gdal {

namespace {

constexpr std::size_t bufferSize = 65536;

/// Appends the shortest form that reads back to the same bits.
template <typename Number>
void appendNumber(std::string& text, Number number) {
    std::array<char, 32> digits{};
    const auto result = std::to_chars(digits.begin(), digits.end(), number);
    text.append(digits.begin(), result.ptr);
}

void reportUnwritable(const std::string& path) {
    CPLError(CE_Failure, CPLE_FileIO, "Cannot write the boundary file %s", path.c_str());
}

bool isInArchive(const std::string& path) {
    return path.rfind("/vsizip/", 0) == 0 || path.rfind("/vsigzip/", 0) == 0;
}

} // namespace

BoundaryWriter::BoundaryWriter(const std::string& path_)
    : path(path_), target(findTarget(path_)), temporaryPath(target),
      buffer("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<VADELSIM>\n <VadeDGM>\n  <group type=\"boundaries\">\n") {
    if (target.empty()) {
        return;
    }
    // A file in an archive can be neither renamed nor removed.
    if (!isInArchive(path)) {
        open();
    }
    if (file == nullptr) {
        reportUnwritable(path);
    }
}

BoundaryWriter::~BoundaryWriter() {
    discard();
}

bool BoundaryWriter::isStream() const {
    return path.rfind("/vsistdout", 0) == 0;
}

void BoundaryWriter::open() {
    if (isStream()) {
        file = VSIFOpenL(path.c_str(), "wb");
        return;
    }
    // Several data sets of one process may have the same target.
    static std::atomic<unsigned> number = 0;
    const std::string start = target + "." + std::to_string(CPLGetCurrentProcessID()) + ".";
    do {
        temporaryPath = start + std::to_string(++number) + ".tmp";
        errno = 0;
        // With "x" an existing file or link is an error: a killed process may have left it, or someone may have planted it.
        file = VSIFOpenL(temporaryPath.c_str(), "wbx");
    } while (file == nullptr && errno == EEXIST);
}

void BoundaryWriter::writePolygon(std::int32_t id, const Ring& ring) {
    buffer += "   <polygon id=\"";
    appendNumber(buffer, id);
    buffer += "\">\n";
    for (const Point2D point : ring) {
        buffer += "<point x=\"";
        appendNumber(buffer, point.x);
        buffer += "\" y=\"";
        appendNumber(buffer, point.y);
        buffer += "\"/>\n";
    }
    buffer += "   </polygon>\n";
    if (buffer.size() >= bufferSize) {
        flush();
    }
}

void BoundaryWriter::flush() {
    if (file != nullptr && VSIFWriteL(buffer.data(), 1, buffer.size(), file) != buffer.size()) {
        reportUnwritable(path);
        discard();
    }
    buffer.clear();
}

bool BoundaryWriter::close() {
    const bool isClosed = VSIFCloseL(file) == 0;
    file = nullptr;
    return isClosed;
}

bool BoundaryWriter::finish() {
    buffer += "  </group>\n </VadeDGM>\n</VADELSIM>\n";
    flush();
    if (file == nullptr) {
        return false;
    }
    if (!close() || (!isStream() && VSIRename(temporaryPath.c_str(), target.c_str()) != 0)) {
        reportUnwritable(path);
        VSIUnlink(temporaryPath.c_str());
        return false;
    }
    return true;
}

void BoundaryWriter::discard() {
    if (file != nullptr) {
        close();
        VSIUnlink(temporaryPath.c_str());
    }
}

} // namespace vadelclip_gdal
