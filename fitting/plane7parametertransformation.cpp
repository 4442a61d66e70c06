// Plane seven-parameter model: coefficients, estimators and transformations.
#include "fitting/plane7parametermodel.h"

#include <lmspatialreference/coordinatetransformationfactory.h>
#include <lmspatialreference/matrixkit.h>
#include <lmspatialreference/plane7parametertransformation.h>
#include <lmspatialreference/projecttransformation.h>

#include "fitting/estimate.h"
#include "internal/estimationsupport.h"
#include "internal/publishedunits.h"

#include <cfloat>
#include <cmath>
#include <cstddef>
#include <cstring>
#include <vector>

namespace Lumora {
namespace Kernel {

namespace {

// The height equations of the 3D model are scaled by this before they enter
// the normal matrix (weight 1e-10): the design constant of the model.
const double _heightScale = 1e-5;

struct _Common {
    double e2, W, N, M;
};

_Common _AtLatitude(double a, double f, double B) {
    _Common q;
    q.e2 = 2.0 * f - f * f;
    const double sinB = std::sin(B);
    q.W = std::sqrt(1.0 - q.e2 * sinB * sinB);
    q.N = a / q.W;
    q.M = (1.0 - q.e2) * a / (q.W * q.W * q.W);
    return q;
}

// The two shapes of the model, 2D and 3D, as one interface.
struct _Shape2D {
    static const int rows = 2;
    static void Coefficients(double* c, double a, double f, const double* p, double da, double df) {
        _Plane7Parameter2D(c, a, f, p[0], p[1], da, df);
    }
    static void Accumulate(double* N, const double* c, const double* d) { _Plane7Parameter2D_MM(N, c, d[0], d[1]); }
    // The fitted corrections of the unknowns u (working units) at a point.
    static void Fitted(const double* c, const double* u, double* out) {
        out[0] = c[14] + vec_mul(3, c, u) + vec_mul(3, c + 6, u + 3) + c[12] * u[6];
        out[1] = c[15] + vec_mul(3, c + 3, u) + vec_mul(3, c + 9, u + 3) + c[13] * u[6];
    }
};

struct _Shape3D {
    static const int rows = 3;
    static void Coefficients(double* c, double a, double f, const double* p, double da, double df) {
        _Plane7Parameter3D(c, a, f, p[0], p[1], p[2], da, df);
    }
    static void Accumulate(double* N, const double* c, const double* d) {
        _Plane7Parameter3D_MM(N, c, d[0], d[1], d[2]);
    }
    static void Fitted(const double* c, const double* u, double* out) {
        for (int r = 0; r < 3; ++r) out[r] = _d_3d(u, c + 3 * r, c + 18 + r);
    }
};

// The model fitted to the differences of geographic coordinates, on the
// source ellipsoid with the change to the target one.
template <class Shape>
class _Plane7Model {
public:
    static const int unknowns = 7;

    _Plane7Model(const _PointPairs& pairs, LmSpatialReference* source, LmSpatialReference* target)
        : m_pairs(pairs) {
        double a2, f2;
        _EllipsoidOf(source, m_a1, m_f1);
        _EllipsoidOf(target, a2, f2);
        m_da = a2 - m_a1;
        m_df = f2 - m_f1;
    }

    void Accumulate(int count, double* N) const {
        double c[24] = {};
        for (int i = 0; i < count; ++i) {
            double d[3];
            Differences(i, d);
            Shape::Coefficients(c, m_a1, m_f1, m_pairs.Source(i), m_da, m_df);
            Shape::Accumulate(N, c, d);
        }
    }
    static bool Solve(const double* N, int count, double* u, double& meanError) {
        return _SolveByMinimum(8, N, count, u, meanError);
    }
    static void Publish(const double* u, double* parameters) {
        for (int p = 0; p < 7; ++p) parameters[p] = u[p + 1];
        // Rotations are published through the kept pi, and read back through it.
        for (int p = 3; p < 6; ++p) parameters[p] *= _SecondsPerRadian(_keptPi);
        parameters[6] *= _partsPerMillion;
    }
    // Observed minus fitted corrections, unweighted, Shape::rows axes.
    int Residuals(int count, const double* u, const double*, std::vector<double>& residuals) const {
        residuals.resize(std::size_t(count) * Shape::rows);
        for (int i = 0; i < count; ++i) {
            double c[24] = {};
            double d[3], fitted[3];
            Differences(i, d);
            Shape::Coefficients(c, m_a1, m_f1, m_pairs.Source(i), m_da, m_df);
            Shape::Fitted(c, u + 1, fitted);
            for (int r = 0; r < Shape::rows; ++r) residuals[std::size_t(i) * Shape::rows + r] = d[r] - fitted[r];
        }
        return Shape::rows;
    }

private:
    void Differences(int i, double* d) const {
        for (int r = 0; r < Shape::rows; ++r) d[r] = m_pairs.Target(i)[r] - m_pairs.Source(i)[r];
    }

    const _PointPairs& m_pairs;
    double m_a1, m_f1, m_da, m_df;
};

// Both forms of an estimator of one shape; checked is null for the
// unchecked one.
template <class Shape>
bool _EstimatePlane7(LmSpatialReference* source, LmSpatialReference* target, int count, int dim,
                     const double* sourcePoints, const double* targetPoints, double* parameters, double& meanError,
                     LmEstimationResult* checked) {
    count = _UsablePointCount(count, dim, sourcePoints, targetPoints);
    const _PointPairs pairs(_PointPairs::eGeographic, source, target, count, dim, sourcePoints, targetPoints);
    return _Estimate(_Plane7Model<Shape>(pairs, source, target), count, parameters, meanError, checked);
}

bool _CheckedInput(int count, int dim, const double* sourcePoints, const double* targetPoints, int minimumDim) {
    // Seven unknowns need at least as many equations: four points of two
    // rows in 2D; in 3D the height rows weigh too little to stand in for
    // horizontal ones, so four points there as well.
    return count >= 4 && dim >= minimumDim && dim <= 3 && sourcePoints != nullptr && targetPoints != nullptr;
}

// Reads both ellipsoids and the parameters in working units.
void _Construct(const double* parameters, LmSpatialReference* source, LmSpatialReference* target, double* p,
                double& a1, double& f1, double& a2, double& f2) {
    _EllipsoidOf(source, a1, f1);
    _EllipsoidOf(target, a2, f2);
    for (int k = 0; k < 7; ++k) p[k] = parameters != nullptr ? parameters[k] : 0.0;
    for (int k = 3; k < 6; ++k) p[k] = _RadiansFromSecondsByHalfTurns(p[k], _keptPi);
    p[6] = p[6] / _partsPerMillion;
}

// Calls correct(k, p, a1, f1, da, df) for the index k of every point of a
// batch, with the working parameters p, the source ellipsoid and the change
// to the target one. True unless x or y is null while count is positive.
template <class Correct>
bool _CorrectEachPoint(const double* p, double a1, double f1, double a2, double f2, double* x, double* y, int count,
                       int step, Correct& correct) {
    if (count <= 0) return true;
    if (x == nullptr || y == nullptr) return false;
    const double da = a2 - a1;
    const double df = f2 - f1;
    _ForEachPoint(count, [&](int i) { correct(PointIndex(i, step), p, a1, f1, da, df); });
    return true;
}

}  // namespace

void _Plane7Parameter2D(double* c, double a, double f, double x, double y, double da, double df) {
    for (int k = 0; k < 16; ++k) c[k] = 0.0;
    const double L = x, B = y;
    const _Common q = _AtLatitude(a, f, B);
    const double sinL = std::sin(L), cosL = std::cos(L), sinB = std::sin(B), cosB = std::cos(B);
    const double N = q.N, M = q.M, e2 = q.e2;
    c[0] = -_rho * sinL / N / cosB;
    c[1] = _rho * cosL / N / cosB;
    c[2] = 0.0;
    c[3] = _rho * sinB * cosL / M;
    c[4] = _rho * sinB * sinL / M;
    c[5] = _rho * cosB / M;
    c[6] = std::tan(B) * cosL;
    c[7] = std::tan(B) * sinL;
    c[8] = -1.0;
    c[9] = -sinL;
    c[10] = cosL;
    c[11] = 0.0;
    c[12] = 0.0;
    c[13] = -_rho * N * e2 * sinB * cosB / M;
    c[14] = 0.0;
    c[15] = da * _rho * N * e2 * sinB * cosB / M / a + df * _rho * sinB * cosB * (2.0 - e2 * sinB * sinB) / (1.0 - f);
}

void _Plane7Parameter3D(double* c, double a, double f, double x, double y, double z, double da, double df) {
    const double L = x, B = y, H = z;
    const _Common q = _AtLatitude(a, f, B);
    const double sinL = std::sin(L), cosL = std::cos(L), sinB = std::sin(B), cosB = std::cos(B), tanB = std::tan(B);
    const double N = q.N, M = q.M, e2 = q.e2, W = q.W;
    const double NH = N + H, MH = M + H;
    // shifts: rows dLon, dLat, dHeight
    c[0] = -_rho * sinL / NH / cosB;
    c[1] = _rho * cosL / NH / cosB;
    c[2] = 0.0;
    c[3] = -_rho * sinB * cosL / MH;
    c[4] = -_rho * sinB * sinL / MH;
    c[5] = _rho * cosB / MH;
    c[6] = cosB * cosL;
    c[7] = sinB * sinL;
    c[8] = sinB;
    // rotations
    c[9] = ((1.0 - e2) * N + H) * tanB * cosL / NH;
    c[10] = ((1.0 - e2) * N + H) * tanB * sinL / NH;
    c[11] = -1.0;
    c[12] = -(NH - N * e2 * sinB * sinB) * sinL / MH;
    c[13] = (NH - N * e2 * sinB * sinB) * cosL / MH;
    c[14] = 0.0;
    c[15] = -N * e2 * sinB * cosB * sinL / _rho;
    c[16] = N * e2 * sinB * cosB * cosL / _rho;
    c[17] = 0.0;
    // scale
    c[18] = 0.0;
    c[19] = -_rho * N * e2 * sinB * cosB / M;
    c[20] = N + H - N * e2 * sinB * sinB;
    // ellipsoid change
    c[21] = da * 0.0 + df * 0.0;
    c[22] = da * (_rho * N * e2 * sinB * cosB / M / a) +
            df * ((2.0 - e2 * sinB * sinB) * sinB * cosB * _rho / (1.0 - f));
    c[23] = da * (-N * W * W / a) + df * (M * W * W * sinB * sinB / (1.0 - a));
}

void _Plane7Parameter2D_MM(double* N, const double* c, double dx, double dy) {
    const double v1[8] = {c[14] - dx, c[0], c[1], c[2], c[6], c[7], c[8], c[12]};
    const double v2[8] = {c[15] - dy, c[3], c[4], c[5], c[9], c[10], c[11], c[13]};
    mat_vec_vec(8, v1, v1, N);
    mat_vec_vec(8, v2, v2, N);
}

void _Plane7Parameter3D_MM(double* N, const double* c, double dx, double dy, double dz) {
    const double d[3] = {dx, dy, dz};
    for (int r = 0; r < 3; ++r) {
        double v[8] = {c[21 + r] - d[r], c[3 * r],     c[3 * r + 1],  c[3 * r + 2],
                       c[9 + 3 * r],     c[10 + 3 * r], c[11 + 3 * r], c[18 + r]};
        if (r == 2)
            for (double& e : v) e *= _heightScale;
        mat_vec_vec(8, v, v, N);
    }
}

double _d_3d(const double* p, const double* c, const double* s) {
    return vec_mul(3, p, c) + vec_mul(3, p + 3, c + 9) + p[6] * s[0] + s[3];
}

LmPlane7PatameterCoordinateTransformation::LmPlane7PatameterCoordinateTransformation(const double* parameters,
                                                                                     LmSpatialReference* source,
                                                                                     LmSpatialReference* target) {
    _Construct(parameters, source, target, m_parameters, m_a1, m_f1, m_a2, m_f2);
}

bool LmPlane7PatameterCoordinateTransformation::Transformation(double* x, double* y, double*, int count, int step) {
    auto correct = [=](std::ptrdiff_t k, const double* p, double a, double f, double da, double df) {
        double c[16];
        _Plane7Parameter2D(c, a, f, x[k], y[k], da, df);
        // The longitude row has no scale or ellipsoid term in this model.
        const double dL = vec_mul(3, c, p) + vec_mul(3, c + 6, p + 3);
        const double dB = vec_mul(3, c + 3, p) + vec_mul(3, c + 9, p + 3) + c[13] * p[6] + c[15];
        x[k] += dL;
        y[k] += dB;
    };
    return _CorrectEachPoint(m_parameters, m_a1, m_f1, m_a2, m_f2, x, y, count, step, correct);
}

LmPlane7PatameterCoordinateTransformation3D::LmPlane7PatameterCoordinateTransformation3D(
    const double* parameters, LmSpatialReference* source, LmSpatialReference* target) {
    _Construct(parameters, source, target, m_parameters, m_a1, m_f1, m_a2, m_f2);
}

bool LmPlane7PatameterCoordinateTransformation3D::Transformation(double* x, double* y, double* z, int count,
                                                                 int step) {
    auto correct = [=](std::ptrdiff_t k, const double* p, double a, double f, double da, double df) {
        double c[24];
        _Plane7Parameter3D(c, a, f, x[k], y[k], z != nullptr ? z[k] : 0.0, da, df);
        x[k] += _d_3d(p, c, c + 18);
        y[k] += _d_3d(p, c + 3, c + 19);
        if (z != nullptr) z[k] += _d_3d(p, c + 6, c + 20);
    };
    return _CorrectEachPoint(m_parameters, m_a1, m_f1, m_a2, m_f2, x, y, count, step, correct);
}

// The 2D and 3D estimators have the same three public forms, differing only
// in name, shape and the dimension the checked form needs.
#define LM_PLANE7_ESTIMATOR_FORMS(Name, Shape, minimumDim)                                                          \
    void LmCoordinateTransformationFactory::Name(LmSpatialReference* source, LmSpatialReference* target, int count, \
                                                 int dim, const double* sourcePoints, const double* targetPoints,   \
                                                 double* parameters, double& meanError) {                           \
        _EstimatePlane7<Shape>(source, target, count, dim, sourcePoints, targetPoints, parameters, meanError,       \
                               nullptr);                                                                            \
    }                                                                                                               \
    double LmCoordinateTransformationFactory::Name(LmSpatialReference* source, LmSpatialReference* target,          \
                                                   int count, int dim, const double* sourcePoints,                  \
                                                   const double* targetPoints, double* parameters) {                \
        double meanError = 0.0;                                                                                     \
        Name(source, target, count, dim, sourcePoints, targetPoints, parameters, meanError);                        \
        return meanError;                                                                                           \
    }                                                                                                               \
    bool LmCoordinateTransformationFactory::Name(LmSpatialReference* source, LmSpatialReference* target, int count, \
                                                 int dim, const double* sourcePoints, const double* targetPoints,   \
                                                 LmEstimationResult& result) {                                      \
        if (!_CheckedInput(count, dim, sourcePoints, targetPoints, minimumDim)) return false;                       \
        double unused = 0.0;                                                                                        \
        return _EstimatePlane7<Shape>(source, target, count, dim, sourcePoints, targetPoints, nullptr, unused,      \
                                      &result);                                                                     \
    }

LM_PLANE7_ESTIMATOR_FORMS(ComputePlane7Parameter, _Shape2D, 2)
LM_PLANE7_ESTIMATOR_FORMS(ComputePlane7Parameter3D, _Shape3D, 3)

#undef LM_PLANE7_ESTIMATOR_FORMS

}  // namespace Kernel
}  // namespace Lumora
