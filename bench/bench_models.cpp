// Points per second of the factory's Bursa chain (geodetic -> geocentric ->
// Bursa -> geodetic) beside GDAL doing the same seven-parameter datum change
// through a projection transformation with TOWGS84, and of the square fitting
// transformation beside a plain loop over the same polynomial. Real time, as
// some members run their batches on several threads.
#include <lmspatialreference/lmspatialreference.h>

#include <benchmark/benchmark.h>

#include <cmath>
#include <vector>

using namespace Lumora::Kernel;

namespace {

const double kSeven[7] = {-15.4, 118.9, 50.3, 0.81, -1.62, 2.45, 3.1};

// (lon, lat, h) over eastern China.
std::vector<double> _Points(int count) {
    std::vector<double> xyz;
    for (int i = 0; i < count; ++i)
        xyz.insert(xyz.end(), {110.0 + 10.0 * std::fmod(i * 0.618034, 1.0), 25.0 + 10.0 * std::fmod(i * 0.414214, 1.0),
                               50.0 + (i % 97)});
    return xyz;
}

void _Run(benchmark::State& state, LmCoordinateTransformation* t) {
    const int n = static_cast<int>(state.range(0));
    const std::vector<double> points = _Points(n);
    std::vector<double> work(points.size());
    for (auto _ : state) {
        t->Transformation(points.data(), n, 3, work.data());
        benchmark::DoNotOptimize(work.data());
    }
    state.SetItemsProcessed(state.iterations() * n);
}

void BM_BursaChain(benchmark::State& state) {
    LmSmarterPtr<LmSpatialReference> cgcs(new LmSpatialReference(eCGCS2000));
    LmSmarterPtr<LmCoordinateTransformation> t =
        LmCoordinateTransformationFactory::CreateBursa7CoordinateTransformation(cgcs, cgcs, kSeven);
    _Run(state, t);
}

void BM_GdalSevenParameter(benchmark::State& state) {
    LmSmarterPtr<LmSpatialReference> cgcs(new LmSpatialReference(eCGCS2000));
    LmSmarterPtr<LmSpatialReference> wgs84(new LmSpatialReference(eWGS84));
    LmSmarterPtr<LmCoordinateTransformation> t = LmCoordinateTransformationFactory::
        CreateParameterProjectCoordinateTransformation(cgcs, wgs84, eCoordinateFrame7Parameter, kSeven);
    _Run(state, t);
}

const double kA[6] = {0.5, 1e-3, -2e-3, 1e-6, 2e-6, -1e-6};

void BM_SquareFitting(benchmark::State& state) {
    // Fitted on a 4 x 4 grid corrected by kA in x and by nothing in y.
    std::vector<double> src, dst;
    for (int i = 0; i < 16; ++i) {
        const double x = 100.0 * (i % 4), y = 100.0 * (i / 4);
        src.insert(src.end(), {x, y});
        dst.insert(dst.end(), {x + kA[0] + kA[1] * x + kA[2] * y + kA[3] * x * y + kA[4] * x * x + kA[5] * y * y, y});
    }
    LmSmarterPtr<LmCoordinateTransformation> t =
        LmCoordinateTransformationFactory::CreatePlaneFittingCoordinateTransformation(16, 2, src.data(), dst.data());
    _Run(state, t);
}

void BM_PlainPolynomialLoop(benchmark::State& state) {
    const int n = static_cast<int>(state.range(0));
    const std::vector<double> points = _Points(n);
    std::vector<double> work(points.size());
    for (auto _ : state) {
        for (int i = 0; i < n; ++i) {
            const double x = points[3 * i], y = points[3 * i + 1];
            work[3 * i] = x + kA[0] + kA[1] * x + kA[2] * y + kA[3] * x * y + kA[4] * x * x + kA[5] * y * y;
            work[3 * i + 1] = y;
            work[3 * i + 2] = points[3 * i + 2];
        }
        benchmark::DoNotOptimize(work.data());
    }
    state.SetItemsProcessed(state.iterations() * n);
}

}  // namespace

BENCHMARK(BM_BursaChain)->Arg(100000)->UseRealTime();
BENCHMARK(BM_GdalSevenParameter)->Arg(100000)->UseRealTime();
BENCHMARK(BM_SquareFitting)->Arg(100000)->UseRealTime();
BENCHMARK(BM_PlainPolynomialLoop)->Arg(100000)->UseRealTime();
