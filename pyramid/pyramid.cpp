#include <lmspatialreference/pyramid.h>
#include <lmspatialreference/encoding.h>

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <cstdint>
#include <limits>
#include <typeinfo>

namespace Lumora {
namespace Kernel {

using Utility::LmEncoding;

namespace {

// Truncation toward zero as a cast does, but defined for every double: tile
// numbers of far-away points and of degenerate pyramids saturate instead.
int _ToInt(double v) {
    if (std::isnan(v)) return 0;
    if (v <= static_cast<double>(std::numeric_limits<std::int32_t>::min())) {
        return std::numeric_limits<std::int32_t>::min();
    }
    if (v >= static_cast<double>(std::numeric_limits<std::int32_t>::max())) {
        return std::numeric_limits<std::int32_t>::max();
    }
    return static_cast<int>(v);
}

// +1 or -1 from the sign of a span; 0/0 of a zero span gives -1.
double _Sign(double span) { return span / std::fabs(span); }

// extent / scale^exponent, the span of a level. For the ratio 2 of nearly every
// pyramid, while 2^exponent is a normal double, scaling the exponent gives the
// same correctly rounded quotient without the division's latency, which
// dominates the per-request tile lookups.
double _Span(double extent, double scale, std::int64_t exponent) {
    if (scale == 2.0 && exponent >= -1022 && exponent <= 1022) {
        return std::ldexp(extent, static_cast<int>(-exponent));
    }
    return extent / std::pow(scale, static_cast<double>(exponent));
}

bool _Same(double a, double b) { return a == b || (std::isnan(a) && std::isnan(b)); }

// The pyramid whose ratio gives the spans of `level`, and in *end the last
// level up to `bottom` whose spans come from that same pyramid. The level walks
// use it to stop once the ratio's power has saturated (to 0, infinity or a
// period of two levels), since every further level of the run then repeats the
// last two: a text may declare four billion levels. Only the library's own
// classes are known to take their spans this way; for any other class the
// answer is null and the walk visits every level.
LmPyramid* _SpanSource(LmPyramid* pyramid, std::int64_t level, std::int64_t bottom, std::int64_t* end) {
    *end = level;
    const std::type_info& type = typeid(*pyramid);
    if (type == typeid(LmPyramid)) {
        *end = bottom;
        return pyramid;
    }
    if (type != typeid(LmMultiPyramid)) return nullptr;
    const auto* multi = static_cast<const LmMultiPyramid*>(pyramid);
    std::int64_t last = bottom;
    for (const auto& special : multi->Specials) {
        if (!special) continue;
        if (special->TopLevelIndex > level) {
            last = std::min<std::int64_t>(last, static_cast<std::int64_t>(special->TopLevelIndex) - 1);
        } else if (level <= special->BottomLevelIndex) {
            last = std::min<std::int64_t>(last, special->BottomLevelIndex);
        }
    }
    LmPyramid* source = multi->FindPyramid(static_cast<int>(level));
    if (!source) return (*end = last, pyramid);
    if (typeid(*source) != typeid(LmPyramid)) return nullptr;
    *end = last;
    return source;
}

double _Power(const LmPyramid* source, std::int64_t level) {
    return std::pow(source->ScaleX, static_cast<double>(level - source->TopLevelIndex));
}

// The span of a level in a walk: straight from its known source, which is what
// the virtual call would reach after searching the sub-pyramids at every level.
double _SpanX(LmPyramid* pyramid, LmPyramid* source, std::int64_t level) {
    const int l = static_cast<int>(level);
    return source ? source->LmPyramid::TileSpanX(l, 0, 0) : pyramid->TileSpanX(l, 0, 0);
}

}  // namespace

LmPyramid::LmPyramid() { CreateDefault(); }

LmPyramid::LmPyramid(const char* xml) {
    // A rejected text would otherwise leave the numbers uninitialised.
    CreateDefault();
    FromString(xml);
}

LmPyramid::~LmPyramid() = default;

bool LmPyramid::CreateDefault() {
    TopLevelIndex = 0;
    BottomLevelIndex = 20;
    ScaleX = 2.0;
    ScaleY = 2.0;
    TileSizeX = 256;
    TileSizeY = 256;
    OriginRowIndex = 0;
    OriginColIndex = 0;
    Description = LmEncoding::ToUtf8("金字塔方案");
    PyramidID = "Pyramid0001";
    Name = LmEncoding::ToUtf8("360度");
    FromX = -180.0;
    FromY = 90.0;
    ToX = 180.0;
    ToY = -270.0;
    XMin = -180.0;
    YMin = -90.0;
    XMax = 180.0;
    YMax = 90.0;
    PI = 3.141592653589793;
    Tolerance = 1.1920928955078125e-07;
    return true;
}

double LmPyramid::TileSpanX(int level, double, double) {
    // The level difference is taken in 64 bits: it cannot overflow.
    return _Span(ToX - FromX, ScaleX, static_cast<std::int64_t>(level) - TopLevelIndex);
}

double LmPyramid::TileSpanY(int level, double, double) {
    return _Span(ToY - FromY, ScaleY, static_cast<std::int64_t>(level) - TopLevelIndex);
}

bool LmPyramid::TileIndex(int level, double x, double y, int* row, int* col, int* pixelX, int* pixelY) {
    const double sx = TileSpanX(level, x, y);
    const double sy = TileSpanY(level, x, y);
    const int c = _ToInt(std::floor((x - FromX) / sx) + OriginColIndex);
    const int r = _ToInt(std::floor((y - FromY) / sy) + OriginRowIndex);
    if (col) *col = c;
    if (row) *row = r;
    if (pixelX) {
        const double left = (static_cast<double>(c) - OriginColIndex) * sx + FromX;
        *pixelX = _ToInt(std::floor(std::fabs(x - left) / (std::fabs(sx) / TileSizeX)));
    }
    if (pixelY) {
        // Counted from the far edge and one-based, unlike pixelX: kept as the
        // pyramid's callers expect it.
        const double top = (static_cast<double>(r) - OriginRowIndex) * sy + FromY;
        *pixelY = _ToInt(TileSizeY - std::floor(std::fabs(y - top) / (std::fabs(sy) / TileSizeY)));
    }
    return true;
}

bool LmPyramid::TileExtent(int level, int row, int col, double* xmin, double* ymin, double* xmax,
                           double* ymax) {
    const double sx = TileSpanX(level, 0, 0);
    const double sy = TileSpanY(level, 0, 0);
    const double x1 = (static_cast<double>(col) - OriginColIndex) * sx + FromX;
    const double y1 = (static_cast<double>(row) - OriginRowIndex) * sy + FromY;
    const double x2 = x1 + sx;
    const double y2 = y1 + sy;
    if (xmin) *xmin = std::min(x1, x2);
    if (xmax) *xmax = std::max(x1, x2);
    if (ymin) *ymin = std::min(y1, y2);
    if (ymax) *ymax = std::max(y1, y2);
    return true;
}

bool LmPyramid::TileIndexRange(double xmin, double ymin, double xmax, double ymax, int level, int* minRow,
                               int* minCol, int* maxRow, int* maxCol) {
    int r1 = 0, c1 = 0, r2 = 0, c2 = 0;
    TileIndex(level, xmin + Tolerance, ymin + Tolerance, &r1, &c1, nullptr, nullptr);
    TileIndex(level, xmax - Tolerance, ymax - Tolerance, &r2, &c2, nullptr, nullptr);
    if (minRow) *minRow = std::min(r1, r2);
    if (maxRow) *maxRow = std::max(r1, r2);
    if (minCol) *minCol = std::min(c1, c2);
    if (maxCol) *maxCol = std::max(c1, c2);
    return true;
}

bool LmPyramid::TileExtentRange(int level, int row1, int col1, int row2, int col2, double* xmin, double* ymin,
                                double* xmax, double* ymax) {
    double a[4], b[4];
    TileExtent(level, row1, col1, &a[0], &a[1], &a[2], &a[3]);
    TileExtent(level, row2, col2, &b[0], &b[1], &b[2], &b[3]);
    if (xmin) *xmin = std::min(a[0], b[0]);
    if (ymin) *ymin = std::min(a[1], b[1]);
    if (xmax) *xmax = std::max(a[2], b[2]);
    if (ymax) *ymax = std::max(a[3], b[3]);
    return true;
}

bool LmPyramid::DevicePosition(const LmRect& anchor, int row, int col, LmRect* out, int level) {
    const double dx = _Sign(TileSpanX(level, 0, 0));
    const double dy = _Sign(TileSpanY(level, 0, 0));
    const double startX = dx > 0 ? anchor.left : anchor.right;
    // Map y upward is device y downward.
    const double startY = dy > 0 ? anchor.bottom : anchor.top;
    const int x1 = _ToInt(startX + col * dx * TileSizeX);
    const int x2 = _ToInt(x1 + TileSizeX * dx);
    const int y1 = _ToInt(startY - row * dy * TileSizeY);
    const int y2 = _ToInt(y1 - TileSizeY * dy);
    if (out) {
        out->left = std::min(x1, x2);
        out->right = std::max(x1, x2);
        out->top = std::min(y1, y2);
        out->bottom = std::max(y1, y2);
    }
    return true;
}

int LmPyramid::DirectionX(int level) { return _Sign(TileSpanX(level, 0, 0)) > 0 ? 1 : -1; }

int LmPyramid::DirectionY(int level) { return _Sign(TileSpanY(level, 0, 0)) > 0 ? 1 : -1; }

int LmPyramid::BestLevel(double resolution) {
    int best = TopLevelIndex;
    double minDiff = DBL_MAX;
    const double size = TileSizeX;
    const std::int64_t bottom = BottomLevelIndex;
    for (std::int64_t level = TopLevelIndex; level <= bottom;) {
        std::int64_t end;
        LmPyramid* source = _SpanSource(this, level, bottom, &end);
        double p1 = 0.0, p2 = 0.0;
        for (std::int64_t k = level; k <= end; ++k) {
            // Signed on purpose: a pyramid running west never matches a positive resolution.
            const double diff = std::fabs(_SpanX(this, source, k) / size - resolution);
            if (diff < minDiff) {
                minDiff = diff;
                best = static_cast<int>(k);
            }
            if (!source) continue;
            const double p = _Power(source, k);
            if (k - level >= 2 && _Same(p, p2)) break;
            p2 = p1;
            p1 = p;
        }
        level = end + 1;
    }
    return best;
}

double LmPyramid::PreciseLevel(double resolution) {
    std::int64_t lowLevel = 0;
    double lowRes = 0.0, highRes = 0.0;
    const double size = TileSizeX;
    const std::int64_t bottom = BottomLevelIndex;
    bool stopped = false;
    for (std::int64_t level = TopLevelIndex; level <= bottom && !stopped;) {
        std::int64_t end;
        LmPyramid* source = _SpanSource(this, level, bottom, &end);
        double p1 = 0.0, p2 = 0.0, previous = 0.0;
        for (std::int64_t k = level; k <= end; ++k) {
            const double r = _SpanX(this, source, k) / size;
            if (!(r > resolution)) {
                highRes = r;
                stopped = true;
                break;
            }
            lowLevel = k;
            lowRes = r;
            if (!source) continue;
            const double p = _Power(source, k);
            if (k - level >= 2 && _Same(p, p2)) {
                // The rest of the run alternates between the last two levels,
                // both coarser than the request, up to its end.
                lowLevel = end;
                lowRes = (end - k) % 2 == 0 ? r : previous;
                break;
            }
            previous = r;
            p2 = p1;
            p1 = p;
        }
        level = end + 1;
    }
    if (lowRes == 0.0) return TopLevelIndex;
    if (highRes == 0.0) return BottomLevelIndex;
    // Base 2 whatever ScaleX is: the interpolation assumes halving levels.
    return static_cast<double>(lowLevel) + std::log(lowRes / resolution) / std::log(2.0);
}

LmSmarterPtr<LmPyramid> LmPyramid::WellknownPyramid(LmWellknownPyramid kind) {
    static const char* const kWebMercator =
        "<Pyramid><Basic Description=\"适用于GoogleMap，BingMap等Web地图的金字塔模型\" "
        "PyramidID=\"9dab7487-b3fd-4e84-9e6b-60636d3c85db\" Name=\"Web墨卡托金字塔\"/>"
        "<Level TopLevelIndex=\"0\" BottomLevelIndex=\"20\" ScaleX=\"2\" ScaleY=\"2\"/>"
        "<TileBasic TileSizeX=\"256\" TileSizeY=\"256\" OriginRowIndex=\"0\" OriginColIndex=\"0\"/>"
        "<TopTile FromX=\"-20037508.342789199\" FromY=\"20037508.342789199\" ToX=\"20037508.342789199\" "
        "ToY=\"-20037508.342789199\"/>"
        "<Range XMin=\"-20037508.342789199\" YMin=\"-20037508.342789199\" XMax=\"20037508.342789199\" "
        "YMax=\"20037508.342789199\"/></Pyramid>";
    const LmString text = kind == eWebMercatorPyramid ? LmEncoding::ToUtf8(kWebMercator) : LmString();
    return LmSmarterPtr<LmPyramid>(new LmMultiPyramid(text.c_str()));
}

}  // namespace Kernel
}  // namespace Lumora
