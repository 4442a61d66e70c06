// A tour of the library. First its typical request: project 10,000 interleaved
// WGS 84 points (x = longitude, y = latitude, step 2) to UTM zone 50N, once
// serially and once in parallel. Then a GCJ-02 round trip, geodesics on WGS 84,
// and an affine transformation estimated from control points with its numeric
// inverse.
#include <lmspatialreference/lmspatialreference.h>

#include <cstdio>
#include <vector>

using namespace Lumora::Kernel;
using Lumora::Utility::LmGlobeConfig;

namespace {

const char* const kWgs84 =
    R"(GEOGCS["WGS 84",DATUM["WGS_1984",SPHEROID["WGS 84",6378137,298.257223563]],)"
    R"(PRIMEM["Greenwich",0],UNIT["degree",0.0174532925199433]])";

const char* const kUtmZone50N =
    R"(PROJCS["WGS 84 / UTM zone 50N",GEOGCS["WGS 84",DATUM["WGS_1984",SPHEROID["WGS 84",6378137,298.257223563]],)"
    R"(PRIMEM["Greenwich",0],UNIT["degree",0.0174532925199433]],PROJECTION["Transverse_Mercator"],)"
    R"(PARAMETER["latitude_of_origin",0],PARAMETER["central_meridian",117],PARAMETER["scale_factor",0.9996],)"
    R"(PARAMETER["false_easting",500000],PARAMETER["false_northing",0],UNIT["metre",1]])";

// A grid of (lon, lat) pairs over eastern China, inside UTM zone 50.
std::vector<double> SamplePoints(int count) {
    std::vector<double> xy(2 * count);
    for (int i = 0; i < count; ++i) {
        xy[2 * i] = 114.0 + 6.0 * (i % 100) / 100.0;
        xy[2 * i + 1] = 22.0 + 18.0 * (i / 100) / 100.0;
    }
    return xy;
}

bool ProjectTypicalRequest() {
    LmSmarterPtr<LmSpatialReference> source(new LmSpatialReference(kWgs84, eWKT));
    LmSmarterPtr<LmSpatialReference> target(new LmSpatialReference(kUtmZone50N, eWKT));

    const int count = 10000;
    std::vector<double> serial = SamplePoints(count);
    std::vector<double> parallel = serial;

    // The parallel switch is read when a transformation is made.
    LmSmarterPtr<LmCoordinateTransformation> serialProjection(new LmProjectCoordinateTransformation(source, target));
    LmGlobeConfig::Set("SpatialReference/ProjectCoordinateTransformation/Parallel", "true");
    LmSmarterPtr<LmCoordinateTransformation> parallelProjection(
        new LmProjectCoordinateTransformation(source, target));

    const bool serialOk = serialProjection->Transformation(serial.data(), count, 2);
    const bool parallelOk = parallelProjection->Transformation(parallel.data(), count, 2);

    const std::vector<double> input = SamplePoints(count);
    for (int i : {0, 4550, count - 1})
        std::printf("(%.2f, %.2f) -> E %.3f  N %.3f\n", input[2 * i], input[2 * i + 1], serial[2 * i],
                    serial[2 * i + 1]);
    std::printf("every point transformed: serial %s, parallel %s\n", serialOk ? "yes" : "no",
                parallelOk ? "yes" : "no");
    std::printf("serial and parallel results agree: %s\n", serial == parallel ? "yes" : "no");
    return serialOk && parallelOk && serial == parallel;
}

void OffsetRoundTrip() {
    LmSmarterPtr<LmCoordinateTransformation> toGcj(new LmWGS84ToGCJ02CoordinateTransformation);
    LmSmarterPtr<LmCoordinateTransformation> fromGcj(new LmGCJ02ToWGS84CoordinateTransformation(0.001));
    double x = 116.404, y = 39.915;
    toGcj->Transformation(x, y);
    std::printf("\nWGS 84 (116.404, 39.915) -> GCJ-02 (%.9f, %.9f)", x, y);
    fromGcj->Transformation(x, y);
    std::printf(" -> back (%.9f, %.9f)\n", x, y);
}

void Geodesics() {
    LmSmarterPtr<LmSpatialReference> wgs84(new LmSpatialReference(eWGS84));
    const LmGeodesic geodesic(wgs84);
    std::printf("Wellington to Salamanca: %.3f m\n", geodesic.Inverse(174.81, -41.32, -5.50, 40.96, nullptr, nullptr));

    LmGeodesicPolygon octant(wgs84, false);
    octant.AddPoint(0, 0);
    octant.AddPoint(90, 0);
    octant.AddPoint(0, 90);
    double area = 0, perimeter = 0;
    octant.Compute(false, true, &area, &perimeter);
    std::printf("octant of the ellipsoid: area %.6e m2, perimeter %.3f m\n", area, perimeter);
}

void AffineAndItsInverse() {
    // A local grid and the same three corners in Gauss-Krueger coordinates.
    const double local[6] = {0.0, 0.0, 1000.0, 0.0, 0.0, 1000.0};
    const double grid[6] = {500025.75, 3499869.5, 501025.55, 3499881.8, 500013.65, 3500869.8};
    LmSmarterPtr<LmAffineCoordinateTransformation> affine(new LmAffineCoordinateTransformation(local, grid, 6));
    const double* m = affine->Matrix();
    std::printf("\naffine: x' = %.6f x %+.6f y %+.3f, y' = %.6f x %+.6f y %+.3f\n", m[0], m[2], m[4], m[1], m[3],
                m[5]);
    double x = 250.0, y = 750.0;
    affine->Transformation(x, y);
    // Without a precision object the converse's tolerance is a squared distance.
    LmSmarterPtr<LmCoordinateTransformation> converse(new LmConverseCoordinateTransformation(affine, nullptr, 1e-12));
    converse->Transformation(x, y);
    std::printf("(250, 750) -> grid -> back by the numeric inverse: (%.6f, %.6f)\n", x, y);
}

}  // namespace

int main() {
    const bool allProjected = ProjectTypicalRequest();
    OffsetRoundTrip();
    Geodesics();
    AffineAndItsInverse();
    return allProjected ? 0 : 1;
}
