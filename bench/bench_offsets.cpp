// Points per second of the China offset transformations: single-point calls,
// a batch on a team of one thread (the serial cost per point) and a batch on
// the default team.
#include <lmspatialreference/coordinatetransformation.h>

#include <benchmark/benchmark.h>
#include <omp.h>

#include <vector>

using namespace Lumora::Kernel;

namespace {

constexpr int kPoints = 100000;

// Points spread over China, interleaved x, y; offset forward when asked so
// that the reverse transformations get realistic input.
std::vector<double> _Points(LmCoordinateTransformation* forward) {
    std::vector<double> xy(2 * kPoints);
    for (int i = 0; i < kPoints; ++i) {
        xy[2 * i] = 75.0 + 60.0 * ((i * 7919) % kPoints) / kPoints;
        xy[2 * i + 1] = 18.0 + 35.0 * i / kPoints;
    }
    if (forward != nullptr) forward->Transformation(xy.data(), kPoints, 2);
    return xy;
}

LmSmarterPtr<LmCoordinateTransformation> _Make(int which) {
    switch (which) {
        case 0: return new LmWGS84ToGCJ02CoordinateTransformation;
        case 1: return new LmGCJ02ToWGS84CoordinateTransformation(0.001);
        default: return new LmBD09ToWGS84CoordinateTransformation(0.001);
    }
}

LmSmarterPtr<LmCoordinateTransformation> _ForwardOf(int which) {
    if (which == 1) return new LmWGS84ToGCJ02CoordinateTransformation;
    if (which == 2) return new LmWGS84ToBD09CoordinateTransformation;
    return nullptr;
}

const char* const kNames[] = {"WGS84->GCJ02", "GCJ02->WGS84", "BD09->WGS84"};

// Arguments: transformation, team size (0: the default team).
void BM_Batch(benchmark::State& state) {
    const int which = static_cast<int>(state.range(0));
    const int threads = static_cast<int>(state.range(1));
    const int previous = omp_get_max_threads();
    if (threads > 0) omp_set_num_threads(threads);
    LmSmarterPtr<LmCoordinateTransformation> transformation = _Make(which);
    const std::vector<double> source = _Points(_ForwardOf(which));
    std::vector<double> xy(source.size());
    for (auto _ : state) {
        state.PauseTiming();
        xy = source;
        state.ResumeTiming();
        transformation->Transformation(xy.data(), kPoints, 2);
        benchmark::DoNotOptimize(xy.data());
    }
    omp_set_num_threads(previous);
    state.SetItemsProcessed(state.iterations() * kPoints);
    state.SetLabel(std::string(kNames[which]) + (threads > 0 ? ", 1 thread" : ", default team"));
}
BENCHMARK(BM_Batch)->ArgsProduct({{0, 1, 2}, {1, 0}})->Unit(benchmark::kMillisecond)->UseRealTime();

// Each call carries one point, so each pays for opening a parallel region.
void BM_SinglePointCalls(benchmark::State& state) {
    const int which = static_cast<int>(state.range(0));
    LmSmarterPtr<LmCoordinateTransformation> transformation = _Make(which);
    const std::vector<double> source = _Points(_ForwardOf(which));
    int i = 0;
    for (auto _ : state) {
        double x = source[2 * i], y = source[2 * i + 1];
        transformation->Transformation(x, y);
        benchmark::DoNotOptimize(x);
        benchmark::DoNotOptimize(y);
        i = (i + 1) % kPoints;
    }
    state.SetItemsProcessed(state.iterations());
    state.SetLabel(kNames[which]);
}
BENCHMARK(BM_SinglePointCalls)->DenseRange(0, 2);

}  // namespace
