/// @file
/// The plane four-parameter similarity between two plane coordinate systems:
/// a shift (dX, dY), a rotation and a scale change.
#ifndef LMSPATIALREFERENCE_PLANE4PARAMETERTRANSFORMATION_H
#define LMSPATIALREFERENCE_PLANE4PARAMETERTRANSFORMATION_H

#include <lmspatialreference/export.h>
#include <lmspatialreference/transformation.h>

namespace Lumora {
namespace Kernel {

/// Applies x' = x + dX - y * b + x * a, y' = y + dY + x * b + y * a with
/// a = (1 + m) cos(theta) - 1 and b = (1 + m) sin(theta); z is never touched.
/// There is no reverse.
class LM_API LmPlane4PatameterCoordinateTransformation : public LmCoordinateTransformation {
public:
    /// parameters: dX, dY (coordinate unit), theta (seconds of arc), m (parts
    /// per million). A null array gives the identity.
    explicit LmPlane4PatameterCoordinateTransformation(const double* parameters);

    using LmCoordinateTransformation::Transformation;
    /// True unless x or y is null while count is positive.
    bool Transformation(double* x, double* y, double* z, int count, int step) override;

private:
    double m_dX;
    double m_dY;
    double m_theta;  // radians
    double m_m;      // ratio
};

}  // namespace Kernel
}  // namespace Lumora

#endif  // LMSPATIALREFERENCE_PLANE4PARAMETERTRANSFORMATION_H
