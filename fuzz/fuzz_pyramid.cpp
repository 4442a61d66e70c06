// Reads untrusted bytes as a pyramid's XML text, as both classes, then asks
// every tile question of whatever was read and writes it back. The text the
// library writes must read back to the same text.
#include <lmspatialreference/pyramid.h>

#include <climits>
#include <cstddef>
#include <cstdint>
#include <string>

using namespace Lumora::Kernel;

namespace {

void _Query(LmPyramid& p) {
    const int above = p.TopLevelIndex == INT_MIN ? INT_MIN : p.TopLevelIndex - 1;
    const int below = p.BottomLevelIndex == INT_MAX ? INT_MAX : p.BottomLevelIndex + 1;
    const int levels[] = {p.TopLevelIndex, p.BottomLevelIndex, above, below, 0, 12, INT_MIN, INT_MAX};
    const double points[][2] = {{0, 0}, {p.FromX, p.FromY}, {p.ToX, p.ToY}, {p.XMin, p.YMin},
                                {p.XMax, p.YMax}, {1e300, -1e300}};
    int a, b, c, d;
    double w, x, y, z;
    LmRect out;
    for (int level : levels) {
        for (const auto& pt : points) {
            p.TileIndex(level, pt[0], pt[1], &a, &b, &c, &d);
            p.TileExtent(level, a, b, &w, &x, &y, &z);
            p.TileIndexRange(w, x, y, z, level, &a, &b, &c, &d);
            p.TileExtentRange(level, a, b, c, d, &w, &x, &y, &z);
            p.DevicePosition(LmRect{-5, 512, 0, 512}, a, b, &out, level);
        }
        p.TileIndexRange(p.XMax, p.YMax, p.XMin, p.YMin, level, &a, &b, &c, &d);
        p.DevicePosition(LmRect{}, INT_MAX, INT_MIN, &out, level);
        p.DirectionX(level);
        p.DirectionY(level);
    }
    for (double r : {-1.0, 0.0, 1e-9, 1.0, 156543.03392804097, 1e300}) {
        p.BestLevel(r);
        p.PreciseLevel(r);
    }
}

void _RoundTrip(LmPyramid& p, LmPyramid& again) {
    const LmString first = p.ToString();
    if (!again.FromString(first.c_str())) __builtin_trap();
    const LmString second = again.ToString();
    LmMultiPyramid third(second.c_str());
    if (third.ToString() != second) __builtin_trap();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    LmPyramid plain;
    plain.FromString(text.c_str());
    _Query(plain);
    LmPyramid plainAgain;
    _RoundTrip(plain, plainAgain);

    LmMultiPyramid multi(text.c_str());
    _Query(multi);
    LmMultiPyramid multiAgain;
    _RoundTrip(multi, multiAgain);
    return 0;
}
