// The general iterative inverse of a point mapping. It allocates nothing: the
// working vectors live on the stack, which bounds the size of a point.
#include <lmspatialreference/coordinatetransformation.h>

#include "coordinatetransformation/iterativeinversesteps.h"

#include <cmath>

namespace Lumora {
namespace Kernel {

namespace {

// The largest point the stack buffers hold.
constexpr int _maxDimension = 4;

bool _fitsBuffers(int n) { return n >= 1 && n <= _maxDimension; }

}  // namespace

double _dis2(int n, const double* a, const double* b) {
    double sum = 0.0;
    for (int i = n - 1; i >= 0; --i) {
        const double difference = a[i] - b[i];
        sum += difference * difference;
    }
    return sum;
}

bool _xymap_r_1(int n, const double* target, double* estimate, PointMapping f, double eps, void* context) {
    if (!_fitsBuffers(n)) return false;
    double mapped[_maxDimension];
    double candidate[_maxDimension];
    f(estimate, mapped, context);
    double residual = _dis2(n, target, mapped);
    while (!(residual <= eps)) {
        for (int i = n - 1; i >= 0; --i) candidate[i] = estimate[i] + target[i] - mapped[i];
        f(candidate, mapped, context);
        const double candidateResidual = _dis2(n, target, mapped);
        // Written as "not smaller" so that a NaN residual ends the loop too.
        if (!(candidateResidual < residual)) return false;
        for (int i = 0; i < n; ++i) estimate[i] = candidate[i];
        residual = candidateResidual;
    }
    return true;
}

bool _xymap_r_2(int n, const double* target, double* estimate, PointMapping f, void* context) {
    if (!_fitsBuffers(n)) return false;
    double mapped[_maxDimension];
    double trial[_maxDimension];
    for (int i = 0; i < n; ++i) trial[i] = estimate[i];
    f(estimate, mapped, context);
    double best = _dis2(n, target, mapped);
    double step = std::sqrt(best);
    // Probe k moves component k / 2 by half a step, forward when k is odd.
    auto offset = [&step](int k) { return (k % 2 == 1 ? 0.5 : -0.5) * step; };
    for (int pass = 0; pass < 10; ++pass) {
        int bestProbe = -1;
        for (int k = 2 * n - 1; k >= 0; --k) {
            const int j = k / 2;
            trial[j] += offset(k);
            f(trial, mapped, context);
            const double residual = _dis2(n, target, mapped);
            if (residual < best) {
                best = residual;
                bestProbe = k;
            }
            trial[j] = estimate[j];
        }
        if (bestProbe >= 0) {
            estimate[bestProbe / 2] += offset(bestProbe);
            return true;
        }
        step /= 2.0;
    }
    return false;
}

bool xymap_r(int n, const double* target, double* estimate, PointMapping f, double eps, void* context) {
    if (!_fitsBuffers(n)) return false;
    for (;;) {
        if (_xymap_r_1(n, target, estimate, f, eps, context)) return true;
        if (!_xymap_r_2(n, target, estimate, f, context)) return false;
    }
}

}  // namespace Kernel
}  // namespace Lumora
