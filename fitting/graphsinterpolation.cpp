#include <lmspatialreference/graphsinterpolation.h>

#include <algorithm>
#include <cstddef>

namespace Lumora {
namespace Kernel {

LmGraphsInterpolationCoordinateTransformation::LmGraphsInterpolationCoordinateTransformation(const double* corners,
                                                                                             const double* offsets) {
    std::fill(m_corners, m_corners + 8, 0.0);
    std::fill(m_offsets, m_offsets + 8, 0.0);
    if (corners) std::copy(corners, corners + 8, m_corners);
    if (offsets) std::copy(offsets, offsets + 8, m_offsets);
}

bool LmGraphsInterpolationCoordinateTransformation::Transformation(double* x, double* y, double*, int count,
                                                                   int step) {
    if (count > 0 && (x == nullptr || y == nullptr)) return false;
    // Corner i is (c1[i], c2[i]) with offsets (o1[i], o2[i]).
    const double* c = m_corners;
    const double* o = m_offsets;
    auto c1 = [c](int i) { return c[2 * i]; };
    auto c2 = [c](int i) { return c[2 * i + 1]; };
    auto o1 = [o](int i) { return o[2 * i]; };
    auto o2 = [o](int i) { return o[2 * i + 1]; };
    for (int i = 0; i < count; ++i) {
        const std::ptrdiff_t at = static_cast<std::ptrdiff_t>(i) * step;
        const double px = x[at];
        const double py = y[at];
        const double t0 = o2(0) + (o2(2) - o2(0)) * (c2(2) - py) / (c2(2) - c2(0));
        const double t1 = o2(1) + (o2(3) - o2(1)) * (c2(3) - py) / (c2(3) - c2(1));
        const double t = t0 + (t1 - t0) * (c1(1) - px) / (c1(1) - c1(0));
        const double s0 = o1(0) + (o1(1) - o1(0)) * (c1(1) - px) / (c1(1) - c1(0));
        const double s1 = o1(2) + (o1(3) - o1(2)) * (c1(3) - px) / (c1(3) - c1(2));
        const double s = s0 + (s1 - s0) * (c2(2) - py) / (c2(2) - c2(0));
        x[at] = px + s;
        y[at] = py + t;
    }
    return true;
}

const double* LmGraphsInterpolationCoordinateTransformation::Corners() const { return m_corners; }

const double* LmGraphsInterpolationCoordinateTransformation::Offsets() const { return m_offsets; }

}  // namespace Kernel
}  // namespace Lumora
