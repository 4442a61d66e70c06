// Reference texts arrive from users as WKT, PROJ.4 strings or GDAL's XML; the
// first byte picks the reader and the rest is the text. Every query runs on the
// result, null or not, because a half-built reference is where faults hide.
#include <lmspatialreference/lmspatialreference.h>

#include <cstdint>
#include <string>

using namespace Lumora::Kernel;

namespace {

void AskEverything(LmSpatialReference& reference, LmSpatialReference& other) {
    reference.IsNull();
    reference.IsGeographic();
    reference.IsProjected();
    reference.IsLocalCS();
    reference.Name();
    reference.Ellipsoid();
    reference.Projection();
    reference.EquatorialRadiusA();
    reference.PolarRadiusB();
    reference.FlattenInverseF();
    reference.MeanRadius();
    reference.Units();
    reference.ExportToWKT(false);
    reference.ExportToWKT(true);
    reference.ExportToXml();
    reference.ExportToProj4();
    reference.EPSG();
    reference.CoordinateSystem();
    for (int i : {-1, 0, 1, 2}) reference.CoordinateAxis(i);
    reference.EllipsoidInfo();
    reference.Datum();
    reference.GeographicCoordinateReferenceSystem();
    reference.CoordinateConversionsRule();
    const int parameters = reference.CoordinateConversionsParameterCount();
    for (int i : {-1, 0, parameters - 1, parameters}) reference.CoordinateConversionsParameter(i);
    reference.IsSame(&other);
    reference.IsSameProjCS(&other);
    reference.IsSameGeogCS(&other);
    reference.IsSameParameter(&other);
    other.IsSame(&reference);
    LmSmarterPtr<LmSpatialReference> geographic = reference.Geographic();
    if (geographic) geographic->ExportToWKT(false);
    LmSmarterPtr<LmSpatialReference> clone = reference.Clone();
    if (clone) clone->IsSame(&reference);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const LmSpatialReferenceFormat kFormats[] = {eAutoDetect, eWKT, eXML, eProj4, eWKTOther, eLegacyParameters};
    static LmSmarterPtr<LmSpatialReference> wgs84(new LmSpatialReference(eWGS84));
    if (size == 0) return 0;
    const LmSpatialReferenceFormat format = kFormats[data[0] % 6];
    const std::string text(reinterpret_cast<const char*>(data) + 1, size - 1);
    LmSmarterPtr<LmSpatialReference> reference(new LmSpatialReference(text.c_str(), format));
    AskEverything(*reference, *wgs84);
    return 0;
}
