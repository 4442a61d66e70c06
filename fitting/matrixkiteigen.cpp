// Symmetric eigen-decomposition by Jacobi rotations, always annihilating the
// largest off-diagonal element found through per-row and per-column maxima.
#include <lmspatialreference/fitting.h>

#include "internal/scratchblock.h"

#include <cmath>
#include <cstddef>
#include <utility>

namespace {

const double _epsilon = 2.220446049250313e-16;

// The tables index the strict upper triangle: rowMax[i] (i < n - 1) is the
// column k > i and colMax[j] (j > 0) the row k < j holding the largest
// magnitude; later candidates replace only when strictly larger.
struct _MaximumTables {
    int n;
    const double* A;
    int* rowMax;
    int* colMax;

    double At(int i, int j) const { return std::fabs(A[i * n + j]); }

    void RefreshRow(int i) {
        int best = i + 1;
        for (int k = i + 2; k < n; ++k)
            if (At(i, k) > At(i, best)) best = k;
        rowMax[i] = best;
    }

    void RefreshColumn(int j) {
        int best = 0;
        for (int k = 1; k < j; ++k)
            if (At(k, j) > At(best, j)) best = k;
        colMax[j] = best;
    }

    void Refresh(int index) {
        if (index < n - 1) RefreshRow(index);
        if (index > 0) RefreshColumn(index);
    }

    void LargestElement(int& p, int& q) const {
        p = 0;
        double largest = At(0, rowMax[0]);
        for (int i = 1; i < n - 1; ++i) {
            if (At(i, rowMax[i]) > largest) {
                largest = At(i, rowMax[i]);
                p = i;
            }
        }
        q = rowMax[p];
        for (int j = 1; j < n; ++j) {
            if (At(colMax[j], j) > largest) {
                largest = At(colMax[j], j);
                p = colMax[j];
                q = j;
            }
        }
    }
};

void _rotate(double& u, double& v, double c, double s) {
    const double rotatedU = c * u - s * v;
    v = s * u + c * v;
    u = rotatedU;
}

void _sort_descending(int n, double* V, double* d) {
    for (int i = 0; i < n - 1; ++i) {
        int largest = i;
        for (int k = i + 1; k < n; ++k)
            if (d[k] > d[largest]) largest = k;
        if (largest != i) {
            std::swap(d[i], d[largest]);
            for (int k = 0; k < n; ++k) std::swap(V[i * n + k], V[largest * n + k]);
        }
    }
}

}  // namespace

void Jacobi(int n, double* A, double* V, double* d, void* work) {
    for (int i = 0; i < n; ++i) {
        for (int k = 0; k < n; ++k) V[i * n + k] = i == k ? 1.0 : 0.0;
        d[i] = A[i * n + i];
    }
    if (n < 2) return;

    int* tables = static_cast<int*>(work);
    _MaximumTables maxima{n, A, tables, tables + n};
    for (int i = 0; i < n; ++i) maxima.Refresh(i);

    const long rotationLimit = 30L * n * n;
    for (long rotation = 0; rotation < rotationLimit; ++rotation) {
        int p = 0;
        int q = 0;
        maxima.LargestElement(p, q);
        const double a = A[p * n + q];
        if (std::fabs(a) <= _epsilon) break;

        const double h = (d[q] - d[p]) / 2.0;
        const double g = std::fabs(h) + std::hypot(a, h);
        const double r = std::hypot(a, g);
        const double c = g / r;
        double s = a / r;
        double t = a * a / g;
        if (h < 0.0) {
            s = -s;
            t = -t;
        }
        A[p * n + q] = 0.0;
        d[p] -= t;
        d[q] += t;

        for (int k = 0; k < p; ++k) _rotate(A[k * n + p], A[k * n + q], c, s);
        for (int k = p + 1; k < q; ++k) _rotate(A[p * n + k], A[k * n + q], c, s);
        for (int k = q + 1; k < n; ++k) _rotate(A[p * n + k], A[q * n + k], c, s);
        for (int k = 0; k < n; ++k) _rotate(V[p * n + k], V[q * n + k], c, s);

        // Only p and q are refreshed; other rows' maxima may go stale, which
        // costs at most a smaller-than-largest rotation.
        maxima.Refresh(p);
        maxima.Refresh(q);
    }
    _sort_descending(n, V, d);
}

void mat_eigen(int n, const double* A, double* V, double* d) {
    const std::size_t elements = static_cast<std::size_t>(n) * n;
    _ScratchBlock block(elements + 2 * static_cast<std::size_t>(n));
    double* copy = block.Doubles();
    for (std::size_t k = 0; k < elements; ++k) copy[k] = A[k];
    Jacobi(n, copy, V, d, block.Tail<int>(elements));
}
