/// @file
/// Geodesic measurement on an ellipsoid: distances and azimuths, positions along
/// a geodesic, polyline lengths and polygon areas, over GeographicLib's C
/// routines.
///
/// Every point is given longitude first, (x, y) = (longitude, latitude) in
/// degrees, as everywhere in this library (GeographicLib itself takes latitude
/// first). Distances are in the units of the semi-major axis, azimuths in
/// degrees clockwise from north, areas in square units of the axis.
#ifndef LMSPATIALREFERENCE_GEODESICS_H
#define LMSPATIALREFERENCE_GEODESICS_H

#include <lmspatialreference/export.h>

#include <geodesic.h>

namespace Lumora {
namespace Kernel {

class LmSpatialReference;

/// The inverse and direct problems on one ellipsoid. Copies are independent;
/// the const operations may run concurrently on one object.
class LM_API LmGeodesic {
public:
    /// The ellipsoid of semi-major axis a and flattening f. A second argument
    /// greater than 1 is an inverse flattening, so 298.257223563 and
    /// 1 / 298.257223563 both describe WGS 84; 0 is a sphere.
    LmGeodesic(double a, double f);
    /// The ellipsoid of a spatial reference; an inverse flattening of 0 is a
    /// sphere. A null pointer or null reference gives the degenerate ellipsoid
    /// of axis 0, on which every result is 0 or NaN.
    explicit LmGeodesic(LmSpatialReference* sr);

    /// The distance from point 1 to point 2; the forward azimuths at both
    /// points go to azi1 and azi2 when they are not null.
    double Inverse(double x1, double y1, double x2, double y2, double* azi1, double* azi2) const;
    /// The end (x2, y2) of the geodesic leaving (x1, y1) at azimuth azi1 for a
    /// distance s12, and its azimuth there when azi2 is not null.
    void Direct(double x1, double y1, double azi1, double s12, double* x2, double* y2, double* azi2) const;
    /// The point at ratio times the distance from point 1 toward point 2, and
    /// the azimuth there when azi is not null. A ratio outside 0..1 extends the
    /// same geodesic.
    void Interpolation(double x1, double y1, double x2, double y2, double ratio, double* x, double* y,
                       double* azi) const;
    /// The length of a polyline stored as count doubles with a point every dim
    /// doubles, longitude then latitude (further values of a point, such as
    /// heights, are skipped). Fewer than two whole points, or dim < 2, give 0.
    /// The legs are summed in parallel, so the last bits may vary between runs.
    double ComputeGeodesic(const double* coords, int count, int dim) const;

protected:
    /// GeographicLib's ellipsoid.
    geod_geodesic m_geodesic;
};

/// Positions along one geodesic, given by its start point and azimuth.
class LM_API LmGeodesicLine : public LmGeodesic {
public:
    /// What the line is set up to compute, with GeographicLib's values;
    /// eNone gives its default: latitude, longitude, azimuth and distance input.
    enum GeoDMask : unsigned {
        eNone = GEOD_NONE,
        eLatitude = GEOD_LATITUDE,
        eLongitude = GEOD_LONGITUDE,
        eAzimuth = GEOD_AZIMUTH,
        eDistance = GEOD_DISTANCE,
        eDistanceIn = GEOD_DISTANCE_IN,
        eReducedLength = GEOD_REDUCEDLENGTH,
        eGeodesicScale = GEOD_GEODESICSCALE,
        eArea = GEOD_AREA,
        eAll = GEOD_ALL
    };

    ///@{
    /// The geodesic on the ellipsoid of sr, or of (a, f) read as by
    /// LmGeodesic, leaving (x1, y1) (degrees, longitude first) at azimuth azi1
    /// (degrees), set up to compute caps.
    LmGeodesicLine(LmSpatialReference* sr, double x1, double y1, double azi1, GeoDMask caps);
    LmGeodesicLine(double a, double f, double x1, double y1, double azi1, GeoDMask caps);
    ///@}

    /// The point at distance s12 from the start. The azimuth there is computed
    /// but never handed out: azi is left as it is, even when not null.
    void Position(double s12, double* x, double* y, double* azi) const;

protected:
    /// GeographicLib's line, set up once by the constructor.
    geod_geodesicline m_line;
};

/// The area and perimeter of a polygon, or the length of a polyline, built
/// point by point or edge by edge. Adding points changes the object.
class LM_API LmGeodesicPolygon : public LmGeodesic {
public:
    ///@{
    /// An empty polygon on the ellipsoid of sr, or of (a, f) read as by
    /// LmGeodesic. polyline true: the points form an open polyline, which has
    /// no area.
    LmGeodesicPolygon(LmSpatialReference* sr, bool polyline);
    LmGeodesicPolygon(double a, double f, bool polyline);
    ///@}

    /// Forgets every point, keeping the polyline flag.
    void Reset();
    /// A further vertex at longitude x, latitude y (degrees).
    void AddPoint(double x, double y);
    /// A further vertex at distance s along azimuth azi from the last one.
    void AddEdge(double azi, double s);
    /// Returns the number of points. reverse: clockwise traversal counts as
    /// positive; sign: the signed area rather than that of the enclosed region.
    /// area is not written for a polyline; either pointer may be null.
    unsigned Compute(bool reverse, bool sign, double* area, double* perimeter) const;

protected:
    /// GeographicLib's accumulator of the points and edges added so far.
    geod_polygon m_polygon;
    /// True for an open polyline, which has no area.
    bool m_polyline;
};

}  // namespace Kernel
}  // namespace Lumora

#endif  // LMSPATIALREFERENCE_GEODESICS_H
