// The length of a 1,000,000-point polyline: ComputeGeodesic on one thread and
// on the default team, beside a plain serial loop of geod_inverse.
#include <lmspatialreference/geodesics.h>

#include <benchmark/benchmark.h>
#include <geodesic.h>
#include <omp.h>

#include <cmath>
#include <vector>

using namespace Lumora::Kernel;

namespace {

constexpr int kPoints = 1000000;
constexpr double kA = 6378137.0;
constexpr double kInverseF = 298.257223563;

const std::vector<double>& _Polyline() {
    static const std::vector<double> xy = [] {
        std::vector<double> points(2 * kPoints);
        for (int i = 0; i < kPoints; ++i) {
            points[2 * i] = -179.0 + 358.0 * i / kPoints + 0.01 * std::sin(i * 0.37);
            points[2 * i + 1] = 70.0 * std::sin(i * 1e-5) + 0.01 * std::cos(i * 0.91);
        }
        return points;
    }();
    return xy;
}

// Argument: team size (0: the default team).
void BM_ComputeGeodesic(benchmark::State& state) {
    const int threads = static_cast<int>(state.range(0));
    const int previous = omp_get_max_threads();
    if (threads > 0) omp_set_num_threads(threads);
    const LmGeodesic wgs84(kA, kInverseF);
    const std::vector<double>& xy = _Polyline();
    for (auto _ : state) benchmark::DoNotOptimize(wgs84.ComputeGeodesic(xy.data(), 2 * kPoints, 2));
    omp_set_num_threads(previous);
    state.SetItemsProcessed(state.iterations() * (kPoints - 1));
    state.SetLabel(threads > 0 ? "1 thread" : "default team");
}
BENCHMARK(BM_ComputeGeodesic)->Arg(1)->Arg(0)->Unit(benchmark::kMillisecond)->UseRealTime()->MeasureProcessCPUTime();

void BM_PlainGeodInverseLoop(benchmark::State& state) {
    geod_geodesic g;
    geod_init(&g, kA, 1.0 / kInverseF);
    const std::vector<double>& xy = _Polyline();
    for (auto _ : state) {
        double length = 0.0;
        for (int i = 1; i < kPoints; ++i) {
            double s12 = 0.0;
            geod_inverse(&g, xy[2 * i + 1], xy[2 * i], xy[2 * i - 1], xy[2 * i - 2], &s12, nullptr, nullptr);
            length += s12;
        }
        benchmark::DoNotOptimize(length);
    }
    state.SetItemsProcessed(state.iterations() * (kPoints - 1));
}
BENCHMARK(BM_PlainGeodInverseLoop)->Unit(benchmark::kMillisecond)->UseRealTime()->MeasureProcessCPUTime();

}  // namespace
