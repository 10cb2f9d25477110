#include "gdal_driver.hpp"

#include "fuzz_target.hpp"

#include <ogrsf_frmts.h>

namespace vadelclip {

namespace {

void CPL_STDCALL collectError(CPLErr kind, CPLErrorNum, const char* text) {
    if (kind >= CE_Failure) {
        static_cast<std::vector<std::string>*>(CPLGetErrorHandlerUserData())->emplace_back(text);
    }
}

} // namespace

MemoryFile::MemoryFile(const std::string& path_, const std::string& content) : path(path_) {
    VSILFILE* file = VSIFOpenL(path.c_str(), "wb");
    VSIFWriteL(content.data(), 1, content.size(), file);
    VSIFCloseL(file);
}

std::string contentOf(const std::string& path) {
    vsi_l_offset size = 0;
    const GByte* const bytes = VSIGetMemFileBuffer(path.c_str(), &size, FALSE);
    return {reinterpret_cast<const char*>(bytes), static_cast<std::size_t>(size)};
}

GDALDriver& loadedDriver() {
    static GDALDriver* const driver = [] {
        CPLSetConfigOption("GDAL_DRIVER_PATH", VADELCLIP_GDAL_PLUGINS);
        GetGDALDriverManager()->AutoLoadDrivers();
        return GetGDALDriverManager()->GetDriverByName("VadeDGM");
    }();
    require(driver != nullptr, "the plugin in " VADELCLIP_GDAL_PLUGINS " cannot be loaded");
    return *driver;
}

GDALDatasetUniquePtr openQuietly(const std::string& path, std::vector<std::string>& errors) {
    loadedDriver();
    const char* const drivers[] = {"VadeDGM", nullptr};
    CPLPushErrorHandlerEx(collectError, &errors);
    GDALDatasetUniquePtr dataset(GDALDataset::Open(path.c_str(), GDAL_OF_VECTOR, drivers));
    CPLPopErrorHandler();
    return dataset;
}

bool writeQuietly(const std::string& path, const std::vector<const OGRGeometry*>& geometries) {
    CPLErrorHandlerPusher quiet(CPLQuietErrorHandler);
    GDALDatasetUniquePtr dataset(loadedDriver().Create(path.c_str(), 0, 0, 0, GDT_Unknown, nullptr));
    CPLStringList options;
    options.SetNameValue("TWO_POINT_LINES", "YES");
    OGRLayer* const layer = dataset->CreateLayer("boundaries", nullptr, wkbUnknown, options.List());
    for (const OGRGeometry* geometry : geometries) {
        OGRFeature feature(layer->GetLayerDefn());
        feature.SetGeometry(geometry);
        if (layer->CreateFeature(&feature) != OGRERR_NONE) {
            return false;
        }
    }
    return true;
}

} // namespace vadelclip
