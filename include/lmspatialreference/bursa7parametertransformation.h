/// @file
/// The Bursa-Wolf seven-parameter transformation between two geocentric
/// Cartesian systems (X, Y, Z in metres).
#ifndef LMSPATIALREFERENCE_BURSA7PARAMETERTRANSFORMATION_H
#define LMSPATIALREFERENCE_BURSA7PARAMETERTRANSFORMATION_H

#include <lmspatialreference/export.h>
#include <lmspatialreference/transformation.h>

namespace Lumora {
namespace Kernel {

/// Forward, the linearised small-angle model the estimator fits:
///   `X' = X + dX - Z ey + Y ez + m X`
///   `Y' = Y + dY + Z ex - X ez + m Y`
///   `Z' = Z + dZ - Y ex + X ey + m Z.`
/// The reverse removes the shifts and applies the exact inverse of the full
/// rotation-scale matrix, so forward then reverse differs from the identity by
/// second-order terms in m * e whenever both scale and rotation are non-zero.
/// Existing datasets were produced this way, so the asymmetry is kept.
class LM_API LmBursa7ParameterGeocentricCoordinateTransformation : public LmCoordinateTransformation {
public:
    /// parameters: dX, dY, dZ (metres), ex, ey, ez (seconds of arc), m (parts
    /// per million). A null array gives the identity.
    explicit LmBursa7ParameterGeocentricCoordinateTransformation(const double* parameters);

    using LmCoordinateTransformation::Transformation;
    using LmCoordinateTransformation::ReverseTransformation;
    /// Z is taken as 0 and not written when z is null. True unless x or y is
    /// null while count is positive.
    bool Transformation(double* x, double* y, double* z, int count, int step) override;
    /// Needs all three arrays: false when x, y or z is null while count is
    /// positive.
    bool ReverseTransformation(double* x, double* y, double* z, int count, int step) override;

private:
    double m_dX, m_dY, m_dZ;
    double m_ex, m_ey, m_ez;  // radians
    double m_m;               // ratio
    double m_inverse[9];      // row-major inverse of the rotation-scale matrix
};

}  // namespace Kernel
}  // namespace Lumora

#endif  // LMSPATIALREFERENCE_BURSA7PARAMETERTRANSFORMATION_H
