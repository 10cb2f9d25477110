/// \file
/// Boundary files as data sets of GDAL: one that is read, one that is written.
#pragma once

#include "gdal/boundary_layer.hpp"
#include "gdal/boundary_writer.hpp"
#include "gdal/written_layer.hpp"

#include <gdal_priv.h>

#include <memory>
#include <string>
#include <vector>

namespace vadelclip_gdal {

/// The layer "boundaries", then one for each other type of group.
class BoundaryDataset final : public GDALDataset {
public:
    explicit BoundaryDataset(std::vector<vadelclip::BoundaryGroup> groups);

    int GetLayerCount() override { return static_cast<int>(layers.size()); }
    OGRLayer* GetLayer(int number) override;

private:
    std::vector<std::unique_ptr<BoundaryLayer>> layers;
};

/// Becomes a file when it is closed, if it has a layer and no feature or second layer was refused.
class WrittenDataset final : public GDALDataset {
public:
    explicit WrittenDataset(const std::string& path) : writer(path) {}
    ~WrittenDataset() override;
    WrittenDataset(const WrittenDataset&) = delete;
    WrittenDataset& operator=(const WrittenDataset&) = delete;

    bool isGood() const { return writer.isGood(); }
    int GetLayerCount() override { return layer ? 1 : 0; }
    OGRLayer* GetLayer(int number) override { return number == 0 ? layer.get() : nullptr; }
    int TestCapability(const char* capability) override;

protected:
    OGRLayer* ICreateLayer(const char* name, OGRSpatialReference* reference, OGRwkbGeometryType type,
                           char** options) override;

private:
    BoundaryWriter writer;
    std::unique_ptr<WrittenLayer> layer;
    bool secondLayerRefused = false;
};

} // namespace vadelclip_gdal
