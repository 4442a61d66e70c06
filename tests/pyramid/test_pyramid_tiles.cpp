#include <lmspatialreference/pyramid.h>

#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <cstdint>
#include <random>

using namespace Lumora::Kernel;

namespace {

// The stock Web Mercator half-width. Its unit in the last place is 2^-28, so
// every double in [-R, R] that is a multiple of 2^-28 is an integer in
// "ticks", and the XYZ tile formula can be evaluated exactly in integers.
constexpr double kR = 20037508.342789199;
const std::int64_t kF = static_cast<std::int64_t>(std::ldexp(kR, 28));

// Exact XYZ tile and pixel of a point given in ticks: column from the west
// edge, row from the north edge, pixelX from the tile's west edge, pixelY
// counted one-based from its south edge as the pyramid does.
void _Xyz(int z, std::int64_t x, std::int64_t y, int* row, int* col, int* px, int* py) {
    const __int128 n = static_cast<__int128>(256) << z;
    const __int128 gx = (static_cast<__int128>(x) + kF) * n / (2 * kF);
    const __int128 gy = (static_cast<__int128>(kF) - y) * n / (2 * kF);
    *col = static_cast<int>(gx / 256), *px = static_cast<int>(gx % 256);
    *row = static_cast<int>(gy / 256), *py = 256 - static_cast<int>(gy % 256);
}

LmSmarterPtr<LmPyramid> _WebMercator() { return LmPyramid::WellknownPyramid(eWebMercatorPyramid); }

TEST(PyramidTiles, WebMercatorMatchesTheExactXyzFormula) {
    auto p = _WebMercator();
    std::mt19937_64 random(14);
    std::uniform_int_distribution<std::int64_t> tick(-kF, kF - 1);
    for (int z = 0; z <= 20; ++z) {
        // Random points, then the centre and the top tile's own corner, the
        // boundaries that are doubles exactly (the half-width is odd in ticks).
        std::vector<std::pair<std::int64_t, std::int64_t>> points;
        for (int i = 0; i < 300; ++i) points.emplace_back(tick(random), tick(random));
        for (std::int64_t v : {-kF, std::int64_t{0}}) points.emplace_back(v, -v);
        for (const auto& [tx, ty] : points) {
            const double x = std::ldexp(static_cast<double>(tx), -28), y = std::ldexp(static_cast<double>(ty), -28);
            int row, col, px, py, erow, ecol, epx, epy;
            _Xyz(z, tx, ty, &erow, &ecol, &epx, &epy);
            ASSERT_TRUE(p->TileIndex(z, x, y, &row, &col, &px, &py));
            ASSERT_EQ(std::make_tuple(row, col, px, py), std::make_tuple(erow, ecol, epx, epy))
                << "level " << z << " x " << x << " y " << y;
            // The tile's extent holds the point, up to the rounding of its corners.
            double x0, y0, x1, y1;
            p->TileExtent(z, row, col, &x0, &y0, &x1, &y1);
            EXPECT_LE(x0 - 1e-8, x);
            EXPECT_LT(x, x1 + 1e-8);
            EXPECT_LT(y0 - 1e-8, y);
            EXPECT_LE(y, y1 + 1e-8);
        }
    }
}

// Tile extents and indices at the stock pyramids' edges are known answers in
// tests/data/tiles.known.
TEST(PyramidTiles, DirectionsAndDevicePositionsOfTheStockPyramids) {
    auto web = _WebMercator();
    LmPyramid geo;
    for (LmPyramid* p : {static_cast<LmPyramid*>(web), &geo}) {
        EXPECT_EQ(p->DirectionX(4), 1);
        EXPECT_EQ(p->DirectionY(4), -1);
    }
    LmRect out;
    web->DevicePosition(LmRect{0, 512, 0, 512}, 1, 0, &out, 1);
    EXPECT_EQ(out.left, 0);
    EXPECT_EQ(out.right, 256);
    EXPECT_EQ(out.top, 256);
    EXPECT_EQ(out.bottom, 512);
}

TEST(PyramidTiles, RangeOfOneTileExtentIsThatTileInEitherCornerOrder) {
    auto web = _WebMercator();
    for (int z : {0, 1, 7, 15, 20}) {
        const int n = 1 << z;
        for (int k : {0, n / 3, n - 1}) {
            double x0, y0, x1, y1;
            web->TileExtent(z, k, n - 1 - k, &x0, &y0, &x1, &y1);
            int r[4], s[4];
            web->TileIndexRange(x0, y0, x1, y1, z, &r[0], &r[1], &r[2], &r[3]);
            EXPECT_EQ(std::vector<int>(r, r + 4), (std::vector<int>{k, n - 1 - k, k, n - 1 - k})) << z;
            // Crossed corners turn the shrink into a widening: one more tile each way.
            web->TileIndexRange(x1, y1, x0, y0, z, &s[0], &s[1], &s[2], &s[3]);
            EXPECT_EQ(std::vector<int>(s, s + 4), (std::vector<int>{k - 1, n - 2 - k, k + 1, n - k}));
            double u[4], v[4];
            web->TileExtentRange(z, k, 0, 0, n - 1, &u[0], &u[1], &u[2], &u[3]);
            web->TileExtentRange(z, 0, n - 1, k, 0, &v[0], &v[1], &v[2], &v[3]);
            EXPECT_EQ(std::vector<double>(u, u + 4), std::vector<double>(v, v + 4));
            EXPECT_EQ(u[0], -kR); EXPECT_EQ(u[2], kR); EXPECT_EQ(u[3], kR);
        }
    }
}

TEST(PyramidTiles, BestAndPreciseLevelOnWebMercator) {
    auto web = _WebMercator();
    const double r5 = 2 * kR / 32 / 256;
    EXPECT_EQ(web->BestLevel(r5), 5);
    // Exactly halfway between levels 5 and 6 (exact in the geographic pyramid): the coarser wins.
    EXPECT_EQ(LmPyramid().BestLevel(0.75 * 360 / 256 / 32), 5);
    EXPECT_EQ(web->BestLevel(-1.0), 20);
    EXPECT_EQ(web->BestLevel(1e30), 0);
    EXPECT_EQ(web->PreciseLevel(r5), 5.0);
    EXPECT_NEAR(web->PreciseLevel(r5 / std::sqrt(2.0)), 5.5, 1e-12);
    EXPECT_EQ(web->PreciseLevel(1e30), 0.0);
    EXPECT_EQ(web->PreciseLevel(1e-9), 20.0);
    // The logarithm stays base 2 when the ratio is 3.
    LmPyramid thirds("<Pyramid><Level ScaleX=\"3\"/></Pyramid>");
    EXPECT_NEAR(thirds.PreciseLevel(360.0 / 256 / 1.5), std::log2(1.5), 1e-12);
}

// The levels walked by the spelled-out rules, for comparison with the
// library's walk, which stops early once the spans saturate.
int _BestByEveryLevel(LmPyramid& p, double res) {
    int best = p.TopLevelIndex;
    double minDiff = DBL_MAX;
    for (int l = p.TopLevelIndex; l <= p.BottomLevelIndex; ++l) {
        const double d = std::fabs(p.TileSpanX(l, 0, 0) / p.TileSizeX - res);
        if (d < minDiff) minDiff = d, best = l;
    }
    return best;
}

double _PreciseByEveryLevel(LmPyramid& p, double res) {
    int low = 0;
    double lowRes = 0, highRes = 0;
    for (int l = p.TopLevelIndex; l <= p.BottomLevelIndex; ++l) {
        const double r = p.TileSpanX(l, 0, 0) / p.TileSizeX;
        if (!(r > res)) { highRes = r; break; }
        low = l, lowRes = r;
    }
    if (lowRes == 0.0) return p.TopLevelIndex;
    if (highRes == 0.0) return p.BottomLevelIndex;
    return low + std::log(lowRes / res) / std::log(2.0);
}

TEST(PyramidTiles, LevelSearchesOverThousandsOfLevelsMatchTheFullWalk) {
    const char* levels = "<Level TopLevelIndex=\"-7\" BottomLevelIndex=\"4000\" ScaleX=\"%s\"/>";
    const char* tops[] = {"", "<TopTile ToX=\"inf\"/>", "<TopTile ToX=\"-180\"/>"};
    const char* specials = "<Specials><Pyramid><Level TopLevelIndex=\"3000\" BottomLevelIndex=\"3003\"/>"
                           "<TopTile ToX=\"1e300\"/></Pyramid></Specials>";
    for (const char* scale : {"2", "-2", "1", "0", "-1", "7"})
        for (const char* top : tops)
            for (const char* extra : {"", specials}) {
                char level[128];
                std::snprintf(level, sizeof level, levels, scale);
                const std::string xml = std::string("<Pyramid>") + level + top + extra + "</Pyramid>";
                LmMultiPyramid p(xml.c_str());
                for (double res : {-1.0, 0.0, 1e-300, 1e-3, 1.0, 3e296, 1e308, HUGE_VAL}) {
                    EXPECT_EQ(p.BestLevel(res), _BestByEveryLevel(p, res)) << xml << " " << res;
                    const double precise = p.PreciseLevel(res), expected = _PreciseByEveryLevel(p, res);
                    EXPECT_TRUE(precise == expected || (std::isnan(precise) && std::isnan(expected)))
                        << xml << " " << res << " " << precise << " " << expected;
                }
            }
    // Four billion levels answer at once.
    LmPyramid all("<Pyramid><Level TopLevelIndex=\"-2147483648\" BottomLevelIndex=\"2147483647\"/></Pyramid>");
    EXPECT_EQ(all.BestLevel(360.0 / 256 / 32), -2147483648 + 5);
    EXPECT_EQ(all.PreciseLevel(-1.0), -2147483648.0);
}

}  // namespace
