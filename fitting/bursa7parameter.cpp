// Bursa-Wolf seven-parameter transformation in geocentric space and its
// estimator.
#include <lmspatialreference/bursa7parametertransformation.h>
#include <lmspatialreference/coordinatetransformationfactory.h>
#include <lmspatialreference/matrixkit.h>
#include <lmspatialreference/mymatrix.h>

#include "fitting/estimationsupport.h"
#include "fitting/publishedunits.h"

#include <cmath>
#include <cstddef>
#include <vector>

namespace Lumora {
namespace Kernel {

namespace {

struct _Bursa7Normal {
    MyMatrix N{7, 7};
    MyMatrix w{7, 1};
};

// Bᵀ B and Bᵀ l of the design rows of point i, for the unknowns
// (dX, dY, dZ, ex, ey, ez, m):
//   (1, 0, 0,  0, -Z,  Y, X | X' - X)
//   (0, 1, 0,  Z,  0, -X, Y | Y' - Y)
//   (0, 0, 1, -Y,  X,  0, Z | Z' - Z)
// Three coordinates are read at stride dim: the model is meant for dim 3.
_Bursa7Normal _NormalEquations(int count, int dim, const double* src, const double* dst) {
    _Bursa7Normal normal;
    double N[49] = {};
    double w[7] = {};
    for (int i = 0; i < count; ++i) {
        const std::ptrdiff_t k = std::ptrdiff_t(i) * dim;
        const double X = src[k], Y = src[k + 1], Z = src[k + 2];
        const double rows[3][7] = {{1.0, 0.0, 0.0, 0.0, -Z, Y, X},
                                   {0.0, 1.0, 0.0, Z, 0.0, -X, Y},
                                   {0.0, 0.0, 1.0, -Y, X, 0.0, Z}};
        const double l[3] = {dst[k] - X, dst[k + 1] - Y, dst[k + 2] - Z};
        _AddToNormalEquations(rows, l, N, w);
    }
    normal.N.setdata(N, 49);
    normal.w.setdata(w, 7);
    return normal;
}

// Solves in geocentric space, reports the mean error there and converts the
// unknowns to published units; residuals (dim per point) when asked for.
void _Bursa7Solve(int count, int dim, const double* src, const double* dst, _Bursa7Normal& normal,
                  double* parameters, double& meanError, std::vector<double>* residuals) {
    MyMatrix inverse(7, 7);
    normal.N.inverse(inverse);
    const MyMatrix u = inverse * normal.w;
    double v[7];
    for (int p = 0; p < 7; ++p) v[p] = u.getxy(p, 0);
    const double dX = v[0], dY = v[1], dZ = v[2], ex = v[3], ey = v[4], ez = v[5], m = v[6];

    std::vector<double> fitted(std::size_t(count) * dim);
    for (int i = 0; i < count; ++i) {
        const std::ptrdiff_t k = std::ptrdiff_t(i) * dim;
        const double X = src[k], Y = src[k + 1], Z = src[k + 2];
        fitted[k] = X + dX - Z * ey + Y * ez + m * X;
        fitted[k + 1] = Y + dY + Z * ex - X * ez + m * Y;
        if (dim == 3) fitted[k + 2] = Z + dZ - Y * ex + X * ey + m * Z;
    }
    mean_error(fitted.data(), dst, count, dim, meanError);
    if (residuals != nullptr) {
        residuals->resize(fitted.size());
        for (std::size_t k = 0; k < fitted.size(); ++k) (*residuals)[k] = dst[k] - fitted[k];
    }

    parameters[0] = dX;
    parameters[1] = dY;
    parameters[2] = dZ;
    for (int p = 3; p < 6; ++p) parameters[p] = _SecondsFromRadians(v[p], _truePi);
    parameters[6] = m * _partsPerMillion;
}

// Both point sets in geocentric coordinates (at least count * 3 doubles
// each, so the reads of three values at stride dim stay inside).
void _Geocentric(LmSpatialReference* source, LmSpatialReference* target, int count, int dim,
                 const double* sourcePoints, const double* targetPoints, std::vector<double>& src,
                 std::vector<double>& dst) {
    const std::size_t values = std::size_t(count) * std::size_t(dim > 3 ? dim : 3);
    src.assign(values, 0.0);
    dst.assign(values, 0.0);
    pretrans(source, target, count, dim, sourcePoints, targetPoints, src.data(), dst.data());
}

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
    for (int i = 0; i < count; ++i) {
        const std::ptrdiff_t k = PointIndex(i, step);
        const double X = x[k], Y = y[k], Z = z != nullptr ? z[k] : 0.0;
        x[k] = X + m_dX - Z * m_ey + Y * m_ez + m_m * X;
        y[k] = Y + m_dY + Z * m_ex - X * m_ez + m_m * Y;
        if (z != nullptr) z[k] = Z + m_dZ - Y * m_ex + X * m_ey + m_m * Z;
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
    std::vector<double> src, dst;
    _Geocentric(source, target, count, dim, sourcePoints, targetPoints, src, dst);
    _Bursa7Normal normal = _NormalEquations(count, dim, src.data(), dst.data());
    _Bursa7Solve(count, dim, src.data(), dst.data(), normal, parameters, meanError, nullptr);
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
    std::vector<double> src, dst;
    _Geocentric(source, target, count, dim, sourcePoints, targetPoints, src, dst);
    _Bursa7Normal normal = _NormalEquations(count, dim, src.data(), dst.data());
    if (!_NormalMatrixDetermines(7, normal.N.data)) return false;
    for (int p = 0; p < 7; ++p)
        if (!std::isfinite(normal.w.data[p])) return false;
    double parameters[7];
    double meanError = 0.0;
    std::vector<double> residuals;
    _Bursa7Solve(count, dim, src.data(), dst.data(), normal, parameters, meanError, &residuals);
    result.parameters.assign(parameters, parameters + 7);
    result.meanError = meanError;
    result.dimension = dim;
    result.residuals.swap(residuals);
    result.worstPoint = _LongestResidual(count, dim, result.residuals.data());
    return true;
}

}  // namespace Kernel
}  // namespace Lumora
