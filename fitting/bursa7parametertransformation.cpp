// Bursa-Wolf seven-parameter transformation in geocentric space and its
// estimator.
#include <lmspatialreference/bursa7parametertransformation.h>
#include <lmspatialreference/coordinatetransformationfactory.h>
#include <lmspatialreference/matrixkit.h>

#include "fitting/estimate.h"
#include "internal/estimationsupport.h"
#include "internal/publishedunits.h"

#include <algorithm>
#include <cstddef>
#include <vector>

namespace Lumora {
namespace Kernel {

namespace {

// The linearised model, which both the estimator and the forward
// transformation apply: p = dX, dY, dZ, ex, ey, ez (radians), m (ratio).
void _Bursa7Forward(const double* p, double X, double Y, double Z, double* fitted) {
    fitted[0] = X + p[0] - Z * p[4] + Y * p[5] + p[6] * X;
    fitted[1] = Y + p[1] + Z * p[3] - X * p[5] + p[6] * Y;
    fitted[2] = Z + p[2] - Y * p[3] + X * p[4] + p[6] * Z;
}

// Unknowns dX, dY, dZ, ex, ey, ez, m, fitted in geocentric coordinates, where
// the mean error is taken too. Three coordinates are read at stride dim: the
// model is meant for dim 3.
struct _Bursa7Form {
    static const int unknowns = 7;
    static const int rows = 3;

    static void DesignRows(const double* s, const double* t, double (*rows)[8]) {
        const double X = s[0], Y = s[1], Z = s[2];
        const double design[3][8] = {{t[0] - X, 1.0, 0.0, 0.0, 0.0, -Z, Y, X},
                                     {t[1] - Y, 0.0, 1.0, 0.0, Z, 0.0, -X, Y},
                                     {t[2] - Z, 0.0, 0.0, 1.0, -Y, X, 0.0, Z}};
        std::copy(&design[0][0], &design[0][0] + 24, &rows[0][0]);
    }

    static void Forward(int dim, const double* u, const double* s, double* fitted) {
        double xyz[3];
        _Bursa7Forward(u, s[0], s[1], s[2], xyz);
        std::copy(xyz, xyz + (dim == 3 ? 3 : 2), fitted);
    }

    static void Publish(const double* u, double* parameters) {
        for (int p = 0; p < 3; ++p) parameters[p] = u[p + 1];
        for (int p = 3; p < 6; ++p) parameters[p] = _SecondsFromRadians(u[p + 1], _truePi);
        parameters[6] = u[7] * _partsPerMillion;
    }
};

using _Bursa7Model = _InvertedModel<_Bursa7Form>;

}  // namespace

LmBursa7ParameterGeocentricCoordinateTransformation::LmBursa7ParameterGeocentricCoordinateTransformation(
    const double* parameters)
    : m_dX(0.0), m_dY(0.0), m_dZ(0.0), m_ex(0.0), m_ey(0.0), m_ez(0.0), m_m(0.0) {
    if (parameters != nullptr) {
        m_dX = parameters[0];
        m_dY = parameters[1];
        m_dZ = parameters[2];
        m_ex = _RadiansFromSeconds(parameters[3], _truePi);
        m_ey = _RadiansFromSeconds(parameters[4], _truePi);
        m_ez = _RadiansFromSeconds(parameters[5], _truePi);
        m_m = parameters[6] / _partsPerMillion;
    }
    const double s = 1.0 + m_m;
    const double matrix[9] = {s, m_ez * s, -m_ey * s, -m_ez * s, s, m_ex * s, m_ey * s, -m_ex * s, s};
    for (int k = 0; k < 9; ++k) m_inverse[k] = matrix[k];
    // s = 0 (a scale change of -1 000 000 ppm) leaves no inverse; the matrix
    // then stays partly factored and the reverse meaningless, as before.
    mat_inv(3, m_inverse);
}

bool LmBursa7ParameterGeocentricCoordinateTransformation::Transformation(double* x, double* y, double* z, int count,
                                                                         int step) {
    if (count <= 0) return true;
    if (x == nullptr || y == nullptr) return false;
    const double p[7] = {m_dX, m_dY, m_dZ, m_ex, m_ey, m_ez, m_m};
    for (int i = 0; i < count; ++i) {
        const std::ptrdiff_t k = PointIndex(i, step);
        double fitted[3];
        _Bursa7Forward(p, x[k], y[k], z != nullptr ? z[k] : 0.0, fitted);
        x[k] = fitted[0];
        y[k] = fitted[1];
        if (z != nullptr) z[k] = fitted[2];
    }
    return true;
}

bool LmBursa7ParameterGeocentricCoordinateTransformation::ReverseTransformation(double* x, double* y, double* z,
                                                                                int count, int step) {
    if (count <= 0) return true;
    if (x == nullptr || y == nullptr || z == nullptr) return false;
    const double* R = m_inverse;
    for (int i = 0; i < count; ++i) {
        const std::ptrdiff_t k = PointIndex(i, step);
        const double X = x[k] - m_dX, Y = y[k] - m_dY, Z = z[k] - m_dZ;
        x[k] = R[0] * X + R[1] * Y + R[2] * Z;
        y[k] = R[3] * X + R[4] * Y + R[5] * Z;
        z[k] = R[6] * X + R[7] * Y + R[8] * Z;
    }
    return true;
}

void LmCoordinateTransformationFactory::ComputeBursa7Parameter(LmSpatialReference* source,
                                                               LmSpatialReference* target, int count, int dim,
                                                               const double* sourcePoints,
                                                               const double* targetPoints, double* parameters,
                                                               double& meanError) {
    count = _UsablePointCount(count, dim, sourcePoints, targetPoints);
    const _PointPairs pairs(_PointPairs::eGeocentric, source, target, count, dim, sourcePoints, targetPoints);
    _Estimate(_Bursa7Model(pairs), count, parameters, meanError, nullptr);
}

double LmCoordinateTransformationFactory::ComputeBursa7Parameter(LmSpatialReference* source,
                                                                 LmSpatialReference* target, int count, int dim,
                                                                 const double* sourcePoints,
                                                                 const double* targetPoints, double* parameters) {
    double meanError = 0.0;
    ComputeBursa7Parameter(source, target, count, dim, sourcePoints, targetPoints, parameters, meanError);
    return meanError;
}

bool LmCoordinateTransformationFactory::ComputeBursa7Parameter(LmSpatialReference* source,
                                                               LmSpatialReference* target, int count, int dim,
                                                               const double* sourcePoints,
                                                               const double* targetPoints,
                                                               LmEstimationResult& result) {
    if (count < 3 || dim != 3 || sourcePoints == nullptr || targetPoints == nullptr) return false;
    const _PointPairs pairs(_PointPairs::eGeocentric, source, target, count, dim, sourcePoints, targetPoints);
    return _Estimate(_Bursa7Model(pairs), count, result);
}

}  // namespace Kernel
}  // namespace Lumora
