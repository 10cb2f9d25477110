/// \file
/// The layer of a boundary file that is written.
#pragma once

#include "gdal/boundary_writer.hpp"

#include <ogrsf_frmts.h>

#include <optional>
#include <set>
#include <string>

namespace vadelclip_gdal {

/// Writes each feature at once. A feature that cannot be written is an error, and the whole file is discarded then.
class WrittenLayer final : public OGRLayer {
public:
    /// @param options TWO_POINT_LINES and ID_FIELD.
    WrittenLayer(BoundaryWriter& writer_, const char* name, const char* const* options);
    ~WrittenLayer() override;
    WrittenLayer(const WrittenLayer&) = delete;
    WrittenLayer& operator=(const WrittenLayer&) = delete;

    OGRFeatureDefn* GetLayerDefn() override { return definition; }
    OGRErr CreateField(OGRFieldDefn* field, int approximate) override;
    OGRErr ICreateFeature(OGRFeature* feature) override;
    GIntBig GetFeatureCount(int) override { return written; }
    void ResetReading() override {}
    OGRFeature* GetNextFeature() override;
    int TestCapability(const char* capability) override;

    bool hasFailed() const { return failed; }

private:
    std::optional<std::int32_t> idOf(const OGRFeature& feature) const;
    OGRErr refuse(const std::string& reason);

    BoundaryWriter& writer;
    OGRFeatureDefn* definition;
    std::string idField;
    bool idFieldRequired;
    bool withPointsAndLines;
    bool warnedOfFields = false;
    bool failed = false;
    GIntBig written = 0;
};

} // namespace vadelclip_gdal
