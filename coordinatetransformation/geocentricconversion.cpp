#include <lmspatialreference/geocentricconversion.h>

#include "internal/estimationsupport.h"
#include "internal/publishedunits.h"

#include <cmath>
#include <cstddef>

namespace Lumora {
namespace Kernel {

namespace {

// The iteration converges in a handful of steps for every finite point off
// the polar axis; the cap only stops inputs that never settle.
const int _latitudeIterationLimit = 1000;

// Calls point(k, a, e2) for the index k of every point of a batch on the
// ellipsoid of semi-major axis a and flattening f (e2 = 2f - f^2). True
// unless x or y is null while count is positive.
template <class Point>
bool _OnEllipsoid(double a, double f, double* x, double* y, int count, int step, Point&& point) {
    if (count <= 0) return true;
    if (x == nullptr || y == nullptr) return false;
    const double e2 = 2.0 * f - f * f;
    _ForEachPoint(count, [&](int i) { point(PointIndex(i, step), a, e2); });
    return true;
}

}  // namespace

// Both conversions read the ellipsoid once and share the checks of a batch.
LmGeodeticToGeocentricCoordinateTransformation::LmGeodeticToGeocentricCoordinateTransformation(
    LmSpatialReference* reference) {
    _EllipsoidOf(reference, m_a, m_f);
}

LmGeocentricToGeodeticCoordinateTransformation::LmGeocentricToGeodeticCoordinateTransformation(
    LmSpatialReference* reference) {
    _EllipsoidOf(reference, m_a, m_f);
}

double LmGeodeticToGeocentricCoordinateTransformation::SemiMajorAxis() const { return m_a; }
double LmGeocentricToGeodeticCoordinateTransformation::SemiMajorAxis() const { return m_a; }
double LmGeodeticToGeocentricCoordinateTransformation::Flattening() const { return m_f; }
double LmGeocentricToGeodeticCoordinateTransformation::Flattening() const { return m_f; }

bool LmGeodeticToGeocentricCoordinateTransformation::Transformation(double* x, double* y, double* z, int count,
                                                                    int step) {
    return _OnEllipsoid(m_a, m_f, x, y, count, step, [=](std::ptrdiff_t k, double a, double e2) {
        const double L = x[k] * _truePi / 180.0;
        const double B = y[k] * _truePi / 180.0;
        const double h = z != nullptr ? z[k] : 0.0;
        const double sinB = std::sin(B);
        const double N = a / std::sqrt(1.0 - e2 * sinB * sinB);
        x[k] = std::cos(B) * std::cos(L) * (N + h);
        y[k] = std::cos(B) * std::sin(L) * (N + h);
        if (z != nullptr) z[k] = sinB * ((1.0 - e2) * N + h);
    });
}

bool LmGeocentricToGeodeticCoordinateTransformation::Transformation(double* x, double* y, double* z, int count,
                                                                    int step) {
    return _OnEllipsoid(m_a, m_f, x, y, count, step, [=](std::ptrdiff_t k, double a, double e2) {
        const double X = x[k];
        const double Y = y[k];
        const double Z = z != nullptr ? z[k] : 0.0;
        const double p = std::sqrt(X * X + Y * Y);
        const double r = std::sqrt(X * X + Y * Y + Z * Z);
        // First guess: N = a and the height above a sphere of radius sqrt(a b).
        double phi = std::atan((Z / p) / (1.0 - e2 * a / (a + (r - std::sqrt(a * a * std::sqrt(1.0 - e2))))));
        double phiNew = phi;
        double h = 0.0;
        bool settled = false;
        for (int n = 0; n < _latitudeIterationLimit && std::isfinite(phi); ++n) {
            const double sinPhi = std::sin(phi);
            const double N = a / std::sqrt(1.0 - e2 * sinPhi * sinPhi);
            h = p / std::cos(phi) - N;
            phiNew = std::atan((Z / p) / (1.0 - e2 * N / (N + h)));
            if (std::fabs(phiNew - phi) <= 1e-14) {
                settled = true;
                break;
            }
            phi = phiNew;
        }
        if (!settled) return;  // left as it was
        double lambda = std::atan(Y / X);
        if (lambda < 0.0) lambda = -lambda * 180.0 / _truePi;
        x[k] = 180.0 - lambda;
        y[k] = phiNew / _truePi * 180.0;
        if (z != nullptr) z[k] = h;
    });
}

}  // namespace Kernel
}  // namespace Lumora
