// A program that uses the installed library the way an application would:
// one WGS 84 point projected to Web Mercator, one geodesic distance and EPSG
// codes from the installed data folder.
#include <lmspatialreference/lmspatialreference.h>

#include <cmath>
#include <cstdio>

using namespace Lumora::Kernel;

int main() {
    LmSmarterPtr<LmSpatialReference> wgs84(new LmSpatialReference(eWGS84));
    LmSmarterPtr<LmSpatialReference> webMercator(new LmSpatialReference(eWebMercator));
    LmSmarterPtr<LmCoordinateTransformation> projection(new LmProjectCoordinateTransformation(wgs84, webMercator));

    double x = 116.391, y = 39.907;
    const bool projected = projection->Transformation(x, y);
    // Spherical Mercator: x = R * lon, y = R * ln tan(pi/4 + lat/2).
    const double radius = 6378137.0, toRadians = 3.141592653589793 / 180.0;
    const double expectedX = radius * 116.391 * toRadians;
    const double expectedY = radius * std::log(std::tan(3.141592653589793 / 4.0 + 39.907 * toRadians / 2.0));
    const bool ok = projected && std::fabs(x - expectedX) < 1e-6 && std::fabs(y - expectedY) < 1e-6;
    std::printf("consumer: (116.391, 39.907) -> (%.3f, %.3f) %s\n", x, y, ok ? "ok" : "FAILED");

    // A quarter of the equator of a unit sphere is pi/2.
    const LmGeodesic sphere(1.0, 0.0);
    const double quarter = sphere.Inverse(0, 0, 90, 0, nullptr, nullptr);
    if (std::fabs(quarter - 3.141592653589793 / 2.0) > 1e-12) {
        std::printf("consumer: geodesic FAILED\n");
        return 1;
    }

    // The installed data folder is found from this working folder too.
    const bool epsg = LmSpatialReference(eWGS84).EPSG() == 4326 && LmSpatialReference(4547).EPSG() == 4547;
    std::printf("consumer: EPSG codes %s\n", epsg ? "ok" : "FAILED");
    return ok && epsg ? 0 : 1;
}
