// Plane four-parameter similarity: its transformation and its estimator.
#include <lmspatialreference/coordinatetransformationfactory.h>
#include <lmspatialreference/mymatrix.h>
#include <lmspatialreference/plane4parametertransformation.h>

#include "fitting/estimationsupport.h"
#include "fitting/publishedunits.h"

#include <cmath>
#include <cstddef>
#include <vector>

namespace Lumora {
namespace Kernel {

namespace {

// The unknowns (dX, dY, a, b) of X = x + dX + a x - b y, Y = y + dY + b x + a y.
struct _Plane4Normal {
    MyMatrix N{4, 4};
    MyMatrix w{4, 1};
};

// Bᵀ B and Bᵀ l of the design rows (1, 0, x, -y | X - x) and
// (0, 1, y, x | Y - y).
_Plane4Normal _NormalEquations(int count, int dim, const double* src, const double* dst) {
    _Plane4Normal normal;
    double N[16] = {};
    double w[4] = {};
    for (int i = 0; i < count; ++i) {
        const std::ptrdiff_t k = std::ptrdiff_t(i) * dim;
        const double x = src[k], y = src[k + 1];
        const double rows[2][4] = {{1.0, 0.0, x, -y}, {0.0, 1.0, y, x}};
        const double l[2] = {dst[k] - x, dst[k + 1] - y};
        _AddToNormalEquations(rows, l, N, w);
    }
    normal.N.setdata(N, 16);
    normal.w.setdata(w, 4);
    return normal;
}

// Solves, converts to published units and reports the mean error; residuals
// (dim per point) are filled when asked for.
void _Plane4Solve(int count, int dim, const double* src, const double* dst, _Plane4Normal& normal,
                  double* parameters, double& meanError, std::vector<double>* residuals) {
    MyMatrix inverse(4, 4);
    normal.N.inverse(inverse);
    const MyMatrix u = inverse * normal.w;
    const double dX = u.getxy(0, 0), dY = u.getxy(1, 0), a = u.getxy(2, 0), b = u.getxy(3, 0);

    std::vector<double> fitted(std::size_t(count) * dim);
    for (int i = 0; i < count; ++i) {
        const std::ptrdiff_t k = std::ptrdiff_t(i) * dim;
        const double x = src[k], y = src[k + 1];
        fitted[k] = x + dX - y * b + x * a;
        fitted[k + 1] = y + dY + x * b + y * a;
        if (dim == 3) fitted[k + 2] = src[k + 2];
    }
    mean_error(fitted.data(), dst, count, dim, meanError);
    if (residuals != nullptr) {
        residuals->resize(fitted.size());
        for (std::size_t k = 0; k < fitted.size(); ++k) (*residuals)[k] = dst[k] - fitted[k];
    }

    const double theta = std::atan(b / (a + 1.0));
    const double k = theta != 0.0 ? b / std::sin(theta) : a + 1.0;
    parameters[0] = dX;
    parameters[1] = dY;
    // Estimated angles are published through the kept pi while the
    // transformation reads them through the true one, as published parameter
    // sets were made.
    parameters[2] = _SecondsFromRadians(theta, _keptPi);
    parameters[3] = (k - 1.0) * _partsPerMillion;
}

}  // namespace

LmPlane4PatameterCoordinateTransformation::LmPlane4PatameterCoordinateTransformation(const double* parameters)
    : m_dX(0.0), m_dY(0.0), m_theta(0.0), m_m(0.0) {
    if (parameters == nullptr) return;
    m_dX = parameters[0];
    m_dY = parameters[1];
    m_theta = _RadiansFromSeconds(parameters[2], _truePi);
    m_m = parameters[3] / _partsPerMillion;
}

bool LmPlane4PatameterCoordinateTransformation::Transformation(double* x, double* y, double*, int count,
                                                               int step) {
    if (count <= 0) return true;
    if (x == nullptr || y == nullptr) return false;
    const double a = (1.0 + m_m) * std::cos(m_theta) - 1.0;
    const double b = (1.0 + m_m) * std::sin(m_theta);
    for (int i = 0; i < count; ++i) {
        const std::ptrdiff_t k = PointIndex(i, step);
        const double u = x[k], v = y[k];
        x[k] = (u + m_dX) - v * b + u * a;
        y[k] = (v + m_dY) + u * b + v * a;
    }
    return true;
}

void LmCoordinateTransformationFactory::ComputePlane4Parameter(int count, int dim, const double* source,
                                                               const double* target, double* parameters,
                                                               double& meanError) {
    count = _UsablePointCount(count, dim, source, target);
    _Plane4Normal normal = _NormalEquations(count, dim, source, target);
    _Plane4Solve(count, dim, source, target, normal, parameters, meanError, nullptr);
}

double LmCoordinateTransformationFactory::ComputePlane4Parameter(int count, int dim, const double* source,
                                                                 const double* target, double* parameters) {
    double meanError = 0.0;
    ComputePlane4Parameter(count, dim, source, target, parameters, meanError);
    return meanError;
}

bool LmCoordinateTransformationFactory::ComputePlane4Parameter(int count, int dim, const double* source,
                                                               const double* target, LmEstimationResult& result) {
    if (count < 2 || (dim != 2 && dim != 3) || source == nullptr || target == nullptr) return false;
    _Plane4Normal normal = _NormalEquations(count, dim, source, target);
    if (!_NormalMatrixDetermines(4, normal.N.data)) return false;
    if (!std::isfinite(normal.w.data[0] + normal.w.data[1] + normal.w.data[2] + normal.w.data[3])) return false;
    double parameters[4];
    double meanError = 0.0;
    std::vector<double> residuals;
    _Plane4Solve(count, dim, source, target, normal, parameters, meanError, &residuals);
    result.parameters.assign(parameters, parameters + 4);
    result.meanError = meanError;
    result.dimension = dim;
    result.residuals.swap(residuals);
    result.worstPoint = _LongestResidual(count, dim, result.residuals.data());
    return true;
}

}  // namespace Kernel
}  // namespace Lumora
