/// @file
/// Spatial references: the library's coordinate reference system object, which
/// owns one GDAL/OGR spatial reference and answers every question the rest of
/// the library asks of it, and the unit-of-measure codes it reports.
///
/// Every OGR object a reference holds uses the traditional GIS axis order, so
/// geographic coordinates are always x = longitude, y = latitude, whatever order
/// the authority of the definition prescribes.
#ifndef LMSPATIALREFERENCE_SPATIALREFERENCE_H
#define LMSPATIALREFERENCE_SPATIALREFERENCE_H

#include <lmspatialreference/epsgmatch.h>
#include <lmspatialreference/export.h>
#include <lmspatialreference/units.h>
#include <lmspatialreference/utility.h>

#include <vector>

class OGRSpatialReference;

namespace Lumora {
namespace Kernel {

using Utility::LmRefObject;
using Utility::LmSmarterPtr;
using Utility::LmString;

// The descriptive records, defined in spatialreferencerecords.h.
enum LmAxisOrientation : int;
struct LmCoordinateSystem;
struct LmCoordinateAxis;
struct LmEllipsoid;
struct LmDatum;
struct LmCoordinateReferenceSystem;
struct LmCoordinateConversionsRule;
struct LmCoordinateConversionsParameter;

/// The definitions the library carries with it.
enum LmWellKnownSpatialReference : int {
    eWGS84 = 0,        ///< WGS 84, geographic, in degrees
    eCGCS2000 = 1,     ///< CGCS 2000 (China Geodetic Coordinate System 2000), geographic, in degrees
    eWebMercator = 2,  ///< the Mercator of web maps on a sphere of radius 6378137 m, in metres
};

/// How the text given to the text constructor is read; any other value yields
/// a null reference.
enum LmSpatialReferenceFormat : int {
    eAutoDetect = 0,         ///< the legacy parameter text, falling back to WKT
    eWKT = 1,                ///< WKT 1 text
    eXML = 2,                ///< GDAL's XML form
    eProj4 = 3,              ///< a PROJ.4 string
    eWKTOther = 4,           ///< read exactly as eWKT
    eLegacyParameters = 5,   ///< the legacy parameter text only
};

/// A coordinate reference system. A reference whose OGR object could not be
/// built is "null": it stays usable and every query answers its null value
/// (false, 0.0, 0 or an empty text).
class LM_API LmSpatialReference : public LmRefObject {
public:
    /// An unknown value writes "wkt is null" to standard output and gives a
    /// null reference.
    explicit LmSpatialReference(LmWellKnownSpatialReference wellKnown);
    /// A null or empty text gives a null reference. A reference read from WKT
    /// keeps that text and answers ExportToWKT(false) with it unchanged. One
    /// read from the legacy parameter text (see legacyparameters.h) does not:
    /// ExportToWKT(false) gives OGR's text, and record types 0, 40 and 41 give
    /// an empty, non-null reference.
    LmSpatialReference(const char* text, LmSpatialReferenceFormat format);
    /// The reference of an EPSG code: its text in the library's EPSG table,
    /// else OGR's definition of the code. Null when the code is unknown, and
    /// for every code when the EPSG table cannot be loaded.
    explicit LmSpatialReference(int epsg);
    ~LmSpatialReference() override;

    LmSpatialReference(const LmSpatialReference&) = delete;
    LmSpatialReference& operator=(const LmSpatialReference&) = delete;

    /// The OGR object, for code that hands it to GDAL; it stays owned by the
    /// reference and lives as long as it. Null when the reference is null.
    OGRSpatialReference* Handle();
    /// True when no OGR object could be built.
    bool IsNull() const;
    /// True for a geographic (GEOGCS) definition; false for a null reference.
    bool IsGeographic() const;
    /// True for a projected (PROJCS) definition; false for a null reference.
    bool IsProjected() const;
    /// True for a local (LOCAL_CS, engineering) definition; false for a null
    /// reference.
    bool IsLocalCS() const;
    /// The EPSG code: OGR's authority code for the GEOGCS (geographic) or
    /// PROJCS node, else what OGR identifies, else the library's EPSG table
    /// search (g_SearchEPSG). 0 when none is found or the reference is null.
    int EPSG() const;
    /// The EPSG code the text means, as a careful GIS user would name it; 0
    /// when no code is trustworthy (confidence below 70). Codes must agree with
    /// the reference in kind, ellipsoid, prime meridian, units, projection
    /// method and parameter values, and in axis order where the text states
    /// one (a text that states none, as ESRI's do, is easting first and never
    /// gets a northing-first twin of an easting-first code). Among those, the
    /// datum's name and then the CS's name decide, ESRI spellings included,
    /// then current codes before deprecated ones, then the smaller code. An
    /// EPSG authority in the text is trusted when its numbers agree.
    /// candidates, when given, receives every code whose numbers agree, best
    /// first. Reads EPSG.index (MakeEPSGIndexFile) and never changes the
    /// reference; safe to call from several threads on different references.
    int FindEPSG(std::vector<LmEPSGMatch>* candidates = nullptr) const;

    /// The name given with Name(const char*), else the name in the definition.
    LmString Name() const;
    /// Renames the object only: exports keep the name of the definition.
    void Name(const char* name);
    /// The ellipsoid's name, or an empty text.
    LmString Ellipsoid() const;
    /// The projection method's name; empty when not projected.
    LmString Projection() const;
    /// The semi-major axis of the ellipsoid in metres; 0.0 for a null
    /// reference.
    double EquatorialRadiusA() const;
    /// The semi-minor axis of the ellipsoid in metres; 0.0 for a null
    /// reference.
    double PolarRadiusB() const;
    /// The inverse flattening of the ellipsoid, 0 for a sphere; 0.0 for a
    /// null reference.
    double FlattenInverseF() const;
    /// The arithmetic mean of the equatorial and polar radii, in metres.
    double MeanRadius() const;
    /// The unit of the first UNIT of the definition; metre and other units
    /// without an entry in the unit name table answer eMeter.
    LmUnits Units() const;

    /// The WKT 1 text. Not pretty: the cached text, filled from OGR on first
    /// use. Pretty: OGR's indented form, never cached. Empty for a null
    /// reference or when OGR cannot export.
    LmString ExportToWKT(bool pretty) const;
    /// GDAL's XML form; empty for a null reference or when OGR cannot export.
    LmString ExportToXml() const;
    /// The PROJ.4 form; empty for a null reference or when OGR cannot export.
    LmString ExportToProj4() const;

    /// Itself (one more owner) when geographic, else a new reference of its
    /// geographic CS owned by the returned pointer (a null pointer when there
    /// is none).
    LmSmarterPtr<LmSpatialReference> Geographic();
    /// A new reference, owned by the returned pointer, read from the cached
    /// WKT text, with the same name. A
    /// reference that has no cached text (never exported with
    /// ExportToWKT(false) since a build from XML or PROJ.4) clones into a null
    /// reference: call ExportToWKT(false) first for a faithful copy.
    virtual LmSmarterPtr<LmSpatialReference> Clone() const;

    /// The same definition per OGR, or else the same CS name on the same
    /// ellipsoid (projected) or the same geographic CS. False when other is
    /// null, when just one of the two references is null or when they are of
    /// different kinds; true when both are null.
    bool IsSame(LmSpatialReference* other) const;
    /// Same ellipsoid and same CS name (or the same vertical CS per OGR);
    /// projection parameters are not compared. False when other is null,
    /// either reference is null or they are of different kinds.
    bool IsSameProjCS(LmSpatialReference* other) const;
    /// The same geographic CS per OGR, or else the same ellipsoid and CS name.
    /// False when other is null, either reference is null or they are of
    /// different kinds.
    bool IsSameGeogCS(LmSpatialReference* other) const;
    /// Same ellipsoid, same projection and exactly equal values for every
    /// projection parameter of this reference; used to identify EPSG codes.
    /// False when other is null, either reference is null or they are of
    /// different kinds.
    bool IsSameParameter(LmSpatialReference* other) const;

    // Descriptive records (spatialreferencerecords.h). Each answers a record
    // by value; a null reference answers records whose codes are all -1 and
    // whose texts are all empty, and no parameters unless it is a clone that
    // copied them.

    /// The name of axis i (clamped to 0 or 1) and its orientation (written when
    /// not null), read from the AXIS nodes of the reference's GEOGCS (for a
    /// geographic reference) or PROJCS node, where GDAL keeps the text's own
    /// names ("Latitude", "Easting"). GetAxis would answer the names of PROJ's
    /// database ("Geodetic latitude") for any text with an EPSG authority,
    /// which the coordinate system table does not recognise, so it is asked
    /// only when the tree has no such node, and DefaultAxis after it; a null
    /// reference answers DefaultAxis of a reference that is not geographic.
    LmString Axis(int i, LmAxisOrientation* orientation) const;
    /// The coordinate system record of the two axes Axis(0) and Axis(1): its
    /// EPSG code (0 when the pair is not recognised) and descriptive name;
    /// codes -1 and empty texts for a null reference.
    LmCoordinateSystem CoordinateSystem() const;
    /// The record of axis i (clamped to 0 or 1; Order is i + 1), with its
    /// EPSG axis name code and the code of CoordinateSystem(); codes -1 and
    /// empty texts for a null reference.
    LmCoordinateAxis CoordinateAxis(int i) const;
    /// The ellipsoid record: code from the SPHEROID authority, name, axes in
    /// metres and inverse flattening; codes -1, empty texts and 0.0 values
    /// for a null reference.
    LmEllipsoid EllipsoidInfo() const;
    /// The datum record: datum, ellipsoid and prime meridian codes from their
    /// authorities, and the TOWGS84 values when the datum has them; codes -1
    /// and empty texts for a null reference.
    LmDatum Datum() const;
    /// The geographic CRS record. Code is EPSG() for a geographic reference,
    /// else -1 with the name cut at its first "/" (the base CRS of names such
    /// as "WGS 84 / UTM zone 50N"); codes -1 and empty texts for a null
    /// reference.
    LmCoordinateReferenceSystem GeographicCoordinateReferenceSystem() const;
    /// The projection conversion record, named after the first "/" of the
    /// reference's name, with the EPSG method code of its PROJECTION (-1 when
    /// not projected or unknown).
    LmCoordinateConversionsRule CoordinateConversionsRule() const;
    /// The projection parameters, read once and then kept (Clone copies
    /// them, even into a clone that is null); none for a reference without a
    /// PROJCS node.
    int CoordinateConversionsParameterCount() const;
    /// A copy of parameter i; an index outside the list answers a record with
    /// codes -1, an empty name and value 0.
    LmCoordinateConversionsParameter CoordinateConversionsParameter(int i) const;

private:
    void _Adopt(OGRSpatialReference* srs);

    mutable LmString m_strWKT;
    OGRSpatialReference* m_pSRS;
    LmString m_strName;
    mutable std::vector<LmCoordinateConversionsParameter> m_vecParameters;
};

}  // namespace Kernel
}  // namespace Lumora

// The records the builders above return.
#include <lmspatialreference/spatialreferencerecords.h>

#endif  // LMSPATIALREFERENCE_SPATIALREFERENCE_H
