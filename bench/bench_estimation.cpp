// Control points per second of the four estimators on 10,000 and 1,000,000
// points, so that their cost can be seen to grow linearly. Beside them, PROJ's
// own geodetic-to-geocentric conversion of the same points (the bulk of the
// Bursa estimator's work) and a plain loop summing the plane four-parameter
// normal equations (the least any estimator can do per point). Wall-clock
// time throughout: the geocentric conversions run in parallel.
#include <lmspatialreference/lmspatialreference.h>

#include <benchmark/benchmark.h>
#include <ogr_spatialref.h>

#include <cmath>
#include <memory>
#include <vector>

using namespace Lumora::Kernel;

namespace {

const char* const kBeijing1954 = "+proj=longlat +ellps=krass +no_defs";
const char* const kCgcs2000 = "+proj=longlat +ellps=GRS80 +no_defs";

struct ControlPoints {
    LmSmarterPtr<LmSpatialReference> source{new LmSpatialReference(kBeijing1954, eProj4)};
    LmSmarterPtr<LmSpatialReference> target{new LmSpatialReference(kCgcs2000, eProj4)};
    std::vector<double> from, to;  // (lon, lat, h)
};

// Points over eastern China with targets a few metres off, no exact fit.
ControlPoints _Points(int count) {
    ControlPoints c;
    for (int i = 0; i < count; ++i) {
        c.from.insert(c.from.end(), {110.0 + 10.0 * std::fmod(i * 0.618034, 1.0),
                                     25.0 + 10.0 * std::fmod(i * 0.414214, 1.0), 50.0 + (i % 97)});
        c.to.insert(c.to.end(),
                    {c.from[3 * i] + 1e-5 * (1 + i % 3), c.from[3 * i + 1] - 2e-5, c.from[3 * i + 2] + 3.0});
    }
    return c;
}

void BM_Plane4(benchmark::State& state) {
    const int n = static_cast<int>(state.range(0));
    ControlPoints c = _Points(n);
    double p[7];
    for (auto _ : state) benchmark::DoNotOptimize(LmCoordinateTransformationFactory::ComputePlane4Parameter(
                             n, 3, c.from.data(), c.to.data(), p));
    state.SetItemsProcessed(state.iterations() * n);
}

// The three seven-parameter estimators share one signature.
using SevenParameterEstimator = double (*)(LmSpatialReference*, LmSpatialReference*, int, int, const double*,
                                           const double*, double*);

void _SevenParameters(benchmark::State& state, SevenParameterEstimator estimate) {
    const int n = static_cast<int>(state.range(0));
    ControlPoints c = _Points(n);
    double p[7];
    for (auto _ : state) benchmark::DoNotOptimize(estimate(c.source, c.target, n, 3, c.from.data(), c.to.data(), p));
    state.SetItemsProcessed(state.iterations() * n);
}

void BM_Bursa7(benchmark::State& state) {
    _SevenParameters(state, &LmCoordinateTransformationFactory::ComputeBursa7Parameter);
}

void BM_Plane7(benchmark::State& state) {
    _SevenParameters(state, &LmCoordinateTransformationFactory::ComputePlane7Parameter);
}

void BM_Plane7In3D(benchmark::State& state) {
    _SevenParameters(state, &LmCoordinateTransformationFactory::ComputePlane7Parameter3D);
}

void BM_CheckedBursa7(benchmark::State& state) {
    const int n = static_cast<int>(state.range(0));
    ControlPoints c = _Points(n);
    LmEstimationResult result;
    for (auto _ : state)
        benchmark::DoNotOptimize(LmCoordinateTransformationFactory::ComputeBursa7Parameter(
            c.source, c.target, n, 3, c.from.data(), c.to.data(), result));
    state.SetItemsProcessed(state.iterations() * n);
}

// Both point sets through PROJ's geocentric conversion, one batch call each.
void BM_ProjGeocentricOfBothSets(benchmark::State& state) {
    const int n = static_cast<int>(state.range(0));
    ControlPoints c = _Points(n);
    OGRSpatialReference geodetic, geocentric;
    geodetic.SetAxisMappingStrategy(OAMS_TRADITIONAL_GIS_ORDER);
    geocentric.SetAxisMappingStrategy(OAMS_TRADITIONAL_GIS_ORDER);
    geodetic.importFromProj4(kCgcs2000);
    geocentric.importFromProj4("+proj=geocent +ellps=GRS80 +no_defs");
    std::unique_ptr<OGRCoordinateTransformation> ct(OGRCreateCoordinateTransformation(&geodetic, &geocentric));
    std::vector<double> x(n), y(n), z(n);
    for (auto _ : state) {
        for (int set = 0; set < 2; ++set) {
            const std::vector<double>& from = set == 0 ? c.from : c.to;
            for (int i = 0; i < n; ++i) x[i] = from[3 * i], y[i] = from[3 * i + 1], z[i] = from[3 * i + 2];
            benchmark::DoNotOptimize(ct->Transform(n, x.data(), y.data(), z.data()));
        }
    }
    state.SetItemsProcessed(state.iterations() * n);
}

// The plane four-parameter normal equations summed in a plain loop.
void BM_PlainNormalEquationsLoop(benchmark::State& state) {
    const int n = static_cast<int>(state.range(0));
    ControlPoints c = _Points(n);
    for (auto _ : state) {
        double N[16] = {}, w[4] = {};
        for (int i = 0; i < n; ++i) {
            const double x = c.from[3 * i], y = c.from[3 * i + 1];
            const double rows[2][4] = {{1, 0, x, -y}, {0, 1, y, x}};
            const double l[2] = {c.to[3 * i] - x, c.to[3 * i + 1] - y};
            for (int r = 0; r < 2; ++r)
                for (int a = 0; a < 4; ++a) {
                    for (int b = 0; b < 4; ++b) N[4 * a + b] += rows[r][a] * rows[r][b];
                    w[a] += rows[r][a] * l[r];
                }
        }
        benchmark::DoNotOptimize(N);
        benchmark::DoNotOptimize(w);
    }
    state.SetItemsProcessed(state.iterations() * n);
}

}  // namespace

BENCHMARK(BM_Plane4)->Arg(10000)->Arg(1000000)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_Bursa7)->Arg(10000)->Arg(1000000)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_Plane7)->Arg(10000)->Arg(1000000)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_Plane7In3D)->Arg(10000)->Arg(1000000)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_CheckedBursa7)->Arg(10000)->Arg(1000000)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_ProjGeocentricOfBothSets)->Arg(10000)->Arg(1000000)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_PlainNormalEquationsLoop)->Arg(10000)->Arg(1000000)->Unit(benchmark::kMillisecond)->UseRealTime();
