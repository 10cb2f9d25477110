#include "gdal/file_target.hpp"

#include <cpl_error.h>

#include <filesystem>
#include <system_error>

namespace vadelclip_gdal {

namespace fs = std::filesystem;

std::string findTarget(const std::string& path) {
    if (path.rfind("/vsi", 0) == 0) {
        return path;
    }
    std::error_code error;
    fs::path target = fs::absolute(path, error);
    const fs::file_type type = fs::status(target, error).type();
    if (type != fs::file_type::regular && type != fs::file_type::not_found) {
        CPLError(CE_Failure, CPLE_FileIO, "Cannot write the boundary file %s: %s", path.c_str(),
                 type == fs::file_type::none ? error.message().c_str() : "it is not a regular file");
        return {};
    }
    // A link to a name that is free is followed too. std::filesystem::canonical would refuse it.
    while (fs::is_symlink(target, error)) {
        target = target.parent_path() / fs::read_symlink(target, error);
    }
    return target.string();
}

} // namespace vadelclip_gdal
