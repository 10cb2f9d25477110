/// \file
/// A layer that is read: the polygons of one group type.
#pragma once

#include "boundary/boundary_document.hpp"

#include <ogrsf_frmts.h>

#include <cstddef>

namespace vadelclip_gdal {

/// One feature for each polygon, in file order: its geometry and the field `id`. The feature number counts from 0.
class BoundaryLayer final : public OGRLayer {
public:
    explicit BoundaryLayer(vadelclip::BoundaryGroup group_);
    ~BoundaryLayer() override;
    BoundaryLayer(const BoundaryLayer&) = delete;
    BoundaryLayer& operator=(const BoundaryLayer&) = delete;

    OGRFeatureDefn* GetLayerDefn() override { return definition; }
    void ResetReading() override { next = 0; }
    OGRFeature* GetNextFeature() override;
    OGRFeature* GetFeature(GIntBig number) override;
    OGRErr SetNextByIndex(GIntBig index) override;
    GIntBig GetFeatureCount(int force) override;
    OGRErr GetExtent(OGREnvelope* extent, int force) override;
    OGRErr GetExtent(int field, OGREnvelope* extent, int force) override {
        return OGRLayer::GetExtent(field, extent, force);
    }
    int TestCapability(const char* capability) override;

private:
    bool isFiltered() const { return m_poFilterGeom != nullptr || m_poAttrQuery != nullptr; }
    bool boxPassesFilter(const vadelclip::BoundaryPolygon& polygon) const;

    vadelclip::BoundaryGroup group;
    OGRFeatureDefn* definition;
    std::size_t next = 0;
};

} // namespace vadelclip_gdal
