/// @file
/// Conversions between geodetic coordinates (longitude x and latitude y in
/// decimal degrees, ellipsoidal height z in metres) and geocentric Cartesian
/// coordinates (X, Y, Z in metres) on the ellipsoid of a spatial reference.
#ifndef LMSPATIALREFERENCE_GEOCENTRICCONVERSION_H
#define LMSPATIALREFERENCE_GEOCENTRICCONVERSION_H

#include <lmspatialreference/export.h>
#include <lmspatialreference/spatialreference.h>
#include <lmspatialreference/transformation.h>

namespace Lumora {
namespace Kernel {

/// Geodetic to geocentric on the ellipsoid of a reference, taken at
/// construction: a = EquatorialRadiusA(), f = 1 / FlattenInverseF(). A null
/// reference (or pointer) gives a = f = 0, and every point then lands on the
/// origin; a sphere (inverse flattening 0) gives f = 0.
class LM_API LmGeodeticToGeocentricCoordinateTransformation : public LmCoordinateTransformation {
public:
    /// Reads the ellipsoid of reference once, as described above.
    explicit LmGeodeticToGeocentricCoordinateTransformation(LmSpatialReference* reference);

    using LmCoordinateTransformation::Transformation;
    /// Longitude, latitude (degrees) and height (metres; 0 when z is null) to
    /// X, Y and, only when z is given, Z. True unless x or y is null while
    /// count is positive.
    bool Transformation(double* x, double* y, double* z, int count, int step) override;

    /// The semi-major axis of the ellipsoid in use, in metres.
    double SemiMajorAxis() const;
    /// The flattening (not its inverse) of the ellipsoid in use.
    double Flattening() const;

private:
    double m_a;
    double m_f;
};

/// Geocentric to geodetic on the ellipsoid of a reference (as above), with the
/// latitude found by fixed-point iteration to 1e-14 radians. Z is taken as 0
/// when z is null, and the height is written only when z is given.
///
/// The longitude is atan(Y / X) folded by a rule kept from the datasets this
/// library serves: it is right only for X < 0 and Y > 0, that is longitudes
/// between 90 and 180 degrees east. Points elsewhere come back with a wrong
/// longitude (a point at 60 E does not return as 60). A point on the polar
/// axis (X = Y = 0) or with a non-finite coordinate, where the latitude
/// cannot converge, is left as it was instead of hanging the caller.
class LM_API LmGeocentricToGeodeticCoordinateTransformation : public LmCoordinateTransformation {
public:
    /// Reads the ellipsoid of reference once, as described above.
    explicit LmGeocentricToGeodeticCoordinateTransformation(LmSpatialReference* reference);

    using LmCoordinateTransformation::Transformation;
    /// X, Y, Z (metres) to longitude, latitude (degrees) and height (metres).
    /// True unless x or y is null while count is positive.
    bool Transformation(double* x, double* y, double* z, int count, int step) override;

    /// The semi-major axis of the ellipsoid in use, in metres.
    double SemiMajorAxis() const;
    /// The flattening (not its inverse) of the ellipsoid in use.
    double Flattening() const;

private:
    double m_a;
    double m_f;
};

}  // namespace Kernel
}  // namespace Lumora

#endif  // LMSPATIALREFERENCE_GEOCENTRICCONVERSION_H
