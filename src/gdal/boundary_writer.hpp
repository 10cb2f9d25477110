/// \file
/// Writes a boundary file under a temporary name and renames it when it is complete.
#pragma once

#include "gdal/ring.hpp"

#include <cpl_vsi.h>

#include <cstdint>
#include <string>

namespace vadelclip_gdal {

/// The file exists under its name only after `finish` has succeeded. /vsistdout/ is written directly.
///
/// The first failure is reported through CPLError; everything after it is ignored.
class BoundaryWriter {
public:
    explicit BoundaryWriter(const std::string& path_);
    ~BoundaryWriter();
    BoundaryWriter(const BoundaryWriter&) = delete;
    BoundaryWriter& operator=(const BoundaryWriter&) = delete;

    bool isGood() const { return file != nullptr; }
    void writePolygon(std::int32_t id, const Ring& ring);

    /// Writes the end of the file and gives it its name.
    bool finish();

    /// Removes what has been written.
    void discard();

private:
    void open();
    void flush();
    bool close();
    bool isStream() const;

    std::string path;
    std::string target;
    std::string temporaryPath;
    std::string buffer;
    VSILFILE* file = nullptr;
};

} // namespace vadelclip_gdal
