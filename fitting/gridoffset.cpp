// Corner offsets of a map sheet from a three-parameter geocentric shift and the
// change of ellipsoid between two references (the differential Molodensky
// corrections of longitude and latitude).
#include <lmspatialreference/coordinatetransformationfactory.h>

#include "internal/estimationsupport.h"
#include "internal/publishedunits.h"

#include <algorithm>
#include <cmath>

namespace Lumora {
namespace Kernel {

namespace {

// Projects four (x, y) pairs from a reference to another, in place.
void _ProjectCorners(LmSpatialReference* from, LmSpatialReference* to, double* corners) {
    LmSmarterPtr<LmCoordinateTransformation> projection(new LmProjectCoordinateTransformation(from, to));
    double projected[8];
    projection->Transformation(corners, 4, 2, projected);
    std::copy(projected, projected + 8, corners);
}

}  // namespace

bool LmCoordinateTransformationFactory::ComputeGridCoordinatesOffset(LmSpatialReference* src,
                                                                     LmSpatialReference* dst, const double* shift,
                                                                     const double* corners, double* offsets) {
    if (src == nullptr || dst == nullptr || src->IsNull() || dst->IsNull()) return false;
    if (shift == nullptr || corners == nullptr || offsets == nullptr) return false;
    double geographic[8];
    std::copy(corners, corners + 8, geographic);
    if (src->IsProjected()) _ProjectCorners(src, src->Geographic(), geographic);

    double a1 = 0.0;
    double f1 = 0.0;
    double a2 = 0.0;
    double f2 = 0.0;
    _EllipsoidOf(src, a1, f1);
    _EllipsoidOf(dst, a2, f2);
    const double e2 = 2.0 * f1 - f1 * f1;
    const double b = a1 * std::sqrt(1.0 - e2);
    const double c = a1 * a1 / b;
    const double e = std::sqrt(a1 * a1 - b * b) / a1;
    const double ePrime = std::sqrt(a1 * a1 - b * b) / b;
    const double da = a2 - a1;
    const double de2 = (2.0 * f2 - f2 * f2) - e2;
    const double dX = shift[0];
    const double dY = shift[1];
    const double dZ = shift[2];

    double result[8];
    for (int j = 0; j < 4; ++j) {
        const double L = geographic[2 * j] / 180.0 * _keptPi;
        const double B = geographic[2 * j + 1] / 180.0 * _keptPi;
        const double sinB = std::sin(B);
        const double cosB = std::cos(B);
        const double sinL = std::sin(L);
        const double cosL = std::cos(L);
        const double V = std::sqrt(1.0 + (ePrime * cosB) * (ePrime * cosB));
        const double W = std::sqrt(1.0 - (e * sinB) * (e * sinB));
        const double M = c / (V * V * V);
        const double N = c / V;
        result[2 * j] = -(dX * sinL - dY * cosL) / (cosB * N);
        result[2 * j + 1] = (-dX * sinB * cosL / M) - (dY * sinB * sinL / M) + dZ * cosB / M +
                            ((e2 * da / W) + (2.0 - e2 * sinB * sinB) * N * de2 / (2.0 * W * W)) * sinB * cosB / M;
    }

    if (dst->IsProjected()) {
        // The offsets (radians) are added to the corners (degrees) as the
        // numbers stand; the offsets in use were computed this way.
        double shifted[8];
        for (int k = 0; k < 8; ++k) shifted[k] = geographic[k] + result[k];
        _ProjectCorners(dst->Geographic(), dst, shifted);
        for (int k = 0; k < 8; ++k) result[k] = shifted[k] - corners[k];
    }
    std::copy(result, result + 8, offsets);
    return true;
}

}  // namespace Kernel
}  // namespace Lumora
