#include <lmspatialreference/geocentricconversion.h>

#include "fitting/estimationsupport.h"
#include "fitting/publishedunits.h"

#include <cmath>
#include <cstddef>

namespace Lumora {
namespace Kernel {

namespace {

// The iteration converges in a handful of steps for every finite point off
// the polar axis; the cap only stops inputs that never settle.
const int _latitudeIterationLimit = 1000;

}  // namespace

LmGeodeticToGeocentricCoordinateTransformation::LmGeodeticToGeocentricCoordinateTransformation(
    LmSpatialReference* reference) {
    _EllipsoidOf(reference, m_a, m_f);
}

double LmGeodeticToGeocentricCoordinateTransformation::SemiMajorAxis() const { return m_a; }
double LmGeodeticToGeocentricCoordinateTransformation::Flattening() const { return m_f; }

bool LmGeodeticToGeocentricCoordinateTransformation::Transformation(double* x, double* y, double* z, int count,
                                                                    int step) {
    if (count <= 0) return true;
    if (x == nullptr || y == nullptr) return false;
    const double a = m_a;
    const double e2 = 2.0 * m_f - m_f * m_f;
    _ForEachPoint(count, [=](int i) {
        const std::ptrdiff_t k = PointIndex(i, step);
        const double L = x[k] * _truePi / 180.0;
        const double B = y[k] * _truePi / 180.0;
        const double h = z != nullptr ? z[k] : 0.0;
        const double sinB = std::sin(B);
        const double N = a / std::sqrt(1.0 - e2 * sinB * sinB);
        x[k] = std::cos(B) * std::cos(L) * (N + h);
        y[k] = std::cos(B) * std::sin(L) * (N + h);
        if (z != nullptr) z[k] = sinB * ((1.0 - e2) * N + h);
    });
    return true;
}

LmGeocentricToGeodeticCoordinateTransformation::LmGeocentricToGeodeticCoordinateTransformation(
    LmSpatialReference* reference) {
    _EllipsoidOf(reference, m_a, m_f);
}

double LmGeocentricToGeodeticCoordinateTransformation::SemiMajorAxis() const { return m_a; }
double LmGeocentricToGeodeticCoordinateTransformation::Flattening() const { return m_f; }

bool LmGeocentricToGeodeticCoordinateTransformation::Transformation(double* x, double* y, double* z, int count,
                                                                    int step) {
    if (count <= 0) return true;
    if (x == nullptr || y == nullptr) return false;
    const double a = m_a;
    const double e2 = 2.0 * m_f - m_f * m_f;
    _ForEachPoint(count, [=](int i) {
        const std::ptrdiff_t k = PointIndex(i, step);
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
    return true;
}

}  // namespace Kernel
}  // namespace Lumora
