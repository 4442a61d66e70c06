// Points per second of the China offset transformations beside a plain loop
// over the same published formula (the library's exported WGS84ToGCJ02,
// WGS84ToBD09 and xymap_r, called as a user would call them), each on one
// thread and on two. Also single-point calls, which pay for a parallel region
// each.
//
// The CPU column is the whole process's CPU time, all threads together: on a
// busy machine the real time of a two-thread run says little, but the CPU
// time a batch burns says how well it would use two free cores.
#include <lmspatialreference/coordinatetransformation.h>
#include <lmspatialreference/geodesics.h>

#include <benchmark/benchmark.h>
#include <omp.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

using namespace Lumora::Kernel;

namespace {

constexpr int kPoints = 100000;

// The last one is the converse transformation of WGS 84 to GCJ-02: the same
// inverse as GCJ02->WGS84, but with its mapping evaluated through the forward
// transformation's batch call, one point at a time.
enum Which { kToGcj02, kToBd09, kFromGcj02, kFromBd09, kConverseGcj02 };
const char* const kNames[] = {"WGS84->GCJ02", "WGS84->BD09", "GCJ02->WGS84", "BD09->WGS84",
                              "converse of WGS84->GCJ02"};
// The converse's tolerance, a squared distance in degrees squared.
constexpr double kConverseTolerance = 1e-18;

// Points spread over China, interleaved x, y; offset forward for the reverse
// transformations, so that they get realistic input.
const std::vector<double>& _Points(int which) {
    static const std::vector<double> wgs84 = [] {
        std::vector<double> xy(2 * kPoints);
        for (int i = 0; i < kPoints; ++i) {
            xy[2 * i] = 75.0 + 60.0 * ((i * 7919) % kPoints) / kPoints;
            xy[2 * i + 1] = 18.0 + 35.0 * i / kPoints;
        }
        return xy;
    }();
    static const std::vector<double> gcj02 = [] {
        std::vector<double> xy = wgs84;
        LmWGS84ToGCJ02CoordinateTransformation().Transformation(xy.data(), kPoints, 2);
        return xy;
    }();
    static const std::vector<double> bd09 = [] {
        std::vector<double> xy = wgs84;
        LmWGS84ToBD09CoordinateTransformation().Transformation(xy.data(), kPoints, 2);
        return xy;
    }();
    return which == kFromGcj02 || which == kConverseGcj02 ? gcj02 : which == kFromBd09 ? bd09 : wgs84;
}

LmSmarterPtr<LmCoordinateTransformation> _Make(int which) {
    switch (which) {
        case kToGcj02: return new LmWGS84ToGCJ02CoordinateTransformation;
        case kToBd09: return new LmWGS84ToBD09CoordinateTransformation;
        case kFromGcj02: return new LmGCJ02ToWGS84CoordinateTransformation(0.001);
        case kFromBd09: return new LmBD09ToWGS84CoordinateTransformation(0.001);
        default:
            return new LmConverseCoordinateTransformation(new LmWGS84ToGCJ02CoordinateTransformation, nullptr,
                                                          kConverseTolerance);
    }
}

// The formula of each transformation for one point, written out plainly.
void _Forward(PointMapping f, double& x, double& y) {
    const double in[2] = {x, y};
    double out[2];
    f(in, out, nullptr);
    x = out[0];
    y = out[1];
}

void _Reverse(const LmGeodesic& krasovsky, PointMapping f, bool halfLarger, double& x, double& y) {
    double x2 = x, y2 = y;
    krasovsky.Direct(x, y, 0.0, 0.001, &x2, &y2, nullptr);
    const double dx = x - x2, dy = y - y2;
    const double half = std::max(std::fabs(dx), std::fabs(dy)) / 2.0;
    const double eps = halfLarger ? half * half : (dx * dx + dy * dy) / 4.0;
    if (!(eps > 0.0)) return;
    const double target[2] = {x, y};
    double estimate[2] = {x, y};
    if (!xymap_r(2, target, estimate, f, eps, nullptr)) return;
    x = estimate[0];
    y = estimate[1];
}

// WGS 84 to GCJ-02 with its bounds test, as the forward transformation maps a point.
void _BoundedGcj02(const double* in, double* out, void*) {
    out[0] = in[0];
    out[1] = in[1];
    if (!outOfChina(in[0], in[1])) WGS84ToGCJ02(in, out, nullptr);
}

void _Converse(double& x, double& y) {
    const double target[2] = {x, y};
    double estimate[2] = {x, y};
    if (!xymap_r(2, target, estimate, _BoundedGcj02, kConverseTolerance, nullptr)) return;
    x = estimate[0];
    y = estimate[1];
}

void _PlainLoop(int which, double* xy, int threads) {
    const LmGeodesic krasovsky(6378245.0, 298.3);
#pragma omp parallel for num_threads(threads) schedule(static)
    for (int i = 0; i < kPoints; ++i) {
        double& x = xy[2 * i];
        double& y = xy[2 * i + 1];
        switch (which) {
            case kToGcj02:
                if (!outOfChina(x, y)) _Forward(WGS84ToGCJ02, x, y);
                break;
            case kToBd09: _Forward(WGS84ToBD09, x, y); break;
            case kFromGcj02:
                if (!outOfChina(x, y)) _Reverse(krasovsky, WGS84ToGCJ02, true, x, y);
                break;
            case kFromBd09: _Reverse(krasovsky, WGS84ToBD09, false, x, y); break;
            default: _Converse(x, y);
        }
    }
}

std::string _Label(int which, int threads, bool library) {
    return std::string(kNames[which]) + (library ? ", library, " : ", plain loop, ") + std::to_string(threads) +
           (threads == 1 ? " thread" : " threads");
}

// Times run over a fresh copy of the points of the transformation in each
// iteration; the copy is not timed.
template <class Run>
void _Timed(benchmark::State& state, int which, Run run) {
    const std::vector<double>& source = _Points(which);
    std::vector<double> xy(source.size());
    for (auto _ : state) {
        state.PauseTiming();
        xy = source;
        state.ResumeTiming();
        run(xy.data());
        benchmark::DoNotOptimize(xy.data());
    }
    state.SetItemsProcessed(state.iterations() * kPoints);
}

// Arguments: transformation, team size.
void BM_Batch(benchmark::State& state) {
    const int which = static_cast<int>(state.range(0));
    const int threads = static_cast<int>(state.range(1));
    const int previous = omp_get_max_threads();
    omp_set_num_threads(threads);
    LmSmarterPtr<LmCoordinateTransformation> transformation = _Make(which);
    _Timed(state, which, [&](double* xy) { transformation->Transformation(xy, kPoints, 2); });
    omp_set_num_threads(previous);
    state.SetLabel(_Label(which, threads, true));
}

// The same points through the plain loop.
void BM_PlainLoop(benchmark::State& state) {
    const int which = static_cast<int>(state.range(0));
    const int threads = static_cast<int>(state.range(1));
    _Timed(state, which, [&](double* xy) { _PlainLoop(which, xy, threads); });
    state.SetLabel(_Label(which, threads, false));
}

// Library and plain loop alternate, so both meet the same machine load.
void _Pairs(benchmark::internal::Benchmark* b) {
    for (int which = kToGcj02; which <= kConverseGcj02; ++which)
        for (int threads : {1, 2}) b->Args({which, threads});
}
BENCHMARK(BM_PlainLoop)->Apply(_Pairs)->Unit(benchmark::kMillisecond)->UseRealTime()->MeasureProcessCPUTime();
BENCHMARK(BM_Batch)->Apply(_Pairs)->Unit(benchmark::kMillisecond)->UseRealTime()->MeasureProcessCPUTime();

// Each call carries one point, so each pays for opening a parallel region.
void BM_SinglePointCalls(benchmark::State& state) {
    const int which = static_cast<int>(state.range(0));
    LmSmarterPtr<LmCoordinateTransformation> transformation = _Make(which);
    const std::vector<double>& source = _Points(which);
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
BENCHMARK(BM_SinglePointCalls)->DenseRange(kToGcj02, kConverseGcj02);

}  // namespace
