/// @file
/// The plane seven-parameter method: the seven Bursa-Wolf parameters and the
/// change of ellipsoid between two datums applied directly to geodetic
/// coordinates as differential corrections of longitude and latitude (2D) or
/// of longitude, latitude and height (3D).
///
/// The corrections are evaluated with the coordinates handed to sine and
/// cosine exactly as they are stored, and added to them unconverted; the
/// estimators of the factory fit the same model, so estimating and then
/// applying reproduces the fitted corrections.
#ifndef LMSPATIALREFERENCE_PLANE7PARAMETERTRANSFORMATION_H
#define LMSPATIALREFERENCE_PLANE7PARAMETERTRANSFORMATION_H

#include <lmspatialreference/export.h>
#include <lmspatialreference/spatialreference.h>
#include <lmspatialreference/transformation.h>

namespace Lumora {
namespace Kernel {

/// Corrects longitude x and latitude y; z is never touched.
class LM_API LmPlane7PatameterCoordinateTransformation : public LmCoordinateTransformation {
public:
    /// parameters: dX, dY, dZ (metres), ex, ey, ez (seconds of arc), m (parts
    /// per million); a null array gives zero parameters. The ellipsoids are read
    /// from source and target at construction (a = EquatorialRadiusA(),
    /// f = 1 / FlattenInverseF()); a null reference gives a = f = 0.
    LmPlane7PatameterCoordinateTransformation(const double* parameters, LmSpatialReference* source,
                                              LmSpatialReference* target);

    using LmCoordinateTransformation::Transformation;
    /// True unless x or y is null while count is positive.
    bool Transformation(double* x, double* y, double* z, int count, int step) override;

private:
    double m_parameters[7];  // shifts in metres, rotations in radians, m as a ratio
    double m_a1, m_f1;       // source ellipsoid
    double m_a2, m_f2;       // target ellipsoid
};

/// Corrects longitude x, latitude y and, when z is given, height z. The
/// corrections are evaluated at the height z, or at height 0 when z is null.
/// Parameters and ellipsoids as for the 2D class.
class LM_API LmPlane7PatameterCoordinateTransformation3D : public LmCoordinateTransformation {
public:
    /// Parameters, units and ellipsoids as for the 2D constructor.
    LmPlane7PatameterCoordinateTransformation3D(const double* parameters, LmSpatialReference* source,
                                                LmSpatialReference* target);

    using LmCoordinateTransformation::Transformation;
    /// True unless x or y is null while count is positive.
    bool Transformation(double* x, double* y, double* z, int count, int step) override;

private:
    double m_parameters[7];
    double m_a1, m_f1;
    double m_a2, m_f2;
};

}  // namespace Kernel
}  // namespace Lumora

#endif  // LMSPATIALREFERENCE_PLANE7PARAMETERTRANSFORMATION_H
