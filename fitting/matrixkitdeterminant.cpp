// Determinant by full-pivot elimination, recursing on an array of row pointers
// so that removing a row costs one pointer move.
#include <lmspatialreference/fitting.h>

#include "fitting/matrixkitsteps.h"
#include "internal/scratchblock.h"

#include <cmath>
#include <cstddef>

double _mat_del(int n, double** a) {
    if (n == 1) return a[0][0];
    if (n == 2) return a[0][0] * a[1][1] - a[0][1] * a[1][0];

    double largest = 0.0;
    int r = 0;
    int c = 0;
    for (int i = 0; i < n; ++i) {
        for (int j = 0; j < n; ++j) {
            if (std::fabs(a[i][j]) > largest) {
                largest = std::fabs(a[i][j]);
                r = i;
                c = j;
            }
        }
    }
    // An absolute threshold, deliberately independent of the matrix's scale.
    if (largest * largest < 2.220446049250313e-23) return 0.0;

    double pivot = a[r][c];
    for (int i = 0; i < n; ++i) {
        if (i == r) continue;
        vec_oper2(n, a[i], 1.0, a[r], -a[i][c] / pivot, 0.0, a[i]);
        for (int j = c + 1; j < n; ++j) a[i][j - 1] = a[i][j];
    }
    if ((r + c) % 2 == 1) pivot = -pivot;

    if (r == 0) return pivot * _mat_del(n - 1, a + 1);
    if (r != n - 1) {
        // Moving the last row into slot r cycles the n - r - 1 rows from slot r
        // on: an odd permutation exactly when n - r is odd.
        a[r] = a[n - 1];
        if ((n - r) % 2 == 1) pivot = -pivot;
    }
    return pivot * _mat_del(n - 1, a);
}

double mat_del(int n, const double* A) {
    const std::size_t elements = static_cast<std::size_t>(n) * n;
    _ScratchBlock block(elements + n);
    double* copy = block.Doubles();
    double** rows = block.Tail<double*>(elements);
    for (std::size_t k = 0; k < elements; ++k) copy[k] = A[k];
    for (int i = 0; i < n; ++i) rows[i] = copy + i * n;
    return _mat_del(n, rows);
}
