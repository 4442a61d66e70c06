// Least squares as the minimum of a quadratic form with its first unknown fixed
// to 1: callers sum v * v' over observation rows v = (observed value,
// coefficients...) and read the unknowns of observed + sum(coefficient * x) = 0.
#include <lmspatialreference/fitting.h>

#include "fitting/matrixkitsteps.h"
#include "internal/scratchblock.h"

#include <cfloat>
#include <cstddef>
#include <utility>

namespace {

const double _epsilon = 2.220446049250313e-16;

}  // namespace

int _mat_min2(int n, double* M, int* idx) {
    for (int k = n - 1; k >= 1; --k) {
        // Position 0 is never a candidate: the fixed unknown is not pivoted.
        double best = M[idx[k] * n + idx[k]];
        for (int i = k - 1; i >= 1; --i) {
            const double diagonal = M[idx[i] * n + idx[i]];
            if (diagonal < -_epsilon) return 0;
            if (diagonal > best) {
                best = diagonal;
                std::swap(idx[k], idx[i]);
            }
        }
        if (best < _epsilon) return 1;  // the remaining unknowns are left undetermined

        const int p = idx[k];
        const double f = 1.0 / M[p * n + p];
        for (int i = 0; i < k; ++i)
            for (int j = 0; j < k; ++j) M[idx[i] * n + idx[j]] -= M[p * n + idx[i]] * M[p * n + idx[j]] * f;
    }
    return 1;
}

double mat_min2(int n, const double* M, double* x) {
    const std::size_t elements = static_cast<std::size_t>(n) * n;
    _ScratchBlock block(elements + n);
    double* reduced = block.Doubles();
    int* idx = block.Tail<int>(elements);
    for (std::size_t k = 0; k < elements; ++k) reduced[k] = M[k];
    for (int i = 0; i < n; ++i) idx[i] = i;

    if (!_mat_min2(n, reduced, idx)) return -DBL_MAX;

    if (x) {
        for (int i = 0; i < n; ++i) x[i] = 0.0;
        x[0] = 1.0;
        for (int i = 1; i < n; ++i) {
            const int p = idx[i];
            const double pivot = reduced[p * n + p];
            if (pivot < _epsilon) continue;
            double sum = 0.0;
            for (int t = 0; t < i; ++t) sum += reduced[p * n + idx[t]] * x[idx[t]];
            x[p] = -sum / pivot;
        }
    }
    return reduced[0];
}
