#include "gdal/written_layer.hpp"

#include "gdal/geometry.hpp"

#include <charconv>
#include <cmath>
#include <cstring>
#include <limits>
#include <vector>

namespace vadelclip_gdal {

namespace {

using IdLimits = std::numeric_limits<std::int32_t>;

std::optional<std::int32_t> wholeNumber(const char* text) {
    std::int32_t id = 0;
    const char* const end = text + std::strlen(text);
    const auto result = std::from_chars(text, end, id);
    return result.ec == std::errc() && result.ptr == end ? std::optional(id) : std::nullopt;
}

std::optional<std::int32_t> wholeNumber(double number) {
    const bool fits = number >= IdLimits::min() && number <= IdLimits::max() && number == std::floor(number);
    return fits ? std::optional(static_cast<std::int32_t>(number)) : std::nullopt;
}

} // namespace

WrittenLayer::WrittenLayer(BoundaryWriter& writer_, const char* name, const char* const* options)
    : writer(writer_), definition(new OGRFeatureDefn(name)), idField(CSLFetchNameValueDef(options, "ID_FIELD", "id")),
      idFieldRequired(CSLFetchNameValue(options, "ID_FIELD") != nullptr),
      withPointsAndLines(CPLFetchBool(options, "TWO_POINT_LINES", false)) {
    SetDescription(name);
    definition->Reference();
    definition->SetGeomType(withPointsAndLines ? wkbUnknown : wkbPolygon);
}

WrittenLayer::~WrittenLayer() {
    definition->Release();
}

OGRErr WrittenLayer::CreateField(OGRFieldDefn* field, int) {
    // All fields are accepted, because most programs give up at a field that is refused.
    if (!EQUAL(field->GetNameRef(), idField.c_str()) && !warnedOfFields) {
        CPLError(CE_Warning, CPLE_AppDefined, "A boundary file stores no field but %s: %s and any other are left out",
                 idField.c_str(), field->GetNameRef());
        warnedOfFields = true;
    }
    definition->AddFieldDefn(field);
    return OGRERR_NONE;
}

OGRErr WrittenLayer::refuse(const std::string& reason) {
    failed = true;
    CPLError(CE_Failure, CPLE_AppDefined, "Cannot write feature " CPL_FRMT_GIB ": %s. No file is written", written,
             reason.c_str());
    return OGRERR_FAILURE;
}

/// The field's value, or the number of features before this one if there is no field or no value.
std::optional<std::int32_t> WrittenLayer::idOf(const OGRFeature& feature) const {
    const int field = definition->GetFieldIndex(idField.c_str());
    if (field < 0 || !feature.IsFieldSetAndNotNull(field)) {
        return wholeNumber(static_cast<double>(written));
    }
    const OGRFieldType type = definition->GetFieldDefn(field)->GetType();
    return type == OFTReal ? wholeNumber(feature.GetFieldAsDouble(field))
                           : wholeNumber(feature.GetFieldAsString(field));
}

OGRErr WrittenLayer::ICreateFeature(OGRFeature* feature) {
    if (failed || !writer.isGood()) {
        return OGRERR_FAILURE;
    }
    if (idFieldRequired && definition->GetFieldIndex(idField.c_str()) < 0) {
        return refuse("there is no field " + idField);
    }
    const std::optional<std::int32_t> id = idOf(*feature);
    if (!id) {
        return refuse("its " + idField + " is no whole number of 32 bits");
    }
    const OGRGeometry* geometry = feature->GetGeometryRef();
    std::vector<Ring> rings;
    const std::string error = geometry == nullptr ? "" : appendRings(rings, *geometry, withPointsAndLines);
    if (!error.empty()) {
        return refuse(error);
    }
    if (rings.empty()) {
        CPLError(CE_Warning, CPLE_AppDefined, "Feature " CPL_FRMT_GIB " has no geometry and is left out", written);
    }
    for (const Ring& ring : rings) {
        writer.writePolygon(*id, ring);
    }
    feature->SetFID(written++);
    return writer.isGood() ? OGRERR_NONE : OGRERR_FAILURE;
}

OGRFeature* WrittenLayer::GetNextFeature() {
    CPLError(CE_Failure, CPLE_NotSupported, "A boundary file cannot be read while it is written");
    return nullptr;
}

int WrittenLayer::TestCapability(const char* capability) {
    return EQUAL(capability, OLCSequentialWrite) || EQUAL(capability, OLCCreateField) ||
                   EQUAL(capability, OLCStringsAsUTF8)
               ? TRUE
               : FALSE;
}

} // namespace vadelclip_gdal
