/// \file
/// The GDAL driver of this build, loaded as a plugin, and files in memory.
#pragma once

#include "boundary/boundary_set.hpp"

#include <gdal_priv.h>

#include <cstdint>
#include <string>
#include <vector>

namespace vadelclip {

/// Removes the file at the end.
class MemoryFile {
public:
    /// Creates the file with this content.
    MemoryFile(const std::string& path_, const std::string& content);
    ~MemoryFile() { VSIUnlink(path.c_str()); }
    MemoryFile(const MemoryFile&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;

private:
    std::string path;
};

/// Returns the bytes of a file in memory.
std::string contentOf(const std::string& path);

GDALDriver& loadedDriver();

/// Opens a boundary file. Returns null if that fails. Appends the texts of all errors.
GDALDatasetUniquePtr openQuietly(const std::string& path, std::vector<std::string>& errors);

/// Writes a polygon with the feature's id for each geometry. Returns false if one is refused.
bool writeQuietly(const std::string& path, const std::vector<const OGRGeometry*>& geometries);

} // namespace vadelclip
