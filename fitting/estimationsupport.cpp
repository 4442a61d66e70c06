#include "internal/estimationsupport.h"

#include <lmspatialreference/geocentricconversion.h>
#include <lmspatialreference/matrixkit.h>
#include <lmspatialreference/mymatrix.h>
#include <lmspatialreference/projecttransformation.h>

#include <cfloat>
#include <cmath>
#include <cstddef>
#include <cstring>
#include <vector>

namespace Lumora {
namespace Kernel {

namespace {

// The smallest eigenvalue of the unit-diagonal normal matrix, relative to the
// largest, below which the solve is refused. Rounding of the sums alone leaves
// about 1e-16 on a matrix that is singular in exact arithmetic (points on one
// line give 5e-17 for Bursa), and at 1e-14 the worst-determined combination
// of unknowns keeps barely two significant digits. Real control networks sit
// far above: Bursa from points 1 km apart gives 4e-10, the plane similarity
// from points 1 km apart at 39 500 000 m gives 3e-11.
const double _determinacyThreshold = 1e-14;

// One set of pretrans: the input carried to geocentric coordinates in output.
void _ToGeocentric(LmSpatialReference* reference, int count, int dim, const double* in, double* out) {
    if (reference != nullptr && reference->IsProjected()) {
        _ToOwnGeographic(reference, count, dim, in, out);
        LmSmarterPtr<LmCoordinateTransformation> toGeocentric(
            new LmGeodeticToGeocentricCoordinateTransformation(reference));
        toGeocentric->Transformation(out, count, dim, out);
    } else if (reference != nullptr && reference->IsGeographic()) {
        LmSmarterPtr<LmCoordinateTransformation> toGeocentric(
            new LmGeodeticToGeocentricCoordinateTransformation(reference));
        toGeocentric->Transformation(in, count, dim, out);
    } else if (count > 0 && dim > 0 && in != nullptr && out != nullptr) {
        std::memmove(out, in, static_cast<std::size_t>(count) * static_cast<std::size_t>(dim) * sizeof(double));
    }
}

// The index of the longest of count residual vectors of dim values (the
// first of equals); -1 when count is not positive.
// Whether the symmetric n x n normal matrix N of the unknowns alone
// determines them (see _AugmentedMatrixDetermines).
bool _NormalMatrixDetermines(int n, const double* N) {
    if (n < 1) return false;
    std::vector<double> scale(n);
    for (int i = 0; i < n; ++i) {
        for (int j = 0; j < n; ++j)
            if (!std::isfinite(N[i * n + j])) return false;
        const double diagonal = N[i * n + i];
        if (!(diagonal > 0.0)) return false;
        scale[i] = 1.0 / std::sqrt(diagonal);
    }
    // The classical estimators invert through LUPDecomp, which ends the
    // process on an exactly zero pivot; mat_lu makes the same pivot choices
    // with the same arithmetic and reports that pivot instead.
    std::vector<double> factors(N, N + std::size_t(n) * n);
    std::vector<int> order(n);
    if (!mat_lu(n, factors.data(), order.data())) return false;
    std::vector<double> scaled(std::size_t(n) * n);
    for (int i = 0; i < n; ++i)
        for (int j = 0; j < n; ++j) scaled[i * n + j] = N[i * n + j] * scale[i] * scale[j];
    if (n == 1) return true;
    std::vector<double> vectors(std::size_t(n) * n);
    std::vector<double> values(n);
    mat_eigen(n, scaled.data(), vectors.data(), values.data());
    // The scaled matrix has trace n, so its largest eigenvalue lies in [1, n].
    return values[n - 1] > _determinacyThreshold * values[0];
}

}  // namespace

void _EllipsoidOf(LmSpatialReference* reference, double& a, double& f) {
    a = 0.0;
    f = 0.0;
    if (reference == nullptr) return;
    a = reference->EquatorialRadiusA();
    const double inverseFlattening = reference->FlattenInverseF();
    if (inverseFlattening != 0.0) f = 1.0 / inverseFlattening;
}

void pretrans(LmSpatialReference* src, LmSpatialReference* dst, int count, int dim, const double* srcIn,
              const double* dstIn, double* srcOut, double* dstOut) {
    _ToGeocentric(src, count, dim, srcIn, srcOut);
    _ToGeocentric(dst, count, dim, dstIn, dstOut);
}

void _ToOwnGeographic(LmSpatialReference* reference, int count, int dim, const double* in, double* out) {
    if (count <= 0 || dim <= 0 || in == nullptr || out == nullptr) return;
    std::memmove(out, in, std::size_t(count) * std::size_t(dim) * sizeof(double));
    if (reference != nullptr && reference->IsProjected()) {
        LmSmarterPtr<LmSpatialReference> geographic = reference->Geographic();
        LmSmarterPtr<LmCoordinateTransformation> unproject(
            new LmProjectCoordinateTransformation(reference, geographic));
        unproject->Transformation(in, count, dim, out);
    }
}

_PointPairs::_PointPairs(Space space, LmSpatialReference* sourceReference, LmSpatialReference* targetReference,
                         int count, int dim, const double* source, const double* target)
    : m_dim(dim), m_source(source), m_target(target) {
    if (space == eAsGiven) return;
    const std::size_t values = std::size_t(count > 0 ? count : 0) * std::size_t(dim > 3 ? dim : 3);
    m_sourceStorage.assign(values, 0.0);
    m_targetStorage.assign(values, 0.0);
    m_source = m_sourceStorage.data();
    m_target = m_targetStorage.data();
    if (space == eGeocentric) {
        pretrans(sourceReference, targetReference, count, dim, source, target, m_sourceStorage.data(),
                 m_targetStorage.data());
    } else {
        _ToOwnGeographic(sourceReference, count, dim, source, m_sourceStorage.data());
        _ToOwnGeographic(targetReference, count, dim, target, m_targetStorage.data());
    }
}

void mean_error(const double* computed, const double* target, int count, int dim, double& result) {
    double sx = 0.0;
    double sy = 0.0;
    double sz = 0.0;
    if (dim == 2 || dim == 3) {
        for (int i = 0; i < count; ++i) {
            const std::ptrdiff_t k = std::ptrdiff_t(i) * dim;
            const double dx = target[k] - computed[k];
            const double dy = target[k + 1] - computed[k + 1];
            sx += dx * dx;
            sy += dy * dy;
            if (dim == 3) {
                const double dz = target[k + 2] - computed[k + 2];
                sz += dz * dz;
            }
        }
    }
    const double mx = std::sqrt(sx / (count - 1));
    const double my = std::sqrt(sy / (count - 1));
    const double mz = std::sqrt(sz / (count - 1));
    result = std::sqrt(mx * mx + my * my + mz * mz);
}

double _RootMeanSquareOfMinimum(double minimum, int count) {
    if (minimum == -DBL_MAX) return std::nan("");
    return std::sqrt((minimum > 0.0 ? minimum : 0.0) / count);
}

int _UsablePointCount(int count, int dim, const double* source, const double* target) {
    return count > 0 && dim >= 2 && source != nullptr && target != nullptr ? count : 0;
}

int _LongestResidual(int count, int dim, const double* residuals) {
    int worst = -1;
    double longest = -1.0;
    for (int i = 0; i < count; ++i) {
        double squares = 0.0;
        for (int j = 0; j < dim; ++j) {
            const double r = residuals[std::ptrdiff_t(i) * dim + j];
            squares += r * r;
        }
        if (squares > longest) {
            longest = squares;
            worst = i;
        }
    }
    return worst;
}

bool _AugmentedMatrixDetermines(int n, const double* N) {
    const int m = n - 1;
    std::vector<double> unknowns(std::size_t(m > 0 ? m : 0) * m);
    for (int i = 0; i < m; ++i) {
        if (!std::isfinite(N[(i + 1) * n])) return false;
        for (int j = 0; j < m; ++j) unknowns[std::size_t(i) * m + j] = N[(i + 1) * n + j + 1];
    }
    return _NormalMatrixDetermines(m, unknowns.data());
}

void _SolveNormalEquations(int n, const double* augmented, double* u) {
    const int m = n - 1;
    MyMatrix N(m, m);
    MyMatrix w(m, 1);
    for (int i = 0; i < m; ++i) {
        for (int j = 0; j < m; ++j) N.data[i * m + j] = augmented[(i + 1) * n + j + 1];
        w.data[i] = augmented[(i + 1) * n];
    }
    MyMatrix inverse(m, m);
    N.inverse(inverse);
    const MyMatrix solution = inverse * w;
    for (int i = 0; i < m; ++i) u[i + 1] = solution.getxy(i, 0);
}

bool _SolveByMinimum(int n, const double* augmented, int count, double* u, double& meanError) {
    meanError = _RootMeanSquareOfMinimum(mat_min2(n, augmented, u), count);
    return std::isfinite(meanError);
}

void _FillResult(LmEstimationResult& result, const double* parameters, int parameterCount, double meanError,
                 int dim, std::vector<double>& residuals, int count) {
    result.parameters.assign(parameters, parameters + parameterCount);
    result.meanError = meanError;
    result.dimension = dim;
    result.residuals.swap(residuals);
    result.worstPoint = _LongestResidual(count, dim, result.residuals.data());
}

}  // namespace Kernel
}  // namespace Lumora
