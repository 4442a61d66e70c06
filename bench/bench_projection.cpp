// One million WGS 84 points projected to UTM zone 50N: the library's
// projection transformation, point by point and in blocks, serial and
// parallel, beside GDAL's own batch call on the same points, on one thread and
// split between two threads with a clone each (the most a parallel batch can
// get out of GDAL). Compare the items_per_second columns.
//
// The CPU column is the whole process's CPU time, all threads together: on a
// busy machine the real time of a two-thread run says little, but the CPU
// time a batch burns says how well it would use two free cores.
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

void RunLibrary(benchmark::State& state, bool parallel, bool blocks) {
    LmGlobeConfig::Set("SpatialReference/ProjectCoordinateTransformation/Parallel", parallel ? "true" : "false");
    LmGlobeConfig::Set("SpatialReference/ProjectCoordinateTransformation/BlockCalls", blocks ? "true" : "false");
    LmProjectCoordinateTransformation projection(g_wgs84, g_utm50);
    LmGlobeConfig::Clear("SpatialReference/ProjectCoordinateTransformation/Parallel");
    LmGlobeConfig::Clear("SpatialReference/ProjectCoordinateTransformation/BlockCalls");
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

void BM_LibrarySerial(benchmark::State& state) { RunLibrary(state, false, false); }
void BM_LibraryParallel(benchmark::State& state) { RunLibrary(state, true, false); }
void BM_LibraryBlocksSerial(benchmark::State& state) { RunLibrary(state, false, true); }
void BM_LibraryBlocksParallel(benchmark::State& state) { RunLibrary(state, true, true); }

// GDAL's batch call over the points, by `threads` threads that take
// contiguous halves and a clone of the transformation each.
void RunGdal(benchmark::State& state, int threads) {
    OGRCoordinateTransformation* gdal = OGRCreateCoordinateTransformation(g_wgs84->Handle(), g_utm50->Handle());
    std::vector<OGRCoordinateTransformation*> clones(threads);
    for (OGRCoordinateTransformation*& clone : clones) clone = gdal->Clone();
    std::vector<double> x, y;
    std::vector<int> success(kCount);
    for (auto _ : state) {
        state.PauseTiming();
        Source().CopyTo(x, y);
        state.ResumeTiming();
        int failures = 0;
#pragma omp parallel for num_threads(threads) schedule(static) reduction(+ : failures)
        for (int t = 0; t < threads; ++t) {
            const int begin = static_cast<int>(static_cast<long long>(kCount) * t / threads);
            const int end = static_cast<int>(static_cast<long long>(kCount) * (t + 1) / threads);
            if (!clones[t]->Transform(end - begin, x.data() + begin, y.data() + begin, nullptr,
                                      success.data() + begin))
                ++failures;
        }
        if (failures) state.SkipWithError("failed");
        benchmark::DoNotOptimize(x.data());
    }
    state.SetItemsProcessed(state.iterations() * kCount);
    for (OGRCoordinateTransformation* clone : clones) OGRCoordinateTransformation::DestroyCT(clone);
    OGRCoordinateTransformation::DestroyCT(gdal);
}

void BM_GdalBatch(benchmark::State& state) { RunGdal(state, 1); }
void BM_GdalBatchTwoThreads(benchmark::State& state) { RunGdal(state, 2); }

}  // namespace

BENCHMARK(BM_GdalBatch)->Unit(benchmark::kMillisecond)->UseRealTime()->MeasureProcessCPUTime();
BENCHMARK(BM_LibrarySerial)->Unit(benchmark::kMillisecond)->UseRealTime()->MeasureProcessCPUTime();
BENCHMARK(BM_LibraryParallel)->Unit(benchmark::kMillisecond)->UseRealTime()->MeasureProcessCPUTime();
BENCHMARK(BM_LibraryBlocksSerial)->Unit(benchmark::kMillisecond)->UseRealTime()->MeasureProcessCPUTime();
BENCHMARK(BM_LibraryBlocksParallel)->Unit(benchmark::kMillisecond)->UseRealTime()->MeasureProcessCPUTime();
BENCHMARK(BM_GdalBatchTwoThreads)->Unit(benchmark::kMillisecond)->UseRealTime()->MeasureProcessCPUTime();
