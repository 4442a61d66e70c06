// Least-squares estimation of the cube four-parameter and Molodensky
// seven-parameter models in geocentric coordinates, through the constrained
// minimum of the augmented normal matrix (observation first, then unknowns).
#include <lmspatialreference/coordinatetransformationfactory.h>
#include <lmspatialreference/fitting.h>
#include <lmspatialreference/fittingmodels.h>

#include "fitting/estimationsupport.h"
#include "fitting/publishedunits.h"

#include <cmath>
#include <cstddef>
#include <vector>

namespace Lumora {
namespace Kernel {

namespace {

// Accumulates the three observation rows of one geocentric pair into the
// 5 x 5 matrix N; unknowns p0, p1, p2, theta (radians).
void _ComputeCube4Parameter(double* N, double phi, double lambda, const double* src, const double* dst) {
    const double sinPhi = std::sin(phi);
    const double cosPhi = std::cos(phi);
    const double sinLambda = std::sin(lambda);
    const double cosLambda = std::cos(lambda);
    const double X = src[0];
    const double Y = src[1];
    const double Z = src[2];
    const double rows[3][5] = {
        {X - dst[0], 1.0, 0.0, 0.0, cosPhi * Z * sinLambda - sinPhi * Y},
        {Y - dst[1], 0.0, 1.0, 0.0, -Z * cosPhi * cosLambda + sinPhi * X},
        {Z - dst[2], 0.0, 0.0, 1.0, cosPhi * Y * cosLambda - cosPhi * X * sinLambda},
    };
    for (const double* row : rows) mat_vec_vec(5, row, row, N);
}

// Accumulates the three observation rows of one geocentric pair into the
// 8 x 8 matrix N; unknowns dX, dY, dZ, ex, ey, ez (radians) and the whole
// scale factor k. A null centre is the origin.
void _Molodensky(double* N, const double* centre, const double* src, const double* dst) {
    const double X0 = centre ? centre[0] : 0.0;
    const double Y0 = centre ? centre[1] : 0.0;
    const double Z0 = centre ? centre[2] : 0.0;
    const double dx = src[0] - X0;
    const double dy = src[1] - Y0;
    const double dz = src[2] - Z0;
    const double rows[3][8] = {
        {X0 - dst[0], 1.0, 0.0, 0.0, 0.0, -dz, dy, dx},
        {Y0 - dst[1], 0.0, 1.0, 0.0, dz, 0.0, -dx, dy},
        {Z0 - dst[2], 0.0, 0.0, 1.0, -dy, dx, 0.0, dz},
    };
    for (const double* row : rows) mat_vec_vec(8, row, row, N);
}

// Both control sets in geocentric coordinates, three doubles per point at
// stride dim as the accumulators read them; the tail past what pretrans
// writes stays 0, so no read is of unset memory.
struct _GeocentricPairs {
    std::vector<double> src;
    std::vector<double> dst;

    _GeocentricPairs(LmSpatialReference* srcRef, LmSpatialReference* dstRef, int count, int dim,
                     const double* srcPts, const double* dstPts)
        : src(std::size_t(count) * (dim > 3 ? dim : 3), 0.0), dst(src.size(), 0.0) {
        pretrans(srcRef, dstRef, count, dim, srcPts, dstPts, src.data(), dst.data());
    }
};

bool _UsableArguments(int count, int dim, const double* srcPts, const double* dstPts, const double* params) {
    return count > 0 && dim >= 2 && srcPts != nullptr && dstPts != nullptr && params != nullptr;
}

// The normal matrix of the unknowns alone: the augmented matrix without its
// observation row and column, which an exact fit makes singular.
bool _UnknownsDetermined(int n, const double* N) {
    const int m = n - 1;
    std::vector<double> unknowns(std::size_t(m) * m);
    for (int i = 0; i < m; ++i)
        for (int j = 0; j < m; ++j) unknowns[std::size_t(i) * m + j] = N[(i + 1) * n + j + 1];
    return _NormalMatrixDetermines(m, unknowns.data());
}

bool _AllFinite(const std::vector<double>& values) {
    for (double v : values)
        if (!std::isfinite(v)) return false;
    return true;
}

// Residuals target - fitted of the model over the geocentric pairs (dim 3).
template <class Model>
void _Residuals(Model& model, const _GeocentricPairs& pairs, int count, LmEstimationResult& result) {
    result.dimension = 3;
    result.residuals.assign(std::size_t(count) * 3, 0.0);
    result.worstPoint = -1;
    double worst = -1.0;
    for (int i = 0; i < count; ++i) {
        const std::size_t k = std::size_t(i) * 3;
        double x = pairs.src[k];
        double y = pairs.src[k + 1];
        double z = pairs.src[k + 2];
        model.trans(x, y, z);
        const double r[3] = {pairs.dst[k] - x, pairs.dst[k + 1] - y, pairs.dst[k + 2] - z};
        const double length2 = r[0] * r[0] + r[1] * r[1] + r[2] * r[2];
        for (int a = 0; a < 3; ++a) result.residuals[k + a] = r[a];
        if (length2 > worst) {
            worst = length2;
            result.worstPoint = i;
        }
    }
}

void _AccumulateCube4(const _GeocentricPairs& pairs, double phi, double lambda, int count, int dim, double* N) {
    for (int i = 0; i < count; ++i) {
        const std::size_t k = std::size_t(i) * dim;
        _ComputeCube4Parameter(N, phi, lambda, pairs.src.data() + k, pairs.dst.data() + k);
    }
}

void _AccumulateMolodensky(const _GeocentricPairs& pairs, const double* centre, int count, int dim, double* N) {
    for (int i = 0; i < count; ++i) {
        const std::size_t k = std::size_t(i) * dim;
        _Molodensky(N, centre, pairs.src.data() + k, pairs.dst.data() + k);
    }
}

void _SolveCube4(const double* N, int count, double* params, double& meanError) {
    double u[5] = {1.0, 0.0, 0.0, 0.0, 0.0};
    meanError = _RootMeanSquareOfMinimum(mat_min2(5, N, u), count);
    for (int k = 0; k < 4; ++k) params[k] = u[k + 1];
    // Published through the kept pi, as every four-parameter angle.
    params[3] *= _SecondsPerRadian(_keptPi);
}

void _SolveMolodensky(const double* N, int count, double* params, double& meanError) {
    double u[8] = {1.0, 0.0, 0.0, 0.0, 0.0, 0.0, 0.0, 0.0};
    meanError = _RootMeanSquareOfMinimum(mat_min2(8, N, u), count);
    for (int k = 0; k < 7; ++k) params[k] = u[k + 1];
    for (int k = 3; k < 6; ++k) params[k] *= _SecondsPerRadian(_truePi);
    params[6] = (params[6] - 1.0) * _partsPerMillion;
}

}  // namespace

// ---------------------------------------------------------------------------
// Cube four-parameter

void LmCoordinateTransformationFactory::ComputeCube4Parameter(LmSpatialReference* src, LmSpatialReference* dst,
                                                              double phi, double lambda, int count, int dim,
                                                              const double* srcPts, const double* dstPts,
                                                              double* params, double& meanError) {
    if (!_UsableArguments(count, dim, srcPts, dstPts, params)) return;
    const _GeocentricPairs pairs(src, dst, count, dim, srcPts, dstPts);
    double N[25] = {};
    _AccumulateCube4(pairs, phi, lambda, count, dim, N);
    _SolveCube4(N, count, params, meanError);
}

double LmCoordinateTransformationFactory::ComputeCube4Parameter(LmSpatialReference* src, LmSpatialReference* dst,
                                                                double phi, double lambda, int count, int dim,
                                                                const double* srcPts, const double* dstPts,
                                                                double* params) {
    double meanError = 0.0;
    ComputeCube4Parameter(src, dst, phi, lambda, count, dim, srcPts, dstPts, params, meanError);
    return meanError;
}

bool LmCoordinateTransformationFactory::ComputeCube4Parameter(LmSpatialReference* src, LmSpatialReference* dst,
                                                              double phi, double lambda, int count, int dim,
                                                              const double* srcPts, const double* dstPts,
                                                              LmEstimationResult& result) {
    if (dim != 3 || count < 2 || srcPts == nullptr || dstPts == nullptr) return false;
    if (!std::isfinite(phi) || !std::isfinite(lambda)) return false;
    const _GeocentricPairs pairs(src, dst, count, dim, srcPts, dstPts);
    if (!_AllFinite(pairs.src) || !_AllFinite(pairs.dst)) return false;
    double N[25] = {};
    _AccumulateCube4(pairs, phi, lambda, count, dim, N);
    if (!_UnknownsDetermined(5, N)) return false;
    double params[4];
    double meanError = 0.0;
    _SolveCube4(N, count, params, meanError);
    if (!std::isfinite(meanError)) return false;
    LmCube4Parameter model;
    model.Create(phi, lambda, params);
    result.parameters.assign(params, params + 4);
    result.meanError = meanError;
    _Residuals(model, pairs, count, result);
    return true;
}

// ---------------------------------------------------------------------------
// Molodensky seven-parameter

void LmCoordinateTransformationFactory::ComputeMolodenskyParameter(LmSpatialReference* src, LmSpatialReference* dst,
                                                                   int count, int dim, const double* srcPts,
                                                                   const double* dstPts, double* params,
                                                                   double& meanError, const double* centre) {
    if (!_UsableArguments(count, dim, srcPts, dstPts, params)) return;
    const _GeocentricPairs pairs(src, dst, count, dim, srcPts, dstPts);
    double N[64] = {};
    _AccumulateMolodensky(pairs, centre, count, dim, N);
    _SolveMolodensky(N, count, params, meanError);
}

double LmCoordinateTransformationFactory::ComputeMolodenskyParameter(LmSpatialReference* src,
                                                                     LmSpatialReference* dst, int count, int dim,
                                                                     const double* srcPts, const double* dstPts,
                                                                     double* params, const double* centre) {
    double meanError = 0.0;
    ComputeMolodenskyParameter(src, dst, count, dim, srcPts, dstPts, params, meanError, centre);
    return meanError;
}

bool LmCoordinateTransformationFactory::ComputeMolodenskyParameter(LmSpatialReference* src, LmSpatialReference* dst,
                                                                   int count, int dim, const double* srcPts,
                                                                   const double* dstPts, LmEstimationResult& result,
                                                                   const double* centre) {
    if (dim != 3 || count < 3 || srcPts == nullptr || dstPts == nullptr) return false;
    if (centre && !(std::isfinite(centre[0]) && std::isfinite(centre[1]) && std::isfinite(centre[2]))) return false;
    const _GeocentricPairs pairs(src, dst, count, dim, srcPts, dstPts);
    if (!_AllFinite(pairs.src) || !_AllFinite(pairs.dst)) return false;
    double N[64] = {};
    _AccumulateMolodensky(pairs, centre, count, dim, N);
    if (!_UnknownsDetermined(8, N)) return false;
    double params[7];
    double meanError = 0.0;
    _SolveMolodensky(N, count, params, meanError);
    if (!std::isfinite(meanError)) return false;
    LmMolodensky7Parameter model;
    model.Create(params, centre);
    result.parameters.assign(params, params + 7);
    result.meanError = meanError;
    _Residuals(model, pairs, count, result);
    return true;
}

}  // namespace Kernel
}  // namespace Lumora
