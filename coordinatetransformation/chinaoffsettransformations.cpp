// The four China offset transformations. Each handles its points one by one in
// the parallel batch; the reverse directions solve every point by iterating
// the forward offset with xymap_r.
#include <lmspatialreference/coordinatetransformation.h>
#include <lmspatialreference/geodesics.h>

#include "coordinatetransformation/chinaoffsetformula.h"
#include "coordinatetransformation/reverseoffsetoutcomes.h"
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
// positive or the iteration fails; false then.
bool _Unoffset(const LmGeodesic& krasovsky, double metres, PointMapping f, SquaredTolerance squaredTolerance,
               double& x, double& y) {
    const double target[2] = {x, y};
    double estimate[2] = {x, y};
    double x2 = x;
    double y2 = y;
    krasovsky.Direct(x, y, 0.0, metres, &x2, &y2, nullptr);
    const double eps = squaredTolerance(x - x2, y - y2);
    if (!(eps > 0.0)) return false;
    if (!xymap_r(2, target, estimate, f, eps, nullptr)) return false;
    x = estimate[0];
    y = estimate[1];
    return true;
}

// What tells the two reverse offsets apart.
struct _ReverseOffset {
    PointMapping forward;
    SquaredTolerance squaredTolerance;
    bool onlyInChina;  // points outside China are GCJ-02 and WGS 84 alike
};

constexpr _ReverseOffset _fromGCJ02{WGS84ToGCJ02, _HalfLargerDifferenceSquared, true};
constexpr _ReverseOffset _fromBD09{WGS84ToBD09, _QuarterSquaredDistance, false};

// Solves every point of the batch in parallel, on a geodesic object all
// threads share read-only; records each point's outcome when transformed is
// not null. Returns the number of points solved.
int _UnoffsetAll(const _ReverseOffset& offset, double metres, double* x, double* y, int count, int step,
                 unsigned char* transformed) {
    const LmGeodesic krasovsky(6378245.0, 298.3);  // Krasovsky 1940, the ellipsoid of the offsets
    return ParallelSum<int>(count, [&](int begin, int end) {
        int solved = 0;
        for (int i = begin; i < end; ++i) {
            const std::ptrdiff_t at = PointIndex(i, step);
            const bool done = (offset.onlyInChina && outOfChina(x[at], y[at])) ||
                              _Unoffset(krasovsky, metres, offset.forward, offset.squaredTolerance, x[at], y[at]);
            if (transformed) transformed[i] = done ? 1 : 0;
            solved += done ? 1 : 0;
        }
        return solved;
    });
}

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

// A point that cannot be solved stays as it was, silently: the batch reports
// true whatever the points did.
bool LmGCJ02ToWGS84CoordinateTransformation::Transformation(double* x, double* y, double*, int count, int step) {
    if (x == nullptr || y == nullptr) return false;
    _UnoffsetAll(_fromGCJ02, Precision(), x, y, count, step, nullptr);
    return true;
}

LmBD09ToWGS84CoordinateTransformation::LmBD09ToWGS84CoordinateTransformation(double precision)
    : LmGCJ02ToWGS84CoordinateTransformation(precision) {}

bool LmBD09ToWGS84CoordinateTransformation::Transformation(double* x, double* y, double*, int count, int step) {
    if (x == nullptr || y == nullptr) return false;
    _UnoffsetAll(_fromBD09, Precision(), x, y, count, step, nullptr);
    return true;
}

int ReverseOffsetWithOutcomes(const LmGCJ02ToWGS84CoordinateTransformation& transformation, double* x, double* y,
                              int count, int step, unsigned char* transformed) {
    const bool fromBD09 = dynamic_cast<const LmBD09ToWGS84CoordinateTransformation*>(&transformation) != nullptr;
    return _UnoffsetAll(fromBD09 ? _fromBD09 : _fromGCJ02, transformation.Precision(), x, y, count, step, transformed);
}

}  // namespace Kernel
}  // namespace Lumora
