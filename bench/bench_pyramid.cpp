// Per-call cost of the tile questions a tile server asks per request: the tile
// of a point and the tiles of a rectangle, on both stock pyramids and on a
// multi-pyramid with three sub-pyramids, beside the plain XYZ formula written
// inline (the floor of two divisions) as the floor of what a call can cost.
#include <lmspatialreference/pyramid.h>

#include <benchmark/benchmark.h>

#include <cmath>
#include <vector>

using namespace Lumora::Kernel;

namespace {

constexpr int kPoints = 4096;
constexpr double kR = 20037508.342789199;

// Web Mercator with its levels 8..10, 11..14 and 15..18 taken over by
// sub-pyramids of the same geometry, so every answer matches the stock one
// and only the delegation differs.
const char* const kMulti =
    "<Pyramid><TopTile FromX=\"-20037508.342789199\" FromY=\"20037508.342789199\" ToX=\"20037508.342789199\" "
    "ToY=\"-20037508.342789199\"/><Specials>"
    "<Pyramid><Level TopLevelIndex=\"8\" BottomLevelIndex=\"10\"/><TopTile FromX=\"-20037508.342789199\" "
    "FromY=\"20037508.342789199\" ToX=\"-19880965.30886116\" ToY=\"19880965.30886116\"/></Pyramid>"
    "<Pyramid><Level TopLevelIndex=\"11\" BottomLevelIndex=\"14\"/><TopTile FromX=\"-20037508.342789199\" "
    "FromY=\"20037508.342789199\" ToX=\"-20017940.463548195\" ToY=\"20017940.463548195\"/></Pyramid>"
    "<Pyramid><Level TopLevelIndex=\"15\" BottomLevelIndex=\"18\"/><TopTile FromX=\"-20037508.342789199\" "
    "FromY=\"20037508.342789199\" ToX=\"-20036285.350336637\" ToY=\"20036285.350336637\"/></Pyramid>"
    "</Specials></Pyramid>";

LmSmarterPtr<LmPyramid> _Pyramid(int which) {
    if (which == 0) return LmPyramid::WellknownPyramid(eGeographicPyramid);
    if (which == 1) return LmPyramid::WellknownPyramid(eWebMercatorPyramid);
    return LmSmarterPtr<LmPyramid>(new LmMultiPyramid(kMulti));
}

// Points spread over the pyramid's data range.
std::vector<double> _Points(const LmPyramid& p) {
    std::vector<double> xy(2 * kPoints);
    for (int i = 0; i < kPoints; ++i) {
        xy[2 * i] = p.XMin + (p.XMax - p.XMin) * ((i * 7919) % kPoints + 0.5) / kPoints;
        xy[2 * i + 1] = p.YMin + (p.YMax - p.YMin) * (i + 0.5) / kPoints;
    }
    return xy;
}

const char* const kNames[] = {"geographic", "webmercator", "multi(3 sub)"};

// Arguments: pyramid, level.
void BM_TileIndex(benchmark::State& state) {
    auto p = _Pyramid(static_cast<int>(state.range(0)));
    const int level = static_cast<int>(state.range(1));
    const std::vector<double> xy = _Points(*p);
    int row, col, px, py, i = 0;
    for (auto _ : state) {
        p->TileIndex(level, xy[2 * i], xy[2 * i + 1], &row, &col, &px, &py);
        benchmark::DoNotOptimize(row + col + px + py);
        i = (i + 1) % kPoints;
    }
    state.SetLabel(kNames[state.range(0)]);
}
BENCHMARK(BM_TileIndex)->ArgsProduct({{0, 1, 2}, {3, 16}});

void BM_TileIndexRange(benchmark::State& state) {
    auto p = _Pyramid(static_cast<int>(state.range(0)));
    const int level = static_cast<int>(state.range(1));
    const std::vector<double> xy = _Points(*p);
    const double w = (p->XMax - p->XMin) / 1000;
    int r0, c0, r1, c1, i = 0;
    for (auto _ : state) {
        p->TileIndexRange(xy[2 * i], xy[2 * i + 1] - w, xy[2 * i] + w, xy[2 * i + 1], level, &r0, &c0, &r1, &c1);
        benchmark::DoNotOptimize(r0 + c0 + r1 + c1);
        i = (i + 1) % kPoints;
    }
    state.SetLabel(kNames[state.range(0)]);
}
BENCHMARK(BM_TileIndexRange)->ArgsProduct({{0, 1, 2}, {3, 16}});

// The XYZ formula inline, on Web Mercator metres.
void BM_InlineXyz(benchmark::State& state) {
    const int level = static_cast<int>(state.range(0));
    const std::vector<double> xy = _Points(*_Pyramid(1));
    const double span = 2 * kR / std::pow(2.0, level);
    int i = 0;
    for (auto _ : state) {
        const int col = static_cast<int>(std::floor((xy[2 * i] + kR) / span));
        const int row = static_cast<int>(std::floor((kR - xy[2 * i + 1]) / span));
        benchmark::DoNotOptimize(row + col);
        i = (i + 1) % kPoints;
    }
}
BENCHMARK(BM_InlineXyz)->Arg(3)->Arg(16);

void BM_BestLevel(benchmark::State& state) {
    auto p = _Pyramid(static_cast<int>(state.range(0)));
    const double r = (p->ToX - p->FromX) / 256 / 1000;
    for (auto _ : state) benchmark::DoNotOptimize(p->BestLevel(r) + p->PreciseLevel(r));
    state.SetLabel(kNames[state.range(0)]);
}
BENCHMARK(BM_BestLevel)->DenseRange(0, 2);

}  // namespace
