// The typical request: project 10,000 interleaved WGS 84 points (x = longitude,
// y = latitude, step 2) to UTM zone 50N, once serially and once in parallel.
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

}  // namespace

int main() {
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
    return serialOk && parallelOk && serial == parallel ? 0 : 1;
}
