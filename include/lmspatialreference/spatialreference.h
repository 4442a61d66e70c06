// Spatial references: the library's coordinate reference system object, which
// owns one GDAL/OGR spatial reference and answers every question the rest of
// the library asks of it, and the unit-of-measure codes it reports.
//
// Every OGR object a reference holds uses the traditional GIS axis order, so
// geographic coordinates are always x = longitude, y = latitude, whatever order
// the authority of the definition prescribes.
#ifndef LMSPATIALREFERENCE_SPATIALREFERENCE_H
#define LMSPATIALREFERENCE_SPATIALREFERENCE_H

#include <lmspatialreference/utility.h>

class OGRSpatialReference;

namespace Lumora {
namespace Kernel {

using Utility::LmRefObject;
using Utility::LmSmarterPtr;
using Utility::LmString;

// The definitions the library carries with it.
enum LmWellKnownSpatialReference : int {
    eWGS84 = 0,
    eCGCS2000 = 1,
    eWebMercator = 2,
};

// How the text given to the text constructor is read; any other value yields
// a null reference.
enum LmSpatialReferenceFormat : int {
    eAutoDetect = 0,         // the legacy parameter text, falling back to WKT
    eWKT = 1,
    eXML = 2,                // GDAL's XML form
    eProj4 = 3,
    eWKTOther = 4,           // read exactly as eWKT
    eLegacyParameters = 5,   // the legacy parameter text only
};

// Units of measure, by their EPSG unit-of-measure codes.
enum LmUnits : int {
    eMeter = 9001,
    eDegree = 9102,
    eKM = 9205,
    eCM = 9204,
    eMM = 9202,
    eInch = 9203,
    eSexagesimalDMS = 9110,
    eUnity = 9201,
};

// A coordinate reference system. A reference whose OGR object could not be
// built is "null": it stays usable and every query answers its null value
// (false, 0.0, 0 or an empty text).
class LmSpatialReference : public LmRefObject {
public:
    // An unknown value writes "wkt is null" to standard output and gives a
    // null reference.
    explicit LmSpatialReference(LmWellKnownSpatialReference wellKnown);
    // A null or empty text gives a null reference. A reference read from WKT
    // keeps that text and answers ExportToWKT(false) with it unchanged.
    LmSpatialReference(const char* text, LmSpatialReferenceFormat format);
    ~LmSpatialReference() override;

    LmSpatialReference(const LmSpatialReference&) = delete;
    LmSpatialReference& operator=(const LmSpatialReference&) = delete;

    // The owned OGR object, for code that hands it to GDAL; null when null.
    OGRSpatialReference* Handle();
    bool IsNull() const;
    bool IsGeographic() const;
    bool IsProjected() const;
    bool IsLocalCS() const;

    // The name given with Name(const char*), else the name in the definition.
    LmString Name() const;
    // Renames the object only: exports keep the name of the definition.
    void Name(const char* name);
    LmString Ellipsoid() const;
    LmString Projection() const;
    double EquatorialRadiusA() const;
    double PolarRadiusB() const;
    double FlattenInverseF() const;
    // The arithmetic mean of the equatorial and polar radii.
    double MeanRadius() const;
    // The unit of the first UNIT of the definition; metre and other units
    // without an entry in the unit name table answer eMeter.
    LmUnits Units() const;

    // Not pretty: the cached text, filled from OGR on first use. Pretty: OGR's
    // indented form, never cached.
    LmString ExportToWKT(bool pretty) const;
    LmString ExportToXml() const;
    LmString ExportToProj4() const;

    // Itself when geographic, else a new reference of its geographic CS (a
    // null pointer when there is none).
    LmSmarterPtr<LmSpatialReference> Geographic();
    // A new reference read from the cached WKT text, with the same name. A
    // reference that has no cached text (never exported with
    // ExportToWKT(false) since a build from XML or PROJ.4) clones into a null
    // reference: call ExportToWKT(false) first for a faithful copy.
    virtual LmSmarterPtr<LmSpatialReference> Clone() const;

    // The same definition per OGR, or else the same CS name on the same
    // ellipsoid (projected) or the same geographic CS.
    bool IsSame(LmSpatialReference* other) const;
    // Same ellipsoid and same CS name (or the same vertical CS per OGR);
    // projection parameters are not compared.
    bool IsSameProjCS(LmSpatialReference* other) const;
    bool IsSameGeogCS(LmSpatialReference* other) const;
    // Same ellipsoid, same projection and exactly equal values for every
    // projection parameter of this reference; used to identify EPSG codes.
    bool IsSameParameter(LmSpatialReference* other) const;

private:
    void _Adopt(OGRSpatialReference* srs);

    mutable LmString m_strWKT;
    OGRSpatialReference* m_pSRS;
    LmString m_strName;
};

// Equal semi-axes and prime meridians within 0.001 and equal inverse
// flattenings within 1e-6.
bool IsSameEllipsoid(const OGRSpatialReference* a, const OGRSpatialReference* b);

}  // namespace Kernel
}  // namespace Lumora

#endif  // LMSPATIALREFERENCE_SPATIALREFERENCE_H
