#include "coordinatetransformation/blockprojection.h"

#include "internal/parallelbatch.h"
#include "internal/ogrsupport.h"

#include <algorithm>
#include <cstddef>
#include <vector>

namespace Lumora {
namespace Kernel {

namespace {

// Points per GDAL call in block mode. GDAL's cost per call (a mutex, its
// PROJ context) is then spread over enough points to vanish, while the
// scratch buffers stay small enough for the cache: 4 arrays of this many
// values, about 112 KiB with z.
constexpr int _blockPoints = 4096;

int _TransformOnePoint(OGRCoordinateTransformation* handle, double* x, double* y, double* z) {
    int success = FALSE;
    handle->Transform(1, x, y, z, nullptr, &success);
    return success ? 1 : 0;
}

}  // namespace

int TransformPointByPoint(OGRCoordinateTransformation* handle, double* x, double* y, double* z, int begin, int end,
                          int step) {
    LmQuietGdalErrors quiet;
    int successes = 0;
    for (int i = begin; i < end; ++i) {
        const std::ptrdiff_t at = PointIndex(i, step);
        if (!WithinProjReach(x[at], y[at])) continue;
        successes += _TransformOnePoint(handle, x + at, y + at, z ? z + at : nullptr);
    }
    return successes;
}

int TransformInBlocks(OGRCoordinateTransformation* handle, double* x, double* y, double* z, int begin, int end,
                      int step) {
    if (begin >= end) return 0;
    LmQuietGdalErrors quiet;
    const std::size_t capacity = static_cast<std::size_t>(std::min(end - begin, _blockPoints));
    std::vector<double> bx(capacity), by(capacity), bz(z ? capacity : 0);
    std::vector<int> index(capacity), success(capacity);

    int successes = 0;
    int next = begin;
    while (next < end) {
        // Gather the next points PROJ can be given, keeping their indices.
        int n = 0;
        for (; next < end && n < static_cast<int>(capacity); ++next) {
            const std::ptrdiff_t at = PointIndex(next, step);
            if (!WithinProjReach(x[at], y[at])) continue;
            bx[n] = x[at];
            by[n] = y[at];
            if (z) bz[n] = z[at];
            index[n++] = next;
        }
        if (n == 0) break;

        std::fill(success.begin(), success.begin() + n, FALSE);
        handle->Transform(n, bx.data(), by.data(), z ? bz.data() : nullptr, nullptr, success.data());

        // Successes go back to the caller's arrays. The caller still holds a
        // refused point as given, so the per-point call sees what it would
        // have seen in the per-point mode.
        for (int k = 0; k < n; ++k) {
            const std::ptrdiff_t at = PointIndex(index[k], step);
            if (success[k]) {
                x[at] = bx[k];
                y[at] = by[k];
                if (z) z[at] = bz[k];
                ++successes;
            } else {
                successes += _TransformOnePoint(handle, x + at, y + at, z ? z + at : nullptr);
            }
        }
    }
    return successes;
}

}  // namespace Kernel
}  // namespace Lumora
