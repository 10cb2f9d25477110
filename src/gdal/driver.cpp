// The GDAL driver VadeDGM, a plugin. GDAL finds `RegisterOGRVadeDGM` by the name of the library, ogr_VadeDGM.so.
#include "gdal/boundary_dataset.hpp"
#include "gdal/file_target.hpp"

#include <algorithm>
#include <exception>
#include <utility>

namespace vadelclip_gdal {

namespace {

/// Searches the first block for the root element. Zero bytes are left out, so that UTF-16 and UTF-32 are found too.
int identify(GDALOpenInfo* info) {
    std::string block(reinterpret_cast<const char*>(info->pabyHeader), static_cast<std::size_t>(info->nHeaderBytes));
    block.erase(std::remove(block.begin(), block.end(), '\0'), block.end());
    return block.find("<VADELSIM") != std::string::npos ? TRUE : FALSE;
}

bool readAll(GDALOpenInfo& info, std::string& content) {
    GByte* bytes = nullptr;
    vsi_l_offset size = 0;
    if (VSIIngestFile(info.fpL, info.pszFilename, &bytes, &size, -1) == FALSE) {
        return false;
    }
    content.assign(reinterpret_cast<const char*>(bytes), static_cast<std::size_t>(size));
    VSIFree(bytes);
    return true;
}

std::unique_ptr<BoundaryDataset> read(GDALOpenInfo& info) {
    std::string content;
    if (!readAll(info, content)) {
        return nullptr;
    }
    std::vector<vadelclip::BoundaryGroup> groups;
    const std::string error = readBoundaryText(groups, std::move(content), info.pszFilename);
    if (!error.empty()) {
        CPLError(CE_Failure, CPLE_AppDefined, "%s", error.c_str());
        return nullptr;
    }
    auto dataset = std::make_unique<BoundaryDataset>(std::move(groups));
    dataset->SetDescription(info.pszFilename);
    return dataset;
}

/// No exception may reach GDAL.
GDALDataset* open(GDALOpenInfo* info) {
    if (identify(info) == FALSE || info->fpL == nullptr) {
        return nullptr;
    }
    if (info->eAccess == GA_Update) {
        CPLError(CE_Failure, CPLE_NotSupported,
                 "The boundary file %s cannot be changed or appended to, only written anew", info->pszFilename);
        return nullptr;
    }
    try {
        return read(*info).release();
    } catch (const std::exception& exception) {
        CPLError(CE_Failure, CPLE_OutOfMemory, "Cannot read the boundary file %s: %s", info->pszFilename,
                 exception.what());
        return nullptr;
    }
}

GDALDataset* create(const char* path, int, int, int, GDALDataType, char**) {
    auto dataset = std::make_unique<WrittenDataset>(path);
    if (!dataset->isGood()) {
        return nullptr;
    }
    dataset->SetDescription(path);
    return dataset.release();
}

/// GDAL calls this before it creates a file anew. Otherwise it would open the old file to find out what to delete, and report
/// an error if that is damaged. A symbolic link is kept, because the new file is written where it leads.
CPLErr remove(const char* path) {
    const std::string target = findTarget(path);
    return !target.empty() && VSIUnlink(target.c_str()) == 0 ? CE_None : CE_Failure;
}

constexpr const char* layerOptions = R"(<LayerCreationOptionList>
  <Option name="ID_FIELD" type="string" default="id" description="Field with the id of each polygon"/>
  <Option name="TWO_POINT_LINES" type="boolean" default="NO"
          description="Also write points and line strings of two points, and collections"/>
</LayerCreationOptionList>)";

std::unique_ptr<GDALDriver> makeDriver() {
    auto driver = std::make_unique<GDALDriver>();
    driver->SetDescription("VadeDGM");
    driver->SetMetadataItem(GDAL_DMD_LONGNAME, "VADELSIM boundary file");
    driver->SetMetadataItem(GDAL_DMD_EXTENSION, "xml");
    driver->SetMetadataItem(GDAL_DMD_EXTENSIONS, "xml");
    for (const char* capability : {GDAL_DCAP_VECTOR, GDAL_DCAP_OPEN, GDAL_DCAP_CREATE, GDAL_DCAP_CREATE_LAYER,
                                   GDAL_DCAP_CREATE_FIELD, GDAL_DCAP_VIRTUALIO}) {
        driver->SetMetadataItem(capability, "YES");
    }
    driver->SetMetadataItem(
        GDAL_DMD_CREATIONFIELDDATATYPES,
        "Integer Integer64 Real String Date Time DateTime Binary IntegerList Integer64List RealList "
        "StringList");
    driver->SetMetadataItem(GDAL_DS_LAYER_CREATIONOPTIONLIST, layerOptions);
    driver->pfnIdentify = identify;
    driver->pfnOpen = open;
    driver->pfnCreate = create;
    driver->pfnDelete = remove;
    return driver;
}

} // namespace

} // namespace vadelclip_gdal

/// Called by GDAL when it loads the plugin. Does nothing if the driver is registered already.
// NOLINTNEXTLINE(readability-identifier-naming): GDAL looks for this name.
extern "C" CPL_DLL void RegisterOGRVadeDGM();

// NOLINTNEXTLINE(readability-identifier-naming): GDAL looks for this name.
void RegisterOGRVadeDGM() {
    if (GDAL_CHECK_VERSION("VadeDGM") && GDALGetDriverByName("VadeDGM") == nullptr) {
        GetGDALDriverManager()->RegisterDriver(vadelclip_gdal::makeDriver().release());
    }
}
