// The fixed tables behind the descriptive records. Their row orders are part
// of the behaviour: every lookup answers its first match.
#include <lmspatialreference/spatialreferencerecords.h>

#include "internal/ogrsupport.h"

#include <climits>
#include <cmath>
#include <cstdint>

namespace Lumora {
namespace Kernel {

using Utility::LmCRT;
using Utility::LmStringHelp;

namespace {

bool _StartsWith(const char* text, const char* prefix) {
    return text != nullptr && LmStringHelp::StartWith(text, prefix, true);
}

// Truncation toward zero with the int range guarded, since a cast of NaN or
// of 1e300 would be undefined.
int _TruncatedToInt(double value) {
    if (std::isnan(value)) return 0;
    if (value >= static_cast<double>(INT_MAX)) return INT_MAX;
    if (value <= static_cast<double>(INT_MIN)) return INT_MIN;
    return static_cast<int>(value);
}

struct _CoordinateSystemRow {
    bool geographic;
    LmAxisName kind1, kind2;
    LmAxisOrientation orientation1, orientation2;
    int unit;  // 0: any unit
    int code;
};

// The longitude-first geographic row tests north then east, as the
// latitude-first rows do; it is kept that way on purpose, so such a system
// (whose first axis points east) is not recognised.
const _CoordinateSystemRow _coordinateSystems[] = {
    {true, eAxisLat, eAxisLon, eOrientNorth, eOrientEast, 9122, 6422},
    {true, eAxisLon, eAxisLat, eOrientNorth, eOrientEast, 9122, 6424},
    {true, eAxisLat, eAxisLon, eOrientNorth, eOrientEast, 9108, 6402},
    {true, eAxisLon, eAxisLat, eOrientNorth, eOrientEast, 9105, 6403},
    {false, eAxisE, eAxisN, eOrientEast, eOrientNorth, 0, 4400},
    {false, eAxisN, eAxisE, eOrientNorth, eOrientEast, 0, 4500},
    {false, eAxisN, eAxisE, eOrientNorth, eOrientWest, 0, 4501},
    {false, eAxisX, eAxisY, eOrientNorth, eOrientEast, 0, 4530},
    {false, eAxisX, eAxisY, eOrientEast, eOrientNorth, 0, 4499},
    {false, eAxisX, eAxisY, eOrientSouth, eOrientWest, 0, 6501},
    {false, eAxisY, eAxisX, eOrientEast, eOrientNorth, 0, 4498},
    {false, eAxisY, eAxisX, eOrientNorth, eOrientEast, 0, 4532},
    {false, eAxisY, eAxisX, eOrientWest, eOrientSouth, 0, 6503},
};

struct _MethodRow {
    const char* prefix;
    int code;
};

// The Belgian name starts with the general Lambert name, so the general row
// always answers first and 9803 is never produced; the order is kept.
const _MethodRow _methods[] = {
    {"Transverse_Mercator", 9807},
    {"Lambert_Conformal_Conic_2SP", 9802},
    {"Lambert_Conformal_Conic_2SP_Belgium", 9803},
    {"Mercator_2SP", 9805},
    {"Cassini_Soldner", 9806},
    {"Polar_Stereographic", 9829},
};

struct _ParameterRow {
    int method;
    const char* prefix;
    int code;
    int unit;
};

const _ParameterRow _parameters[] = {
    {9802, "Latitude_Of_Origin", 8821, 9102},
    {9802, "Central_Meridian", 8822, 9102},
    {9802, "Standard_Parallel_1", 8823, 9102},
    {9802, "Standard_Parallel_2", 8824, 9102},
    {9802, "False_Easting", 8826, 9001},
    {9802, "False_Northing", 8827, 9001},
    {9803, "Latitude_Of_Origin", 8821, 9110},
    {9803, "Central_Meridian", 8822, 9110},
    {9803, "Standard_Parallel_1", 8823, 9110},
    {9803, "Standard_Parallel_2", 8824, 9110},
    {9803, "False_Easting", 8826, 9001},
    {9803, "False_Northing", 8827, 9001},
    {9805, "Latitude_Of_Origin", 8823, 9102},
    {9805, "Central_Meridian", 8802, 9102},
    {9805, "False_Easting", 8806, 9001},
    {9805, "False_Northing", 8807, 9001},
    {9806, "Latitude_Of_Origin", 8801, 9110},
    {9806, "Central_Meridian", 8802, 9110},
    {9806, "False_Easting", 8806, 9001},
    {9806, "False_Northing", 8807, 9001},
    {9807, "Latitude_Of_Origin", 8801, 9102},
    {9807, "Central_Meridian", 8802, 9102},
    {9807, "Scale_Factor", 8805, 9201},
    {9807, "False_Easting", 8806, 9001},
    {9807, "False_Northing", 8807, 9001},
    {9829, "Latitude_Of_Origin", 8832, 9102},
    {9829, "Central_Meridian", 8833, 9102},
    {9829, "False_Easting", 8806, 9001},
    {9829, "False_Northing", 8807, 9001},
};

struct _CodeRange {
    int first, last;
};

const _CodeRange _verticalDatums[] = {
    {5100, 5215}, {1027, 1028}, {1030, 1030}, {1039, 1040}, {1049, 1051}, {1054, 1054},
    {1059, 1059}, {1079, 1080}, {1082, 1094}, {1096, 1099}, {1101, 1110}, {1119, 1119},
    {1121, 1127}, {1129, 1131}, {1140, 1140}, {1146, 1146}, {1148, 1151},
};

}  // namespace

LmString DefaultAxis(int i, LmAxisOrientation* orientation, bool geographic) {
    const bool first = i == 0;
    if (orientation != nullptr) *orientation = (first == geographic) ? eOrientNorth : eOrientEast;
    if (geographic) return first ? "LATITUDE" : "LONGITUDE";
    return first ? "X" : "Y";
}

int GetCode(const OGRSpatialReference* srs, const char* key) {
    if (srs == nullptr || key == nullptr) return -1;
    LmQuietGdalErrors quiet;
    const char* text = srs->GetAuthorityCode(key);
    if (text == nullptr) return -1;
    const std::int64_t code = LmCRT::_atoi64(text);
    if (code < INT_MIN || code > INT_MAX) return -1;
    return static_cast<int>(code);
}

LmAxisName AxisName(const char* text) {
    static const struct {
        const char* prefix;
        LmAxisName kind;
    } kinds[] = {{"Lat", eAxisLat}, {"Lon", eAxisLon}, {"X", eAxisX}, {"Y", eAxisY}, {"E", eAxisE}, {"N", eAxisN}};
    for (const auto& kind : kinds)
        if (_StartsWith(text, kind.prefix)) return kind.kind;
    return eAxisUnknown;
}

int CoordinateSystemCode(bool geographic, int unitCode, const LmAxisName& kind1, const LmAxisName& kind2,
                         const LmAxisOrientation& orientation1, const LmAxisOrientation& orientation2) {
    for (const _CoordinateSystemRow& row : _coordinateSystems) {
        if (row.geographic == geographic && row.kind1 == kind1 && row.kind2 == kind2 &&
            row.orientation1 == orientation1 && row.orientation2 == orientation2 &&
            (row.unit == 0 || row.unit == unitCode))
            return row.code;
    }
    return 0;
}

int AxisCode(int, bool geographic, const LmAxisOrientation& orientation) {
    if (geographic) {
        switch (orientation) {
            case eOrientNorth: return 9901;
            case eOrientEast: return 9902;
            default: return 0;
        }
    }
    switch (orientation) {
        case eOrientEast: return 9906;
        case eOrientNorth: return 9907;
        case eOrientWest: return 9908;
        case eOrientSouth: return 9909;
        default: return 0;
    }
}

LmString UnitName(int code) {
    switch (code) {
        case 9001: return "m";
        case 9105: return "grads";
        case 9108: return "DMSH";
        case 9122: return "degree";
        default: return "";
    }
}

LmString Axis_Orientation(const LmAxisOrientation& orientation) {
    switch (orientation) {
        case eOrientNorth: return "north";
        case eOrientSouth: return "south";
        case eOrientEast: return "east";
        case eOrientWest: return "west";
        case eOrientUp: return "up";
        case eOrientDown: return "down";
        default: return "";
    }
}

LmString Axis_Abbreviation(const LmString& name) {
    static const struct {
        const char* prefix;
        const char* abbreviation;
    } rows[] = {{"lat", "Lat"}, {"lon", "Long"}, {"n", "N"}, {"e", "E"}, {"y", "Y"}, {"x", "X"}};
    for (const auto& row : rows)
        if (_StartsWith(name.c_str(), row.prefix)) return row.abbreviation;
    return "";
}

LmString CoordinateSystemName(bool geographic, int unitCode, const LmString& axisName1, const LmString& axisName2,
                              const LmAxisOrientation&, const LmAxisOrientation&, const LmString& orientationText1,
                              const LmString& orientationText2, const LmString& abbreviation1,
                              const LmString& abbreviation2) {
    LmString name = geographic ? "Ellipsoidal" : "Cartesian";
    name += " 2D CS. Axes: " + axisName1 + ", " + axisName2 + " (" + abbreviation1 + "," + abbreviation2 +
            "). Orientations: " + orientationText1 + ", " + orientationText2 + ".  UoM: " + UnitName(unitCode) + ".";
    return name;
}

LmString Datum_Type(int code) {
    if (code == 1134 || (code >= 9300 && code <= 9315)) return "engineering";
    for (const _CodeRange& range : _verticalDatums)
        if (code >= range.first && code <= range.last) return "vertical";
    return "geodetic";
}

int ConversionsRuleCode(bool projected, const OGRSpatialReference* srs) {
    if (!projected || srs == nullptr) return -1;
    LmQuietGdalErrors quiet;
    const char* projection = srs->GetAttrValue("PROJECTION");
    for (const _MethodRow& method : _methods)
        if (_StartsWith(projection, method.prefix)) return method.code;
    return -1;
}

int ParmID(int methodCode, const LmString& name, LmUnits& unit) {
    for (const _ParameterRow& row : _parameters) {
        if (row.method != methodCode || !_StartsWith(name.c_str(), row.prefix)) continue;
        unit = static_cast<LmUnits>(row.unit);
        return row.code;
    }
    return -1;
}

std::vector<LmCoordinateConversionsParameter> AllCoordOpParamsInfo(const OGR_SRSNode* node, int methodCode) {
    std::vector<LmCoordinateConversionsParameter> parameters;
    if (node == nullptr) return parameters;
    for (int i = 0; i < node->GetChildCount(); ++i) {
        const OGR_SRSNode* child = node->GetChild(i);
        if (LmCRT::_stricmp(child->GetValue(), "PARAMETER") != 0 || child->GetChildCount() != 2) continue;
        LmCoordinateConversionsParameter parameter;
        parameter.Name = child->GetChild(0)->GetValue();
        parameter.MethodCode = methodCode;
        parameter.Unit = static_cast<LmUnits>(0);
        parameter.ParameterCode = ParmID(methodCode, parameter.Name, parameter.Unit);
        parameter.Value = _TruncatedToInt(LmCRT::_atof(child->GetChild(1)->GetValue()));
        parameters.push_back(parameter);
    }
    return parameters;
}

}  // namespace Kernel
}  // namespace Lumora
