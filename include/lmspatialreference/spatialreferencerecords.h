/// @file
/// Descriptive records of a spatial reference: plain structures laid out after
/// the tables of the EPSG dataset (coordinate system, axis, ellipsoid, datum,
/// coordinate reference system, projection conversion and its parameters),
/// and the free functions that derive their codes and texts.
///
/// No code is looked up in any database: codes are read from the AUTHORITY
/// nodes of GDAL's tree of the reference or derived by fixed tables. A code of
/// -1 means none, 0 a combination the tables do not recognise. The records
/// follow GDAL's tree exactly as GDAL builds it, so axis names, unit
/// authorities and parameter spellings are GDAL's. A null reference answers
/// records whose codes are all -1 and whose texts are all empty.
#ifndef LMSPATIALREFERENCE_SPATIALREFERENCERECORDS_H
#define LMSPATIALREFERENCE_SPATIALREFERENCERECORDS_H

#include <lmspatialreference/export.h>
#include <lmspatialreference/spatialreference.h>

#include <vector>

class OGRSpatialReference;
class OGR_SRSNode;

namespace Lumora {
namespace Kernel {

/// What an axis name says it measures (see AxisName).
enum LmAxisName : int {
    eAxisUnknown = 0,
    eAxisLat = 1,
    eAxisLon = 2,
    eAxisX = 3,
    eAxisY = 4,
    eAxisE = 5,
    eAxisN = 6,
};

/// The direction of an axis; the values are those of OGR's OGRAxisOrientation.
enum LmAxisOrientation : int {
    eOrientOther = 0,
    eOrientNorth = 1,
    eOrientSouth = 2,
    eOrientEast = 3,
    eOrientWest = 4,
    eOrientUp = 5,
    eOrientDown = 6,
};

/// A two-dimensional coordinate system.
struct LM_API LmCoordinateSystem {
    int Code = -1;              ///< EPSG coordinate system code, 0 when not recognised
    LmString Name;              ///< "Ellipsoidal 2D CS. Axes: ..." (see CoordinateSystemName)
    LmString Type;              ///< "Ellipsoidal" or "Cartesian"
    int Dimension = 2;          ///< always 2
    LmString InformationSource; ///< "EPSG"
    LmString DataSource;        ///< "EPSG"
};

/// One axis of a coordinate system.
struct LM_API LmCoordinateAxis {
    int CoordinateSystemCode = -1; ///< code of the coordinate system the axis belongs to
    int AxisNameCode = -1;      ///< EPSG axis name code, 0 when not recognised
    LmString Orientation;       ///< "north", "east", ... or ""
    LmString Name;              ///< as the reference's AXIS node names it (see LmSpatialReference::Axis)
    LmString Abbreviation;      ///< "Lat", "Long", "N", "E", "Y", "X" or "" (see Axis_Abbreviation)
    int UnitCode = -1;          ///< EPSG unit of the reference's UNIT node, -1 when GDAL gives none
    int Order = 0;              ///< 1 or 2
};

/// An ellipsoid. Its axes are always in metres, as GDAL gives them; UnitCode
/// is the unit the EPSG dataset defines that ellipsoid in, which for a few
/// older ellipsoids is not the metre.
struct LM_API LmEllipsoid {
    int Code = -1;              ///< EPSG ellipsoid code, -1 when GDAL gives none
    LmString Name;              ///< as the reference's SPHEROID node names it
    double SemiMajorAxis = 0.0; ///< metres
    double SemiMinorAxis = 0.0; ///< metres
    double InverseFlattening = 0.0; ///< 0 for a sphere
    /// By the ellipsoid code: 9005 for 7007 and 7034, 9003 for 7009, 9080 for
    /// 7042, 9031 for 7046, 9002 for 7055, else 9001 (metre), also for -1.
    int UnitCode = -1;
    LmString InformationSource; ///< "EPSG"
    LmString DataSource;        ///< "EPSG"
};

/// A datum with its Bursa-Wolf parameters to WGS 84, when the reference has them.
struct LM_API LmDatum {
    int Code = -1;              ///< EPSG datum code, -1 when GDAL gives none
    int EllipsoidCode = -1;     ///< EPSG code of its ellipsoid, -1 when GDAL gives none
    LmString Name;              ///< as the reference's DATUM node names it
    LmString Type;              ///< "geodetic", "vertical" or "engineering"
    int PrimeMeridianCode = -1; ///< EPSG prime meridian code, -1 when GDAL gives none
    LmString InformationSource; ///< "EPSG"
    LmString DataSource;        ///< "EPSG"
    bool HasTOWGS84 = false;    ///< whether the datum carries a TOWGS84 node
    /// Shifts (m), rotations (arc seconds) and scale (ppm) in the order of the
    /// TOWGS84 node, each read as an integer: 23.5 is stored as 23.0.
    double TOWGS84[7] = {0, 0, 0, 0, 0, 0, 0};
};

/// The geographic coordinate reference system of a reference.
struct LM_API LmCoordinateReferenceSystem {
    int Code = -1;              ///< EPSG() of a geographic reference, -1 for any other
    /// The reference's Name(); for one that is not geographic, the text before
    /// its first "/", trimmed ("WGS 84" of "WGS 84 / UTM zone 50N").
    LmString Name;
    LmString Kind;              ///< "GEOGRAPHIC2D", "VERTICAL", "ENGINEERING" or ""
    /// CoordinateSystem().Code of the reference itself, so the Cartesian CS of
    /// a projected reference (4400, ...), not that of its geographic base.
    int CoordinateSystemCode = -1;
    int DatumCode[2] = {-1, -1}; ///< both hold the datum code
    LmString InformationSource; ///< "EPSG"
    LmString DataSource;        ///< "EPSG"
};

/// The projection conversion of a projected reference.
struct LM_API LmCoordinateConversionsRule {
    LmString Name;              ///< the reference's name after its first "/", trimmed (all of it without one)
    LmString Type;              ///< "CONVERSION"
    int MethodCode = -1;        ///< EPSG operation method code, -1 when unknown
};

/// One projection parameter.
struct LM_API LmCoordinateConversionsParameter {
    LmString Name;              ///< as GDAL spells it in the reference's tree
    int MethodCode = -1;        ///< the method code of the conversion it belongs to
    int ParameterCode = -1;     ///< EPSG parameter code, -1 when unknown
    /// The value truncated toward zero: a scale factor of 0.9996 is stored as
    /// 0. Values beyond the int range saturate; NaN is stored as 0.
    int Value = 0;
    LmUnits Unit = static_cast<LmUnits>(0); ///< 0 when unknown
};

/// The axis a reference without axis definitions is taken to have: axis 0 is
/// "LATITUDE" north (geographic) or "X" east, axis 1 "LONGITUDE" east or "Y"
/// north. Any i other than 0 answers axis 1. Writes the orientation when the
/// pointer is not null.
LM_API LmString DefaultAxis(int i, LmAxisOrientation* orientation, bool geographic);

/// The authority code of the node named key ("UNIT", "SPHEROID", "DATUM",
/// "PRIMEM", ...), -1 when GDAL has none, the reference is null or the code
/// does not fit an int.
LM_API int GetCode(const OGRSpatialReference* srs, const char* key);

/// The kind of an axis by the prefix of its name, ignoring case: "Lat", "Lon",
/// "X", "Y", "E", "N" (first match); eAxisUnknown otherwise or for null.
LM_API LmAxisName AxisName(const char* text);

/// The EPSG coordinate system code of a pair of axes, 0 when not recognised.
/// unitCode only matters for geographic systems.
LM_API int CoordinateSystemCode(bool geographic, int unitCode, const LmAxisName& kind1, const LmAxisName& kind2,
                                const LmAxisOrientation& orientation1, const LmAxisOrientation& orientation2);

/// The EPSG axis name code of an axis by its orientation, 0 when not
/// recognised; i is not used.
LM_API int AxisCode(int i, bool geographic, const LmAxisOrientation& orientation);

/// The short name of a unit code (9001 "m", 9105 "grads", 9108 "DMSH", 9122
/// "degree"); "" for others.
LM_API LmString UnitName(int code);

/// "north", "south", "east", "west", "up" or "down"; "" for others.
LM_API LmString Axis_Orientation(const LmAxisOrientation& orientation);

/// "Lat", "Long", "N", "E", "Y" or "X" by the prefix of the axis name,
/// ignoring case; "" when none fits.
LM_API LmString Axis_Abbreviation(const LmString& name);

/// The descriptive name of a coordinate system, such as
/// "Ellipsoidal 2D CS. Axes: Latitude, Longitude (Lat,Long). Orientations: north, east.  UoM: degree."
/// The two orientations are not used: the texts say them.
LM_API LmString CoordinateSystemName(bool geographic, int unitCode, const LmString& axisName1,
                                     const LmString& axisName2, const LmAxisOrientation& orientation1,
                                     const LmAxisOrientation& orientation2, const LmString& orientationText1,
                                     const LmString& orientationText2, const LmString& abbreviation1,
                                     const LmString& abbreviation2);

/// The type of a datum by its EPSG code: "engineering", "vertical" or, for
/// every other code (also -1), "geodetic".
LM_API LmString Datum_Type(int code);

/// The EPSG operation method code of a projected reference's PROJECTION,
/// tested by prefix ignoring case; -1 when not projected, null or unknown.
/// The Belgian Lambert method answers 9802, the general one, since its name
/// starts with the general name.
LM_API int ConversionsRuleCode(bool projected, const OGRSpatialReference* srs);

/// The EPSG parameter code of a parameter name for a method (9802, 9803,
/// 9805, 9806, 9807, 9829), tested by prefix ignoring case; sets unit on a
/// match. -1, unit untouched, when nothing matches.
LM_API int ParmID(int methodCode, const LmString& name, LmUnits& unit);

/// The PARAMETER children of a node (normally PROJCS), in order; empty for null.
LM_API std::vector<LmCoordinateConversionsParameter> AllCoordOpParamsInfo(const OGR_SRSNode* node, int methodCode);

}  // namespace Kernel
}  // namespace Lumora

#endif  // LMSPATIALREFERENCE_SPATIALREFERENCERECORDS_H
