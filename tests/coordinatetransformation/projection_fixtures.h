// Shared by the projection tests: reference texts, the parallel switch, and
// closed forms that give values independent of GDAL and PROJ.
#ifndef LMSPATIALREFERENCE_TESTS_PROJECTION_FIXTURES_H
#define LMSPATIALREFERENCE_TESTS_PROJECTION_FIXTURES_H

#include "tests/fixtures.h"

#include <cmath>

namespace ProjectionTests {

using namespace Fixtures;
using Lumora::Utility::LmGlobeConfig;

// Turns the parallel switch on or off for the transformations built while it lives.
class ParallelSwitch {
public:
    explicit ParallelSwitch(bool on) { LmGlobeConfig::Set(kKey, on ? "true" : "false"); }
    ~ParallelSwitch() { LmGlobeConfig::Clear(kKey); }

private:
    static constexpr const char* kKey = "SpatialReference/ProjectCoordinateTransformation/Parallel";
};

// Spherical (web) Mercator on a sphere of radius a.
inline void SphericalMercator(double a, double lon, double lat, double& x, double& y) {
    x = a * Radians(lon);
    y = a * std::log(std::tan(kPi / 4.0 + Radians(lat) / 2.0));
}

// Meridian arc length from the equator (Helmert's series, millimetre accurate).
inline double MeridianArc(double a, double inverseF, double lat) {
    const double f = 1.0 / inverseF, e2 = f * (2.0 - f), e4 = e2 * e2, e6 = e4 * e2;
    const double phi = Radians(lat);
    return a * ((1.0 - e2 / 4.0 - 3.0 * e4 / 64.0 - 5.0 * e6 / 256.0) * phi -
                (3.0 * e2 / 8.0 + 3.0 * e4 / 32.0 + 45.0 * e6 / 1024.0) * std::sin(2.0 * phi) +
                (15.0 * e4 / 256.0 + 45.0 * e6 / 1024.0) * std::sin(4.0 * phi) -
                (35.0 * e6 / 3072.0) * std::sin(6.0 * phi));
}

// Transverse Mercator easting of a point on the equator, dLon degrees from the
// central meridian, by Krüger's series: on the equator the conformal latitude
// vanishes and the series reduces to sinh terms.
inline double EquatorEasting(double a, double inverseF, double k0, double dLon) {
    const double f = 1.0 / inverseF, n = f / (2.0 - f), n2 = n * n, n3 = n2 * n;
    const double rectifyingRadius = a / (1.0 + n) * (1.0 + n2 / 4.0 + n2 * n2 / 64.0);
    const double alpha[3] = {n / 2.0 - 2.0 * n2 / 3.0 + 5.0 * n3 / 16.0, 13.0 * n2 / 48.0 - 3.0 * n3 / 5.0,
                             61.0 * n3 / 240.0};
    const double eta = std::atanh(std::sin(Radians(dLon)));
    double sum = eta;
    for (int j = 1; j <= 3; ++j) sum += alpha[j - 1] * std::sinh(2.0 * j * eta);
    return k0 * rectifyingRadius * sum;
}

struct Geocentric {
    double x, y, z;
};

inline double SquaredEccentricity(double inverseF) { return (2.0 - 1.0 / inverseF) / inverseF; }

inline Geocentric ToGeocentric(double a, double inverseF, double lon, double lat) {
    const double e2 = SquaredEccentricity(inverseF);
    const double phi = Radians(lat), lambda = Radians(lon);
    const double n = a / std::sqrt(1.0 - e2 * std::sin(phi) * std::sin(phi));
    return {n * std::cos(phi) * std::cos(lambda), n * std::cos(phi) * std::sin(lambda),
            n * (1.0 - e2) * std::sin(phi)};
}

inline void ToGeodetic(double a, double inverseF, const Geocentric& p, double& lon, double& lat) {
    const double e2 = SquaredEccentricity(inverseF), distance = std::hypot(p.x, p.y);
    double phi = std::atan2(p.z, distance * (1.0 - e2));
    for (int i = 0; i < 10; ++i) {
        const double n = a / std::sqrt(1.0 - e2 * std::sin(phi) * std::sin(phi));
        const double h = distance / std::cos(phi) - n;
        phi = std::atan2(p.z, distance * (1.0 - e2 * n / (n + h)));
    }
    lon = std::atan2(p.y, p.x) * 180.0 / kPi;
    lat = phi * 180.0 / kPi;
}

// The seven-parameter shift in the position vector convention (small angles):
// translations in metres, rotations in arc-seconds, scale in ppm.
inline Geocentric PositionVectorShift(const Geocentric& p, const double parameters[7]) {
    const double arcSecond = kPi / 180.0 / 3600.0;
    const double rx = parameters[3] * arcSecond, ry = parameters[4] * arcSecond, rz = parameters[5] * arcSecond;
    const double scale = 1.0 + parameters[6] * 1e-6;
    return {parameters[0] + scale * (p.x - rz * p.y + ry * p.z), parameters[1] + scale * (rz * p.x + p.y - rx * p.z),
            parameters[2] + scale * (-ry * p.x + rx * p.y + p.z)};
}

}  // namespace ProjectionTests

#endif  // LMSPATIALREFERENCE_TESTS_PROJECTION_FIXTURES_H
