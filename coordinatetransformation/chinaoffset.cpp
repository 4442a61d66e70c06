// The published GCJ-02 and BD-09 offset formulas.
#include <lmspatialreference/coordinatetransformation.h>

#include <cmath>

namespace Lumora {
namespace Kernel {

using Utility::LmMath;

namespace {

// First eccentricity squared of the Krasovsky 1940 ellipsoid.
constexpr double _ee = 0.006693421622965943;
// Its semi-major axis 6378245 times pi.
constexpr double _aPi = 20037847.63479583;

}  // namespace

bool outOfChina(double lon, double lat) {
    return lon < 72.004 || lat > 137.8347 || lat < 0.8293 || lat > 55.8271;
}

void _WGS84ToGCJ02(double x, double y, double& dLon, double& dLat) {
    const double pi = LmMath::Pi();
    const double px = pi * x;
    const double py = pi * y;
    const double rootX = std::sqrt(std::fabs(x));

    dLat = -100.0 + 2.0 * x + 3.0 * y + 0.2 * y * y + 0.1 * x * y + 0.2 * rootX;
    dLat += 2.0 * (20.0 * std::sin(6.0 * px) + 20.0 * std::sin(2.0 * px)) / 3.0;
    dLat += 2.0 * (20.0 * std::sin(py) + 40.0 * std::sin(py / 3.0)) / 3.0;
    dLat += 2.0 * (160.0 * std::sin(py / 12.0) + 320.0 * std::sin(py / 30.0)) / 3.0;

    dLon = 300.0 + x + 2.0 * y + 0.1 * x * x + 0.1 * x * y + 0.1 * rootX;
    dLon += 2.0 * (20.0 * std::sin(6.0 * px) + 20.0 * std::sin(2.0 * px)) / 3.0;
    dLon += 2.0 * (20.0 * std::sin(px) + 40.0 * std::sin(px / 3.0)) / 3.0;
    dLon += 2.0 * (150.0 * std::sin(px / 12.0) + 300.0 * std::sin(px / 30.0)) / 3.0;
}

void WGS84ToGCJ02(const double* in, double* out, void* /*context*/) {
    const double lon = in[0];
    const double lat = in[1];
    double dLon = 0.0;
    double dLat = 0.0;
    _WGS84ToGCJ02(lon - 105.0, lat - 35.0, dLon, dLat);
    const double radLat = LmMath::ToRadian(lat);
    const double s = std::sin(radLat);
    const double magic = 1.0 - _ee * s * s;
    const double k = std::sqrt(magic) * 180.0 / _aPi;
    dLon = dLon * k / std::cos(radLat);
    dLat = dLat * magic * k / (1.0 - _ee);
    out[0] = lon + dLon;
    out[1] = lat + dLat;
}

void WGS84ToBD09(const double* in, double* out, void* context) {
    WGS84ToGCJ02(in, out, context);
    const double pi = LmMath::Pi();
    const double x = out[0];
    const double y = out[1];
    const double z = std::sqrt(x * x + y * y) + 2e-5 * std::sin(pi * y);
    const double theta = std::atan2(y, x) + 3e-6 * std::cos(pi * x);
    out[0] = z * std::cos(theta) + 0.0065;
    out[1] = z * std::sin(theta) + 0.006;
}

}  // namespace Kernel
}  // namespace Lumora
