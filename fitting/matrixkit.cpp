// Products, transposes and rank-one updates of the C-style matrix kit.
#include <lmspatialreference/fitting.h>

#include <cstddef>
#include <vector>

int mat_add(int n, double* A, const double* x, const double* y, double w) {
    for (int i = 0; i < n; ++i)
        for (int j = 0; j < n; ++j) A[i * n + j] += y[j] * (x[i] * w);
    return n;
}

void mat_turn(int n, const double* A, double* B) {
    std::vector<double> copy;
    if (A == B) {
        copy.assign(A, A + static_cast<std::size_t>(n) * n);
        A = copy.data();
    }
    for (int i = 0; i < n; ++i)
        for (int j = 0; j < n; ++j) B[j * n + i] = A[i * n + j];
}

void mat_mul(int n, const double* A, const double* B, double* C) {
    for (int i = 0; i < n; ++i) {
        for (int j = 0; j < n; ++j) {
            double sum = 0.0;
            for (int k = 0; k < n; ++k) sum += A[i * n + k] * B[k * n + j];
            C[i * n + j] = sum;
        }
    }
}

void mat_vec(int n, const double* A, const double* x, double* y) {
    for (int i = 0; i < n; ++i) y[i] = vec_mul(n, A + i * n, x);
}

double mat_vec_mul(int n, const double* A, const double* x) {
    std::vector<double> image(n);
    mat_vec(n, A, x, image.data());
    return vec_mul(n, x, image.data());
}

void mat_vec_vec(int n, const double* x, const double* y, double* A) {
    for (int i = 0; i < n; ++i)
        for (int j = 0; j < n; ++j) A[i * n + j] += y[j] * x[i];
}
