#include <lmspatialreference/spatialreference.h>
#include <lmspatialreference/legacyparameters.h>

#include "internal/ogrsupport.h"

#include <iostream>
#include <string>
#include <string_view>

namespace Lumora {
namespace Kernel {

namespace {

const char* const _wgs84Wkt =
    "GEOGCS[\"GCS_WGS_1984\",DATUM[\"D_WGS_1984\",SPHEROID[\"WGS_1984\",6378137,298.257223563]],"
    "PRIMEM[\"Greenwich\",0],UNIT[\"degree\",0.0174532925199433]]";

const char* const _cgcs2000Wkt =
    "GEOGCS[\"CGCS2000\",DATUM[\"D_CGCS_2000\",SPHEROID[\"CGCS_2000\",6378137,298.257222101]],"
    "PRIMEM[\"Greenwich\",0],UNIT[\"degree\",0.0174532925199433]]";

// The name reads "Web Mercator projection" in Chinese (UTF-8).
const char* const _webMercatorWkt =
    "PROJCS[\"Mercator (1SP) (Web\xE5\xA2\xA8\xE5\x8D\xA1\xE6\x89\x98\xE6\x8A\x95\xE5\xBD\xB1)\","
    "GEOGCS[\"GCS_WGS_1984\",DATUM[\"D_WGS_1984\",SPHEROID[\"WGS_1984\",6378137,298.257223563],"
    "TOWGS84[0,0,0,0,0,0,0]],PRIMEM[\"Greenwich\",0],UNIT[\"degree\",0.0174532925199433]],"
    "PROJECTION[\"Mercator_1SP\"],PARAMETER[\"latitude_of_origin\",0],PARAMETER[\"central_meridian\",0],"
    "PARAMETER[\"scale_factor\",1],PARAMETER[\"false_easting\",0],PARAMETER[\"false_northing\",0],"
    "UNIT[\"Meter\",1],EXTENSION[\"PROJ4\",\"+proj=merc +a=6378137 +b=6378137 +lat_ts=0.0 +lon_0=0.0 "
    "+x_0=0.0 +y_0=0 +k=1.0 +units=m +nadgrids=@null +wktext +no_defs\"]]";

const char* _WellKnownWkt(LmWellKnownSpatialReference wellKnown) {
    switch (wellKnown) {
        case eWGS84: return _wgs84Wkt;
        case eCGCS2000: return _cgcs2000Wkt;
        case eWebMercator: return _webMercatorWkt;
    }
    return "";
}

// OSRNewSpatialReference, quietly: a refused text gives null.
OGRSpatialReference* _NewFromWkt(const char* text) {
    LmQuietGdalErrors quiet;
    return OGRSpatialReference::FromHandle(OSRNewSpatialReference(text));
}

// Runs one of OGR's text exports quietly: its text on success, an empty text
// on an OGR error. OGR's copy is released either way.
template <class Export>
LmString _ExportedText(Export&& exportTo) {
    LmQuietGdalErrors quiet;
    char* text = nullptr;
    const OGRErr error = exportTo(&text);
    LmString copy = TakeOgrText(text);
    return error == OGRERR_NONE ? copy : LmString();
}

// A text as .prj writers leave it: a UTF-8 byte-order mark, and blank lines
// or spaces around the definition, none of which GDAL accepts.
std::string _WithoutSurroundings(const char* text) {
    std::string_view view(text);
    if (view.substr(0, 3) == "\xEF\xBB\xBF") view.remove_prefix(3);
    const char* const space = " \t\r\n\f\v";
    const std::size_t first = view.find_first_not_of(space);
    if (first == std::string_view::npos) return std::string();
    return std::string(view.substr(first, view.find_last_not_of(space) - first + 1));
}

}  // namespace

LmSpatialReference::LmSpatialReference(LmWellKnownSpatialReference wellKnown) : m_pSRS(nullptr) {
    m_strWKT = _WellKnownWkt(wellKnown);
    if (m_strWKT.empty()) {
        std::cout << "wkt is null" << std::endl;
        return;
    }
    _Adopt(_NewFromWkt(m_strWKT.c_str()));
}

LmSpatialReference::LmSpatialReference(const char* text, LmSpatialReferenceFormat format) : m_pSRS(nullptr) {
    if (text == nullptr || *text == '\0') return;
    // The cache keeps the text exactly as given; the readers get its core.
    m_strWKT = text;
    const std::string core = _WithoutSurroundings(text);
    text = core.c_str();
    switch (format) {
        case eAutoDetect:
        case eLegacyParameters: {
            // A text that splits into too few fields is not a legacy record;
            // auto-detection then reads it as WKT.
            tag_Projection_Param record;
            if (record.FromString(text)) {
                _Adopt(record.ToGdal());
                if (m_pSRS != nullptr) m_strWKT.clear();
            } else if (format == eAutoDetect) {
                _Adopt(_NewFromWkt(text));
            }
            break;
        }
        case eWKT:
        case eWKTOther:
            _Adopt(_NewFromWkt(text));
            break;
        case eXML:
        case eProj4: {
            // A failed import deliberately leaves an empty, non-null object.
            LmQuietGdalErrors quiet;
            _Adopt(new OGRSpatialReference());
            if (format == eXML) m_pSRS->importFromXML(text);
            else m_pSRS->importFromProj4(text);
            WithoutGeocentricAuthority(m_pSRS);
            m_strWKT.clear();
            break;
        }
    }
}

LmSpatialReference::~LmSpatialReference() {
    if (m_pSRS != nullptr) OGRSpatialReference::DestroySpatialReference(m_pSRS);
}

void LmSpatialReference::_Adopt(OGRSpatialReference* srs) {
    m_pSRS = WithGisAxisOrder(WithoutGeocentricAuthority(srs));
}

OGRSpatialReference* LmSpatialReference::Handle() { return m_pSRS; }

bool LmSpatialReference::IsNull() const { return m_pSRS == nullptr; }

// Every query runs under the quiet guard: OGR refreshes its PROJ object
// lazily, even here, and PROJ reports trouble such as a missing +nadgrids grid
// through GDAL's error handler.
bool LmSpatialReference::IsGeographic() const {
    LmQuietGdalErrors quiet;
    return m_pSRS != nullptr && m_pSRS->IsGeographic();
}

bool LmSpatialReference::IsProjected() const {
    LmQuietGdalErrors quiet;
    return m_pSRS != nullptr && m_pSRS->IsProjected();
}

bool LmSpatialReference::IsLocalCS() const {
    LmQuietGdalErrors quiet;
    return m_pSRS != nullptr && m_pSRS->IsLocal();
}

// A given name belongs to the object, so a null reference (such as the clone
// of a reference without cached text) still answers it.
LmString LmSpatialReference::Name() const {
    LmQuietGdalErrors quiet;
    if (!m_strName.empty()) return m_strName;
    if (m_pSRS == nullptr) return "";
    return FirstChildValue(m_pSRS->GetRoot(), "");
}

void LmSpatialReference::Name(const char* name) { m_strName = Utility::LmStringHelp::ToString(name); }

LmString LmSpatialReference::Ellipsoid() const {
    LmQuietGdalErrors quiet;
    if (m_pSRS == nullptr) return "";
    return FirstChildValue(m_pSRS->GetAttrNode("SPHEROID"), "");
}

LmString LmSpatialReference::Projection() const {
    LmQuietGdalErrors quiet;
    if (m_pSRS == nullptr) return "";
    return FirstChildValue(m_pSRS->GetAttrNode("PROJECTION"), "");
}

// A reference without an ellipsoid (a local CS) makes PROJ report an error
// before OGR answers with its default, so the question is asked quietly.
double LmSpatialReference::EquatorialRadiusA() const {
    if (m_pSRS == nullptr) return 0.0;
    LmQuietGdalErrors quiet;
    return m_pSRS->GetSemiMajor();
}

double LmSpatialReference::PolarRadiusB() const {
    if (m_pSRS == nullptr) return 0.0;
    LmQuietGdalErrors quiet;
    return m_pSRS->GetSemiMinor();
}

double LmSpatialReference::FlattenInverseF() const {
    if (m_pSRS == nullptr) return 0.0;
    LmQuietGdalErrors quiet;
    return m_pSRS->GetInvFlattening();
}

double LmSpatialReference::MeanRadius() const { return (EquatorialRadiusA() + PolarRadiusB()) / 2.0; }

LmString LmSpatialReference::ExportToWKT(bool pretty) const {
    LmQuietGdalErrors quiet;
    if (m_pSRS == nullptr) return "";
    if (pretty) return _ExportedText([this](char** text) { return m_pSRS->exportToPrettyWkt(text, FALSE); });
    if (m_strWKT.empty()) m_strWKT = _ExportedText([this](char** text) { return m_pSRS->exportToWkt(text); });
    return m_strWKT;
}

LmString LmSpatialReference::ExportToXml() const {
    LmQuietGdalErrors quiet;
    if (m_pSRS == nullptr) return "";
    return _ExportedText([this](char** text) { return m_pSRS->exportToXML(text, nullptr); });
}

LmString LmSpatialReference::ExportToProj4() const {
    if (m_pSRS == nullptr) return "";
    return _ExportedText([this](char** text) { return m_pSRS->exportToProj4(text); });
}

LmSmarterPtr<LmSpatialReference> LmSpatialReference::Geographic() {
    LmQuietGdalErrors quiet;
    if (m_pSRS == nullptr) return LmSmarterPtr<LmSpatialReference>();
    if (IsGeographic()) return LmSmarterPtr<LmSpatialReference>(this);
    const OGR_SRSNode* geogcs = m_pSRS->GetAttrNode("GEOGCS");
    if (geogcs == nullptr) return LmSmarterPtr<LmSpatialReference>();
    const LmString wkt = _ExportedText([geogcs](char** text) { return geogcs->exportToWkt(text); });
    if (wkt.empty()) return LmSmarterPtr<LmSpatialReference>();
    return LmSmarterPtr<LmSpatialReference>(new LmSpatialReference(wkt.c_str(), eWKT));
}

LmSmarterPtr<LmSpatialReference> LmSpatialReference::Clone() const {
    LmQuietGdalErrors quiet;
    LmSmarterPtr<LmSpatialReference> clone(new LmSpatialReference(m_strWKT.c_str(), eWKT));
    clone->m_strName = m_strName;
    clone->m_vecParameters = m_vecParameters;
    return clone;
}

}  // namespace Kernel
}  // namespace Lumora
