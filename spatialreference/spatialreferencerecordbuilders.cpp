// The members of LmSpatialReference that describe it as EPSG-style records.
// Everything is read from GDAL's tree as GDAL builds it (it adds AXIS nodes
// and rewrites parameter names), with no special cases of our own. A null
// reference is described by empty records: every code -1, every text empty.
#include <lmspatialreference/spatialreference.h>

#include "internal/ogrsupport.h"

namespace Lumora {
namespace Kernel {

using Utility::LmCRT;
using Utility::LmStringHelp;

namespace {

const char* const _epsg = "EPSG";

// The text before (or after) the first "/" of a name such as
// "WGS 84 / UTM zone 50N", trimmed; the whole name when it has no "/" past
// its first character.
LmString _NamePart(const LmString& name, bool before) {
    const std::size_t slash = name.find('/');
    if (slash == LmString::npos || slash == 0) return name;
    return LmStringHelp::Trim((before ? name.substr(0, slash) : name.substr(slash + 1)).c_str());
}

// The i-th AXIS child of a CS node when it names its axis; null otherwise.
const OGR_SRSNode* _NamedAxisNode(const OGR_SRSNode* cs, int i) {
    if (cs == nullptr) return nullptr;
    for (int child = 0; child < cs->GetChildCount(); ++child) {
        const OGR_SRSNode* node = cs->GetChild(child);
        if (LmCRT::_stricmp(node->GetValue(), "AXIS") != 0 || i-- > 0) continue;
        const char* name = FirstChildValue(node, "");
        return *name != '\0' ? node : nullptr;
    }
    return nullptr;
}

// An AXIS node's direction, spelt as GDAL spells it ("NORTH", ...) in any
// case; eOrientOther for anything else.
LmAxisOrientation _NodeOrientation(const OGR_SRSNode* axis) {
    if (axis->GetChildCount() < 2) return eOrientOther;
    const char* text = axis->GetChild(1)->GetValue();
    for (int value = eOrientNorth; value <= eOrientDown; ++value)
        if (LmCRT::_stricmp(text, OSRAxisEnumToName(static_cast<OGRAxisOrientation>(value))) == 0)
            return static_cast<LmAxisOrientation>(value);
    return eOrientOther;
}

}  // namespace

LmString LmSpatialReference::Axis(int i, LmAxisOrientation* orientation) const {
    i = i <= 0 ? 0 : 1;
    if (m_pSRS == nullptr) return DefaultAxis(i, orientation, false);
    LmQuietGdalErrors quiet;
    const bool geographic = IsGeographic();
    const char* key = geographic ? "GEOGCS" : "PROJCS";
    // The tree first: it keeps the text's own AXIS nodes ("Latitude"), where
    // GetAxis answers PROJ's database names ("Geodetic latitude") as soon as
    // the text carries an EPSG authority, names the tables do not recognise.
    if (const OGR_SRSNode* node = _NamedAxisNode(m_pSRS->GetAttrNode(key), i)) {
        if (orientation != nullptr) *orientation = _NodeOrientation(node);
        return FirstChildValue(node, "");
    }
    OGRAxisOrientation ogrOrientation = OAO_Other;
    const char* name = m_pSRS->GetAxis(key, i, &ogrOrientation);
    if (name == nullptr || *name == '\0') return DefaultAxis(i, orientation, geographic);
    if (orientation != nullptr) *orientation = static_cast<LmAxisOrientation>(ogrOrientation);
    return name;
}

LmCoordinateSystem LmSpatialReference::CoordinateSystem() const {
    LmCoordinateSystem system;
    if (m_pSRS == nullptr) return system;
    LmAxisOrientation orientation1 = eOrientOther, orientation2 = eOrientOther;
    const LmString name1 = Axis(0, &orientation1);
    const LmString name2 = Axis(1, &orientation2);
    const bool geographic = IsGeographic();
    const int unit = GetCode(m_pSRS, "UNIT");

    system.Code = Kernel::CoordinateSystemCode(geographic, unit, AxisName(name1.c_str()), AxisName(name2.c_str()),
                                               orientation1, orientation2);
    system.Type = geographic ? "Ellipsoidal" : "Cartesian";
    system.DataSource = system.InformationSource = _epsg;
    system.Dimension = 2;
    system.Name = CoordinateSystemName(geographic, unit, name1, name2, orientation1, orientation2,
                                       Axis_Orientation(orientation1), Axis_Orientation(orientation2),
                                       Axis_Abbreviation(name1), Axis_Abbreviation(name2));
    return system;
}

LmCoordinateAxis LmSpatialReference::CoordinateAxis(int i) const {
    i = i <= 0 ? 0 : 1;
    LmCoordinateAxis axis;
    axis.Order = i + 1;
    if (m_pSRS == nullptr) return axis;
    LmAxisOrientation orientation = eOrientOther;
    const LmString name = Axis(i, &orientation);

    axis.Abbreviation = Axis_Abbreviation(name);
    axis.Name = name;
    axis.AxisNameCode = AxisCode(i, IsGeographic(), orientation);
    axis.Orientation = Axis_Orientation(orientation);
    axis.CoordinateSystemCode = CoordinateSystem().Code;
    axis.UnitCode = GetCode(m_pSRS, "UNIT");
    return axis;
}

LmEllipsoid LmSpatialReference::EllipsoidInfo() const {
    LmEllipsoid ellipsoid;
    if (m_pSRS == nullptr) return ellipsoid;
    ellipsoid.Code = GetCode(m_pSRS, "SPHEROID");
    ellipsoid.Name = Ellipsoid();
    ellipsoid.SemiMajorAxis = EquatorialRadiusA();
    ellipsoid.InverseFlattening = FlattenInverseF();
    ellipsoid.SemiMinorAxis = PolarRadiusB();
    ellipsoid.DataSource = ellipsoid.InformationSource = _epsg;
    // The few EPSG ellipsoids whose axes are not defined in metres.
    switch (ellipsoid.Code) {
        case 7007:
        case 7034: ellipsoid.UnitCode = 9005; break;
        case 7009: ellipsoid.UnitCode = 9003; break;
        case 7042: ellipsoid.UnitCode = 9080; break;
        case 7046: ellipsoid.UnitCode = 9031; break;
        case 7055: ellipsoid.UnitCode = 9002; break;
        default: ellipsoid.UnitCode = 9001; break;
    }
    return ellipsoid;
}

LmDatum LmSpatialReference::Datum() const {
    LmDatum datum;
    if (m_pSRS == nullptr) return datum;
    datum.Code = GetCode(m_pSRS, "DATUM");
    datum.EllipsoidCode = GetCode(m_pSRS, "SPHEROID");
    datum.Type = Datum_Type(datum.Code);
    datum.PrimeMeridianCode = GetCode(m_pSRS, "PRIMEM");
    datum.DataSource = datum.InformationSource = _epsg;

    LmQuietGdalErrors quiet;
    datum.Name = FirstChildValue(m_pSRS->GetAttrNode("DATUM"), "");
    const OGR_SRSNode* towgs84 = m_pSRS->GetAttrNode("TOWGS84");
    datum.HasTOWGS84 = towgs84 != nullptr;
    if (towgs84 != nullptr) {
        // Read as integers on purpose: a shift of 23.5 m is kept as 23.
        const int count = towgs84->GetChildCount() < 7 ? towgs84->GetChildCount() : 7;
        for (int i = 0; i < count; ++i)
            datum.TOWGS84[i] = static_cast<double>(LmCRT::_atoi64(towgs84->GetChild(i)->GetValue()));
    }
    return datum;
}

LmCoordinateReferenceSystem LmSpatialReference::GeographicCoordinateReferenceSystem() const {
    LmCoordinateReferenceSystem crs;
    if (m_pSRS == nullptr) return crs;
    const int datum = GetCode(m_pSRS, "DATUM");
    LmString name = Name();
    if (IsGeographic()) {
        crs.Code = EPSG();
    } else {
        crs.Code = -1;
        name = _NamePart(name, true);
    }
    crs.Name = name;
    crs.CoordinateSystemCode = CoordinateSystem().Code;
    crs.DatumCode[0] = crs.DatumCode[1] = datum;
    crs.DataSource = crs.InformationSource = _epsg;

    const LmString type = Datum_Type(datum);
    static const struct {
        const char* type;
        const char* kind;
    } kinds[] = {{"geodetic", "GEOGRAPHIC2D"}, {"vertical", "VERTICAL"}, {"engineering", "ENGINEERING"}};
    for (const auto& kind : kinds) {
        if (LmStringHelp::StartWith(type.c_str(), kind.type, true)) {
            crs.Kind = kind.kind;
            break;
        }
    }
    return crs;
}

LmCoordinateConversionsRule LmSpatialReference::CoordinateConversionsRule() const {
    LmCoordinateConversionsRule rule;
    if (m_pSRS == nullptr) return rule;
    rule.MethodCode = ConversionsRuleCode(IsProjected(), m_pSRS);
    rule.Name = _NamePart(Name(), false);
    rule.Type = "CONVERSION";
    return rule;
}

int LmSpatialReference::CoordinateConversionsParameterCount() const {
    // An empty list is read again on every call: only a filled list is kept.
    if (m_vecParameters.empty() && m_pSRS != nullptr) {
        const int method = ConversionsRuleCode(IsProjected(), m_pSRS);
        LmQuietGdalErrors quiet;
        m_vecParameters = AllCoordOpParamsInfo(m_pSRS->GetAttrNode("PROJCS"), method);
    }
    return static_cast<int>(m_vecParameters.size());
}

LmCoordinateConversionsParameter LmSpatialReference::CoordinateConversionsParameter(int i) const {
    if (i < 0 || i >= CoordinateConversionsParameterCount()) return LmCoordinateConversionsParameter();
    return m_vecParameters[static_cast<std::size_t>(i)];
}

}  // namespace Kernel
}  // namespace Lumora
