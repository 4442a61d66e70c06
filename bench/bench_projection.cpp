// One million WGS 84 points projected to UTM zone 50N: the library's
// projection transformation, serial and parallel, beside GDAL's own batch call
// on the same points. Compare the items_per_second columns.
#include <lmspatialreference/coordinatetransformation.h>

#include <benchmark/benchmark.h>
#include <ogr_spatialref.h>

#include <vector>

using namespace Lumora::Kernel;
using Lumora::Utility::LmGlobeConfig;

namespace {

const int kCount = 1000000;

const char* const kUtm50 =
    R"(PROJCS["WGS 84 / UTM zone 50N",GEOGCS["WGS 84",DATUM["WGS_1984",SPHEROID["WGS 84",6378137,298.257223563]],)"
    R"(PRIMEM["Greenwich",0],UNIT["degree",0.0174532925199433]],PROJECTION["Transverse_Mercator"],)"
    R"(PARAMETER["latitude_of_origin",0],PARAMETER["central_meridian",117],PARAMETER["scale_factor",0.9996],)"
    R"(PARAMETER["false_easting",500000],PARAMETER["false_northing",0],UNIT["metre",1]])";

// Separate longitude and latitude arrays over the zone, restored before each run.
struct Points {
    Points() : lon(kCount), lat(kCount) {
        for (int i = 0; i < kCount; ++i) {
            lon[i] = 114.0 + 6.0 * (i % 1000) / 1000.0;
            lat[i] = 0.0 + 60.0 * (i / 1000) / 1000.0;
        }
    }
    void CopyTo(std::vector<double>& x, std::vector<double>& y) const { x = lon, y = lat; }
    std::vector<double> lon, lat;
};

const Points& Source() {
    static const Points points;
    return points;
}

LmSmarterPtr<LmSpatialReference> g_wgs84(new LmSpatialReference(eWGS84));
LmSmarterPtr<LmSpatialReference> g_utm50(new LmSpatialReference(kUtm50, eWKT));

void RunLibrary(benchmark::State& state, bool parallel) {
    LmGlobeConfig::Set("SpatialReference/ProjectCoordinateTransformation/Parallel", parallel ? "true" : "false");
    LmProjectCoordinateTransformation projection(g_wgs84, g_utm50);
    LmGlobeConfig::Clear("SpatialReference/ProjectCoordinateTransformation/Parallel");
    std::vector<double> x, y;
    for (auto _ : state) {
        state.PauseTiming();
        Source().CopyTo(x, y);
        state.ResumeTiming();
        if (!projection.Transformation(x.data(), y.data(), nullptr, kCount, 1)) state.SkipWithError("failed");
        benchmark::DoNotOptimize(x.data());
    }
    state.SetItemsProcessed(state.iterations() * kCount);
}

void BM_LibrarySerial(benchmark::State& state) { RunLibrary(state, false); }
void BM_LibraryParallel(benchmark::State& state) { RunLibrary(state, true); }

void BM_GdalBatch(benchmark::State& state) {
    OGRCoordinateTransformation* gdal = OGRCreateCoordinateTransformation(g_wgs84->Handle(), g_utm50->Handle());
    std::vector<double> x, y;
    std::vector<int> success(kCount);
    for (auto _ : state) {
        state.PauseTiming();
        Source().CopyTo(x, y);
        state.ResumeTiming();
        if (!gdal->Transform(kCount, x.data(), y.data(), nullptr, success.data())) state.SkipWithError("failed");
        benchmark::DoNotOptimize(x.data());
    }
    state.SetItemsProcessed(state.iterations() * kCount);
    OGRCoordinateTransformation::DestroyCT(gdal);
}

}  // namespace

BENCHMARK(BM_GdalBatch)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_LibrarySerial)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_LibraryParallel)->Unit(benchmark::kMillisecond)->UseRealTime();
