// LU factorisation with an index permutation, and the solver and inverse built
// on it. Rows are never moved: row r of the permuted matrix is row idx[r].
#include <lmspatialreference/fitting.h>

#include <cmath>
#include <cstddef>
#include <utility>
#include <vector>

int mat_lu(int n, double* A, int* idx) {
    for (int i = 0; i < n; ++i) idx[i] = i;
    for (int k = 0; k < n; ++k) {
        double largest = 0.0;
        int pivot = k;
        for (int i = k; i < n; ++i) {
            const double magnitude = std::fabs(A[idx[i] * n + k]);
            if (magnitude > largest) {
                largest = magnitude;
                pivot = i;
            }
        }
        std::swap(idx[k], idx[pivot]);
        const double* pivotRow = A + idx[k] * n;
        if (pivotRow[k] == 0.0) return 0;
        for (int i = k + 1; i < n; ++i) {
            double* row = A + idx[i] * n;
            row[k] /= pivotRow[k];
            for (int j = k + 1; j < n; ++j) row[j] -= row[k] * pivotRow[j];
        }
    }
    return 1;
}

void mat_backsubs(int n, const double* LU, double* b, double* x, const int* idx) {
    for (int k = 0; k < n; ++k)
        for (int i = k + 1; i < n; ++i) b[idx[i]] -= LU[idx[i] * n + k] * b[idx[k]];

    if (n < 1) return;
    x[n - 1] = b[idx[n - 1]] / LU[idx[n - 1] * n + n - 1];
    for (int i = n - 2; i >= 0; --i) {
        const double* row = LU + idx[i] * n;
        double sum = 0.0;
        for (int j = i + 1; j < n; ++j) sum += row[j] * x[j];
        x[i] = (b[idx[i]] - sum) / row[i];
    }
}

int mat_solve(int n, double* A, double* b, double* x) {
    if (x == b) return 0;
    std::vector<int> idx(n);
    if (!mat_lu(n, A, idx.data())) return 0;
    mat_backsubs(n, A, b, x, idx.data());
    return 1;
}

int mat_inv(int n, double* A) {
    std::vector<int> idx(n);
    if (!mat_lu(n, A, idx.data())) return 0;
    // Row i of the scratch receives the solution for unit vector i, so the
    // scratch holds the inverse transposed.
    const std::size_t size = static_cast<std::size_t>(n) * n;
    std::vector<double> transposedInverse(size);
    std::vector<double> unit(n);
    for (int i = 0; i < n; ++i) {
        unit.assign(n, 0.0);
        unit[i] = 1.0;
        mat_backsubs(n, A, unit.data(), transposedInverse.data() + i * n, idx.data());
    }
    mat_turn(n, transposedInverse.data(), A);
    return 1;
}
