// Shared by the estimation tests: the references the control points live in,
// geocentric conversions done by PROJ (independent of the library), the
// forward Helmert transformation in both rotation conventions, and control
// point sets over China, Bursa's among them.
#ifndef LMSPATIALREFERENCE_TESTS_ESTIMATION_FIXTURES_H
#define LMSPATIALREFERENCE_TESTS_ESTIMATION_FIXTURES_H

#include <lmspatialreference/lmspatialreference.h>

#include <ogr_spatialref.h>

#include <cmath>
#include <memory>
#include <vector>

namespace EstimationTests {

using namespace Lumora::Kernel;

constexpr double kPi = 3.141592653589793;
constexpr double kArcSecond = kPi / 180.0 / 3600.0;

inline const char* const kBeijing1954 = "+proj=longlat +ellps=krass +no_defs";
inline const char* const kCgcs2000 = "+proj=longlat +ellps=GRS80 +no_defs";
// CGCS2000 3-degree Gauss-Kruger zone 39 (central meridian 117 E), no zone prefix.
inline const char* const kCgcs2000GaussKruger =
    "+proj=tmerc +lat_0=0 +lon_0=117 +k=1 +x_0=500000 +y_0=0 +ellps=GRS80 +units=m +no_defs";

inline LmSmarterPtr<LmSpatialReference> Reference(const char* proj4) {
    return LmSmarterPtr<LmSpatialReference>(new LmSpatialReference(proj4, eProj4));
}

// Geodetic (lon, lat, h) <-> geocentric through PROJ on the ellipsoid named in
// a "+proj=longlat" definition. forward: geodetic to geocentric.
inline void ProjGeocentric(const char* longlat, bool forward, std::vector<double>& xyz) {
    OGRSpatialReference geodetic, geocentric;
    geodetic.SetAxisMappingStrategy(OAMS_TRADITIONAL_GIS_ORDER);
    geocentric.SetAxisMappingStrategy(OAMS_TRADITIONAL_GIS_ORDER);
    geodetic.importFromProj4(longlat);
    std::string cart = longlat;
    cart.replace(cart.find("longlat"), 7, "geocent");
    geocentric.importFromProj4(cart.c_str());
    std::unique_ptr<OGRCoordinateTransformation> ct(
        forward ? OGRCreateCoordinateTransformation(&geodetic, &geocentric)
                : OGRCreateCoordinateTransformation(&geocentric, &geodetic));
    const int n = static_cast<int>(xyz.size() / 3);
    for (int i = 0; i < n; ++i) ct->Transform(1, &xyz[3 * i], &xyz[3 * i + 1], &xyz[3 * i + 2]);
}

// Seven parameters in published units (metres, seconds of arc, ppm).
struct Helmert {
    double dx, dy, dz, rx, ry, rz, ppm;
};

// The linearised Bursa-Wolf model with the rotation matrix written out:
// coordinate frame convention R = [[1, rz, -ry], [-rz, 1, rx], [ry, -rx, 1]]
// (the library's), or its transpose for the position vector convention.
inline void HelmertForward(const Helmert& p, bool coordinateFrame, std::vector<double>& xyz) {
    const double rx = p.rx * kArcSecond, ry = p.ry * kArcSecond, rz = p.rz * kArcSecond, m = p.ppm * 1e-6;
    double R[3][3] = {{1, rz, -ry}, {-rz, 1, rx}, {ry, -rx, 1}};
    if (!coordinateFrame)
        for (int i = 0; i < 3; ++i)
            for (int j = i + 1; j < 3; ++j) std::swap(R[i][j], R[j][i]);
    for (std::size_t k = 0; k < xyz.size(); k += 3) {
        const double v[3] = {xyz[k], xyz[k + 1], xyz[k + 2]};
        const double t[3] = {p.dx, p.dy, p.dz};
        for (int i = 0; i < 3; ++i) {
            const double rotated = R[i][0] * v[0] + R[i][1] * v[1] + R[i][2] * v[2];
            xyz[k + i] = rotated + t[i] + m * v[i];
        }
    }
}

// count geodetic points (lon, lat, h) spread over eastern China, fixed per count.
inline std::vector<double> ChinaPoints(int count, double lon0 = 114.0, double lat0 = 28.0, double span = 6.0) {
    std::vector<double> points;
    for (int i = 0; i < count; ++i) {
        points.push_back(lon0 + span * std::fmod(i * 0.618034, 1.0));
        points.push_back(lat0 + span * std::fmod(i * 0.414214 + 0.1, 1.0));
        points.push_back(20.0 + 37.0 * (i % 7));
    }
    return points;
}

// Deterministic noise of the given amplitude (uniform in [-a, a)).
inline double Noise(int i, double amplitude) { return amplitude * (2.0 * std::fmod(i * 0.7548776662, 1.0) - 1.0); }

// Control points in CGCS2000 and Beijing 1954 related by a known Helmert
// transformation in geocentric space; PROJ produces both sets.
struct BursaCase {
    std::vector<double> source, target;  // geodetic (lon, lat, h)
};

inline BursaCase MakeBursaCase(const Helmert& truth, bool coordinateFrame, int count, double noise) {
    BursaCase c;
    c.source = ChinaPoints(count);
    std::vector<double> xyz = c.source;
    ProjGeocentric(kCgcs2000, true, xyz);
    HelmertForward(truth, coordinateFrame, xyz);
    for (std::size_t k = 0; k < xyz.size(); ++k) xyz[k] += Noise(static_cast<int>(k), noise);
    ProjGeocentric(kBeijing1954, false, xyz);
    c.target = xyz;
    return c;
}

}  // namespace EstimationTests

#endif  // LMSPATIALREFERENCE_TESTS_ESTIMATION_FIXTURES_H
