// The four China offset transformations. Each handles its points one by one in
// the parallel batch; the reverse directions solve every point by iterating
// the forward offset with xymap_r.
#include <lmspatialreference/coordinatetransformation.h>
#include <lmspatialreference/geodesics.h>

#include "coordinatetransformation/chinaoffsetformula.h"
#include "internal/parallelbatch.h"

#include <cmath>
#include <cstddef>

namespace Lumora {
namespace Kernel {

namespace {

// The squared tolerance of a point, in degrees squared, from the coordinate
// changes (dx, dy) of a northward move of the precision.
using SquaredTolerance = double (*)(double dx, double dy);

double _HalfLargerDifferenceSquared(double dx, double dy) {
    const double tolerance = Utility::LmMath::Max(std::fabs(dx), std::fabs(dy)) / 2.0;
    return tolerance > 0.0 ? tolerance * tolerance : 0.0;
}

double _QuarterSquaredDistance(double dx, double dy) { return (dx * dx + dy * dy) / 4.0; }

// Runs handle(x, y) on every point of the batch, in parallel.
template <class Handle>
bool _ForEachPoint(double* x, double* y, int count, int step, Handle&& handle) {
    if (x == nullptr || y == nullptr) return false;
    // Each block copies what it reads into locals of its own: fields of the
    // shared closure would be reloaded after every opaque call to sin.
    ParallelBlocks(count, [x, y, step, handle](int begin, int end) {
        double* const px = x;
        double* const py = y;
        const std::ptrdiff_t stride = step;
        const std::ptrdiff_t last = PointIndex(end, step);
        for (std::ptrdiff_t at = PointIndex(begin, step); at < last; at += stride) handle(px[at], py[at]);
    });
    return true;
}

// Solves f(estimate) = (x, y) for one point, starting from the point itself,
// to the tolerance that a move of `metres` due north spans there on the
// Krasovsky ellipsoid. The point is left as it is when the tolerance is not
// positive or the iteration fails.
void _Unoffset(const LmGeodesic& krasovsky, double metres, PointMapping f, SquaredTolerance squaredTolerance,
               double& x, double& y) {
    const double target[2] = {x, y};
    double estimate[2] = {x, y};
    double x2 = x;
    double y2 = y;
    krasovsky.Direct(x, y, 0.0, metres, &x2, &y2, nullptr);
    const double eps = squaredTolerance(x - x2, y - y2);
    if (!(eps > 0.0)) return;
    if (!xymap_r(2, target, estimate, f, eps, nullptr)) return;
    x = estimate[0];
    y = estimate[1];
}

// The ellipsoid of the offsets, Krasovsky 1940.
LmGeodesic _Krasovsky() { return LmGeodesic(6378245.0, 298.3); }

}  // namespace

bool LmWGS84ToGCJ02CoordinateTransformation::Transformation(double* x, double* y, double*, int count, int step) {
    return _ForEachPoint(x, y, count, step, [](double& px, double& py) {
        if (!ChinaOffset::OutOfChina(px, py)) ChinaOffset::ToGCJ02(px, py);
    });
}

bool LmWGS84ToBD09CoordinateTransformation::Transformation(double* x, double* y, double*, int count, int step) {
    return _ForEachPoint(x, y, count, step, [](double& px, double& py) { ChinaOffset::ToBD09(px, py); });
}

LmGCJ02ToWGS84CoordinateTransformation::LmGCJ02ToWGS84CoordinateTransformation(double precision) {
    Precision(precision);
}

double LmGCJ02ToWGS84CoordinateTransformation::Precision() const { return m_precision; }

void LmGCJ02ToWGS84CoordinateTransformation::Precision(double value) {
    const double magnitude = std::fabs(value);
    m_precision = magnitude > 0.0 ? magnitude : 0.001;
}

bool LmGCJ02ToWGS84CoordinateTransformation::Transformation(double* x, double* y, double*, int count, int step) {
    const LmGeodesic krasovsky = _Krasovsky();
    const double metres = Precision();
    return _ForEachPoint(x, y, count, step, [&](double& px, double& py) {
        if (outOfChina(px, py)) return;
        _Unoffset(krasovsky, metres, WGS84ToGCJ02, _HalfLargerDifferenceSquared, px, py);
    });
}

LmBD09ToWGS84CoordinateTransformation::LmBD09ToWGS84CoordinateTransformation(double precision)
    : LmGCJ02ToWGS84CoordinateTransformation(precision) {}

bool LmBD09ToWGS84CoordinateTransformation::Transformation(double* x, double* y, double*, int count, int step) {
    const LmGeodesic krasovsky = _Krasovsky();
    const double metres = Precision();
    return _ForEachPoint(x, y, count, step, [&](double& px, double& py) {
        _Unoffset(krasovsky, metres, WGS84ToBD09, _QuarterSquaredDistance, px, py);
    });
}

}  // namespace Kernel
}  // namespace Lumora
