#include <lmspatialreference/coordinatetransformation.h>
#include <lmspatialreference/fitting.h>

#include "internal/parallelbatch.h"
#include "internal/publishedunits.h"

#include <cfloat>
#include <cmath>

namespace Lumora {
namespace Kernel {

namespace {

// Larger batches are worth the cost of a parallel region.
const int _serialPointLimit = 10000;

// Least-squares fit of t = a * x + b * y + c over count points: source holds
// interleaved (x, y) pairs, observed the values t with a stride of two.
bool min_xyc(int count, const double* source, const double* observed, double& a, double& b, double& c) {
    double normal[16] = {};
    for (int k = 0; k < count; ++k) {
        const double row[4] = {-observed[2 * k], source[2 * k], source[2 * k + 1], 1.0};
        mat_add(4, normal, row, row, 1.0);
    }
    // Before elimination normal[0] is the sum of the squared observations.
    const double observedSquares = normal[0];
    double solution[4];
    const double minimum = mat_min2(4, normal, solution);
    // An exact fit has the true minimum 0, which rounding makes slightly
    // negative about half the time; only a minimum clearly below zero (or an
    // indefinite form) shows a degenerate point set. NaN fails as well.
    if (!(minimum > -DBL_MAX && minimum >= -1e-9 * observedSquares)) return false;
    a = solution[1];
    b = solution[2];
    c = solution[3];
    return true;
}

// Whether the points spread across a plane rather than along one line. On a
// line the fit leaves an unknown undetermined, and the elimination then pivots
// on rounding noise and reports some exact fit instead of failing, so the
// test is made on the geometry: 1 - r^2 of the centred coordinates, which
// does not depend on the coordinates' scale or offset.
bool _PointsSpanPlane(int count, const double* source) {
    double meanX = 0.0;
    double meanY = 0.0;
    for (int k = 0; k < count; ++k) {
        meanX += source[2 * k];
        meanY += source[2 * k + 1];
    }
    meanX /= count;
    meanY /= count;
    double sxx = 0.0;
    double syy = 0.0;
    double sxy = 0.0;
    for (int k = 0; k < count; ++k) {
        const double dx = source[2 * k] - meanX;
        const double dy = source[2 * k + 1] - meanY;
        sxx += dx * dx;
        syy += dy * dy;
        sxy += dx * dy;
    }
    return sxx * syy - sxy * sxy > 1e-12 * sxx * syy;
}

}  // namespace

LmAffineCoordinateTransformation::LmAffineCoordinateTransformation(const double* source, const double* target,
                                                                   int n)
    : m_elements{1.0, 0.0, 0.0, 1.0, 0.0, 0.0} {
    Parameter(source, target, n);
}

LmAffineCoordinateTransformation::LmAffineCoordinateTransformation(const double* elements) {
    for (int k = 0; k < 6; ++k) m_elements[k] = elements[k];
}

LmAffineCoordinateTransformation::LmAffineCoordinateTransformation(double dx, double dy)
    : m_elements{1.0, 0.0, 0.0, 1.0, dx, dy} {}

LmAffineCoordinateTransformation::LmAffineCoordinateTransformation(double cx, double cy, double angle) {
    const double theta = angle / 180.0 * _truePi;
    const double c = std::cos(theta);
    const double s = std::sin(theta);
    const double elements[6] = {c, s, -s, c, (1.0 - c) * cx + s * cy, (1.0 - c) * cy - s * cx};
    for (int k = 0; k < 6; ++k) m_elements[k] = elements[k];
}

bool LmAffineCoordinateTransformation::Parameter(const double* source, const double* target, int n) {
    if (n < 6) return false;
    m_sourcePoints.assign(source, source + n);
    m_targetPoints.assign(target, target + n);
    const int points = n / 2;
    if (!_PointsSpanPlane(points, source)) return false;
    double* m = m_elements;
    return min_xyc(points, source, target, m[0], m[2], m[4]) &&
           min_xyc(points, source, target + 1, m[1], m[3], m[5]);
}

bool LmAffineCoordinateTransformation::Elements(double* out) {
    for (int k = 0; k < 6; ++k) out[k] = m_elements[k];
    return true;
}

const double* LmAffineCoordinateTransformation::Matrix() const { return m_elements; }

int LmAffineCoordinateTransformation::IdenticalPointCount() const {
    return static_cast<int>(m_sourcePoints.size());
}

const double* LmAffineCoordinateTransformation::SourcePoint() const {
    return m_sourcePoints.empty() ? nullptr : m_sourcePoints.data();
}

const double* LmAffineCoordinateTransformation::TargetPoint() const {
    return m_targetPoints.empty() ? nullptr : m_targetPoints.data();
}

bool LmAffineCoordinateTransformation::Transformation(double* x, double* y, double*, int count, int step) {
    const double* m = m_elements;
    auto transformPoint = [=](int i) {
        const std::ptrdiff_t at = PointIndex(i, step);
        const double u = x[at];
        const double v = y[at];
        x[at] = m[0] * u + m[2] * v + m[4];
        y[at] = m[1] * u + m[3] * v + m[5];
    };
    if (count > _serialPointLimit) {
        ParallelPoints(count, transformPoint);
    } else {
        for (int i = 0; i < count; ++i) transformPoint(i);
    }
    return true;
}

}  // namespace Kernel
}  // namespace Lumora
