#include "gdal/boundary_dataset.hpp"

#include <cstddef>
#include <utility>

namespace vadelclip_gdal {

BoundaryDataset::BoundaryDataset(std::vector<vadelclip::BoundaryGroup> groups) {
    for (vadelclip::BoundaryGroup& group : groups) {
        if (!group.error.empty()) {
            CPLError(CE_Warning, CPLE_AppDefined, "Layer %s is not complete: %s", group.type.c_str(),
                     group.error.c_str());
        }
        layers.push_back(std::make_unique<BoundaryLayer>(std::move(group)));
    }
}

OGRLayer* BoundaryDataset::GetLayer(int number) {
    return number >= 0 && number < GetLayerCount() ? layers[static_cast<std::size_t>(number)].get() : nullptr;
}

namespace {

/// GeoPackage calls its placeholder for no system "Undefined geographic SRS".
bool isInDegrees(const OGRSpatialReference* reference) {
    return reference != nullptr && reference->IsGeographic() != 0 && !STARTS_WITH(reference->GetName(), "Undefined");
}

} // namespace

WrittenDataset::~WrittenDataset() {
    if (!layer) {
        return;
    }
    if (secondLayerRefused || layer->hasFailed() || !writer.isGood()) {
        // Reported again, because ogr2ogr -skipfailures ignores all errors but those at the end.
        CPLError(CE_Failure, CPLE_AppDefined, "The boundary file %s is not written", GetDescription());
        return;
    }
    // GDAL has reset the last error when it created the data set.
    if (layer->GetFeatureCount(FALSE) == 0 && CPLGetLastErrorType() == CE_Failure) {
        CPLError(CE_Failure, CPLE_AppDefined,
                 "No feature arrived, and there was an error: the boundary file %s is not written", GetDescription());
        return;
    }
    writer.finish();
}

int WrittenDataset::TestCapability(const char* capability) {
    // Also true after the first layer. Otherwise ogr2ogr does not call ICreateLayer, and the file has only the first layer.
    return EQUAL(capability, ODsCCreateLayer) ? TRUE : FALSE;
}

OGRLayer* WrittenDataset::ICreateLayer(const char* name, OGRSpatialReference* reference, OGRwkbGeometryType,
                                       char** options) {
    if (layer) {
        secondLayerRefused = true;
        CPLError(CE_Failure, CPLE_NotSupported,
                 "A boundary file has one layer: %s cannot be a second one. No file is written", name);
        return nullptr;
    }
    if (isInDegrees(reference)) {
        CPLError(CE_Warning, CPLE_AppDefined,
                 "A boundary file stores no reference system. These coordinates are in degrees: the node files have to "
                 "be so too. The option -t_srs of ogr2ogr converts");
    }
    layer = std::make_unique<WrittenLayer>(writer, name, options);
    return layer.get();
}

} // namespace vadelclip_gdal
