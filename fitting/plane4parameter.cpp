// Plane four-parameter similarity: its transformation and its estimator.
#include <lmspatialreference/coordinatetransformationfactory.h>
#include <lmspatialreference/matrixkit.h>
#include <lmspatialreference/plane4parametertransformation.h>

#include "fitting/estimate.h"
#include "fitting/estimationsupport.h"
#include "fitting/publishedunits.h"

#include <cmath>
#include <cstddef>
#include <vector>

namespace Lumora {
namespace Kernel {

namespace {

// The model X = x + dX + a x - b y, Y = y + dY + b x + a y, where
// a = k cos(theta) - 1 and b = k sin(theta) for the scale factor k.
void _Plane4Forward(double dX, double dY, double a, double b, double x, double y, double& X, double& Y) {
    X = x + dX - y * b + x * a;
    Y = y + dY + x * b + y * a;
}

// Unknowns dX, dY, a, b, fitted to the plane coordinates as given; z is
// carried along unchanged.
class _Plane4Model : public _InvertedModel {
public:
    static const int unknowns = 4;

    explicit _Plane4Model(const _PointPairs& pairs) : _InvertedModel(pairs) {}

    // Rows (X - x | 1, 0, x, -y) and (Y - y | 0, 1, y, x).
    void AddPoint(int i, double* N) const {
        const double* s = m_pairs.Source(i);
        const double* t = m_pairs.Target(i);
        const double x = s[0], y = s[1];
        const double rows[2][5] = {{t[0] - x, 1.0, 0.0, x, -y}, {t[1] - y, 0.0, 1.0, y, x}};
        for (const double* row : rows) mat_vec_vec(5, row, row, N);
    }

    bool Solve(const double* N, int count, double* u, double& meanError) {
        const int dim = m_pairs.Dim();
        return SolveAndFit(5, N, count, u, meanError, [dim](const double* p, const double* s, double* fitted) {
            _Plane4Forward(p[0], p[1], p[2], p[3], s[0], s[1], fitted[0], fitted[1]);
            if (dim == 3) fitted[2] = s[2];
        });
    }

    static void Publish(const double* u, double* parameters) {
        const double a = u[3], b = u[4];
        const double theta = std::atan(b / (a + 1.0));
        const double k = theta != 0.0 ? b / std::sin(theta) : a + 1.0;
        parameters[0] = u[1];
        parameters[1] = u[2];
        // Estimated angles are published through the kept pi while the
        // transformation reads them through the true one, as published
        // parameter sets were made.
        parameters[2] = _SecondsFromRadians(theta, _keptPi);
        parameters[3] = (k - 1.0) * _partsPerMillion;
    }
};

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
        _Plane4Forward(m_dX, m_dY, a, b, x[k], y[k], x[k], y[k]);
    }
    return true;
}

void LmCoordinateTransformationFactory::ComputePlane4Parameter(int count, int dim, const double* source,
                                                               const double* target, double* parameters,
                                                               double& meanError) {
    const _PointPairs pairs(_PointPairs::eAsGiven, nullptr, nullptr, count, dim, source, target);
    _Plane4Model model(pairs);
    _Estimate(model, _UsablePointCount(count, dim, source, target), parameters, meanError, nullptr);
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
    const _PointPairs pairs(_PointPairs::eAsGiven, nullptr, nullptr, count, dim, source, target);
    _Plane4Model model(pairs);
    double unused = 0.0;
    return _Estimate(model, count, nullptr, unused, &result);
}

}  // namespace Kernel
}  // namespace Lumora
