// Plane four-parameter similarity: its transformation and its estimator.
#include <lmspatialreference/coordinatetransformationfactory.h>
#include <lmspatialreference/matrixkit.h>
#include <lmspatialreference/plane4parametertransformation.h>

#include "fitting/estimate.h"
#include "internal/estimationsupport.h"
#include "internal/publishedunits.h"

#include <algorithm>
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
struct _Plane4Form {
    static const int unknowns = 4;
    static const int rows = 2;

    static void DesignRows(const double* s, const double* t, double (*rows)[5]) {
        const double x = s[0], y = s[1];
        const double design[2][5] = {{t[0] - x, 1.0, 0.0, x, -y}, {t[1] - y, 0.0, 1.0, y, x}};
        std::copy(&design[0][0], &design[0][0] + 10, &rows[0][0]);
    }

    static void Forward(int dim, const double* u, const double* s, double* fitted) {
        _Plane4Forward(u[0], u[1], u[2], u[3], s[0], s[1], fitted[0], fitted[1]);
        if (dim == 3) fitted[2] = s[2];
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

using _Plane4Model = _InvertedModel<_Plane4Form>;

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
    _Estimate(_Plane4Model(pairs), _UsablePointCount(count, dim, source, target), parameters, meanError, nullptr);
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
    return _Estimate(_Plane4Model(pairs), count, result);
}

}  // namespace Kernel
}  // namespace Lumora
