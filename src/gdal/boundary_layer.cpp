#include "gdal/boundary_layer.hpp"

#include "gdal/geometry.hpp"

#include <algorithm>
#include <memory>
#include <utility>

namespace vadelclip_gdal {

namespace {

using vadelclip::BoundaryPolygon;

OGREnvelope envelopeOf(const BoundaryPolygon& polygon) {
    OGREnvelope envelope;
    envelope.MinX = polygon.boundingBox.minX;
    envelope.MinY = polygon.boundingBox.minY;
    envelope.MaxX = polygon.boundingBox.maxX;
    envelope.MaxY = polygon.boundingBox.maxY;
    return envelope;
}

/// One or two points are not a polygon. No points are an empty polygon.
bool isPolygon(const BoundaryPolygon& polygon) {
    return polygon.vertexIndices.empty() || polygon.vertexIndices.size() > 2;
}

} // namespace

BoundaryLayer::BoundaryLayer(vadelclip::BoundaryGroup group_)
    : group(std::move(group_)), definition(new OGRFeatureDefn(group.type.empty() ? "untyped" : group.type.c_str())) {
    const std::vector<BoundaryPolygon>& polygons = group.set.polygons;
    const auto others =
        polygons.size() - static_cast<std::size_t>(std::count_if(polygons.begin(), polygons.end(), isPolygon));
    SetDescription(definition->GetName());
    definition->Reference();
    definition->SetGeomType(others == 0 ? wkbPolygon : wkbUnknown);
    OGRFieldDefn id("id", OFTInteger);
    definition->AddFieldDefn(&id);
    if (others > 0) {
        CPLError(CE_Warning, CPLE_AppDefined, "Layer %s: %d polygons have only one or two points: read as %s",
                 definition->GetName(), static_cast<int>(others), "points and line strings");
    }
}

BoundaryLayer::~BoundaryLayer() {
    definition->Release();
}

bool BoundaryLayer::boxPassesFilter(const BoundaryPolygon& polygon) const {
    return m_poFilterGeom == nullptr ||
           (!polygon.vertexIndices.empty() && m_sFilterEnvelope.Intersects(envelopeOf(polygon)) != 0);
}

OGRFeature* BoundaryLayer::GetNextFeature() {
    for (; next < group.set.polygons.size(); ++next) {
        if (!boxPassesFilter(group.set.polygons[next])) {
            continue;
        }
        std::unique_ptr<OGRFeature> feature(GetFeature(static_cast<GIntBig>(next)));
        if ((m_poFilterGeom == nullptr || FilterGeometry(feature->GetGeometryRef()) != 0) &&
            (m_poAttrQuery == nullptr || m_poAttrQuery->Evaluate(feature.get()) != 0)) {
            ++next;
            return feature.release();
        }
    }
    return nullptr;
}

OGRFeature* BoundaryLayer::GetFeature(GIntBig number) {
    if (number < 0 || number >= static_cast<GIntBig>(group.set.polygons.size())) {
        return nullptr;
    }
    const auto index = static_cast<std::size_t>(number);
    auto feature = std::make_unique<OGRFeature>(definition);
    feature->SetFID(number);
    feature->SetField(0, group.polygonIds[index]);
    feature->SetGeometryDirectly(geometryOf(group.set.polygons[index], group.set.vertices).release());
    return feature.release();
}

OGRErr BoundaryLayer::SetNextByIndex(GIntBig index) {
    if (isFiltered() || index < 0) {
        return OGRLayer::SetNextByIndex(index);
    }
    next = static_cast<std::size_t>(index);
    return OGRERR_NONE;
}

GIntBig BoundaryLayer::GetFeatureCount(int force) {
    return isFiltered() ? OGRLayer::GetFeatureCount(force) : static_cast<GIntBig>(group.set.polygons.size());
}

OGRErr BoundaryLayer::GetExtent(OGREnvelope* extent, int) {
    *extent = OGREnvelope();
    for (const BoundaryPolygon& polygon : group.set.polygons) {
        if (!polygon.vertexIndices.empty()) {
            extent->Merge(envelopeOf(polygon));
        }
    }
    return extent->IsInit() != 0 ? OGRERR_NONE : OGRERR_FAILURE;
}

int BoundaryLayer::TestCapability(const char* capability) {
    const bool isFast = EQUAL(capability, OLCFastFeatureCount) || EQUAL(capability, OLCFastSetNextByIndex);
    const bool isPossible = EQUAL(capability, OLCRandomRead) || EQUAL(capability, OLCFastGetExtent) ||
                            EQUAL(capability, OLCStringsAsUTF8) || (isFast && !isFiltered());
    return isPossible ? TRUE : FALSE;
}

} // namespace vadelclip_gdal
