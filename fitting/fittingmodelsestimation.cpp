// Least-squares estimation of the cube four-parameter and Molodensky
// seven-parameter models in geocentric coordinates, through the constrained
// minimum of the augmented normal matrix (observation first, then unknowns).
#include <lmspatialreference/coordinatetransformationfactory.h>
#include <lmspatialreference/fitting.h>
#include <lmspatialreference/fittingmodels.h>

#include "fitting/estimate.h"
#include "internal/estimationsupport.h"
#include "internal/publishedunits.h"

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

// What the cube and Molodensky models share: their geocentric pairs, and
// residuals of the published model itself, so that they are those of the
// transformation a caller builds from the parameters.
class _GeocentricMinimumModel {
public:
    explicit _GeocentricMinimumModel(const _PointPairs& pairs) : m_pairs(pairs) {}

protected:
    // Target minus the model applied to the source, 3 axes per point.
    template <class PointModel>
    int ResidualsOf(PointModel& model, int count, std::vector<double>& residuals) const {
        residuals.assign(std::size_t(count) * 3, 0.0);
        for (int i = 0; i < count; ++i) {
            const double* s = m_pairs.Source(i);
            const double* t = m_pairs.Target(i);
            double x = s[0], y = s[1], z = s[2];
            model.trans(x, y, z);
            residuals[std::size_t(i) * 3] = t[0] - x;
            residuals[std::size_t(i) * 3 + 1] = t[1] - y;
            residuals[std::size_t(i) * 3 + 2] = t[2] - z;
        }
        return 3;
    }

    const _PointPairs& m_pairs;
};

class _Cube4Model : public _GeocentricMinimumModel {
public:
    static const int unknowns = 4;

    _Cube4Model(const _PointPairs& pairs, double phi, double lambda)
        : _GeocentricMinimumModel(pairs), m_phi(phi), m_lambda(lambda) {}

    void Accumulate(int count, double* N) const {
        for (int i = 0; i < count; ++i)
            _ComputeCube4Parameter(N, m_phi, m_lambda, m_pairs.Source(i), m_pairs.Target(i));
    }
    static bool Solve(const double* N, int count, double* u, double& meanError) {
        return _SolveByMinimum(5, N, count, u, meanError);
    }
    static void Publish(const double* u, double* parameters) {
        for (int k = 0; k < 4; ++k) parameters[k] = u[k + 1];
        // Published through the kept pi, as every four-parameter angle.
        parameters[3] *= _SecondsPerRadian(_keptPi);
    }
    int Residuals(int count, const double*, const double* parameters, std::vector<double>& residuals) const {
        LmCube4Parameter model;
        model.Create(m_phi, m_lambda, parameters);
        return ResidualsOf(model, count, residuals);
    }

private:
    double m_phi, m_lambda;
};

class _MolodenskyModel : public _GeocentricMinimumModel {
public:
    static const int unknowns = 7;

    _MolodenskyModel(const _PointPairs& pairs, const double* centre)
        : _GeocentricMinimumModel(pairs), m_centre(centre) {}

    void Accumulate(int count, double* N) const {
        for (int i = 0; i < count; ++i) _Molodensky(N, m_centre, m_pairs.Source(i), m_pairs.Target(i));
    }
    static bool Solve(const double* N, int count, double* u, double& meanError) {
        return _SolveByMinimum(8, N, count, u, meanError);
    }
    static void Publish(const double* u, double* parameters) {
        for (int k = 0; k < 7; ++k) parameters[k] = u[k + 1];
        for (int k = 3; k < 6; ++k) parameters[k] *= _SecondsPerRadian(_truePi);
        // The whole scale factor k is fitted; m is published.
        parameters[6] = (parameters[6] - 1.0) * _partsPerMillion;
    }
    int Residuals(int count, const double*, const double* parameters, std::vector<double>& residuals) const {
        LmMolodensky7Parameter model;
        model.Create(parameters, m_centre);
        return ResidualsOf(model, count, residuals);
    }

private:
    const double* m_centre;
};

bool _UsableArguments(int count, int dim, const double* srcPts, const double* dstPts, const double* params) {
    return count > 0 && dim >= 2 && srcPts != nullptr && dstPts != nullptr && params != nullptr;
}

}  // namespace

// ---------------------------------------------------------------------------
// Cube four-parameter

void LmCoordinateTransformationFactory::ComputeCube4Parameter(LmSpatialReference* src, LmSpatialReference* dst,
                                                              double phi, double lambda, int count, int dim,
                                                              const double* srcPts, const double* dstPts,
                                                              double* params, double& meanError) {
    if (!_UsableArguments(count, dim, srcPts, dstPts, params)) return;
    const _PointPairs pairs(_PointPairs::eGeocentric, src, dst, count, dim, srcPts, dstPts);
    _Estimate(_Cube4Model(pairs, phi, lambda), count, params, meanError, nullptr);
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
    const _PointPairs pairs(_PointPairs::eGeocentric, src, dst, count, dim, srcPts, dstPts);
    return _Estimate(_Cube4Model(pairs, phi, lambda), count, result);
}

// ---------------------------------------------------------------------------
// Molodensky seven-parameter

void LmCoordinateTransformationFactory::ComputeMolodenskyParameter(LmSpatialReference* src, LmSpatialReference* dst,
                                                                   int count, int dim, const double* srcPts,
                                                                   const double* dstPts, double* params,
                                                                   double& meanError, const double* centre) {
    if (!_UsableArguments(count, dim, srcPts, dstPts, params)) return;
    const _PointPairs pairs(_PointPairs::eGeocentric, src, dst, count, dim, srcPts, dstPts);
    _Estimate(_MolodenskyModel(pairs, centre), count, params, meanError, nullptr);
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
    const _PointPairs pairs(_PointPairs::eGeocentric, src, dst, count, dim, srcPts, dstPts);
    return _Estimate(_MolodenskyModel(pairs, centre), count, result);
}

}  // namespace Kernel
}  // namespace Lumora
