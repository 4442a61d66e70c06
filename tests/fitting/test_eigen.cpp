#include <lmspatialreference/fitting.h>

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

namespace {

// Checks A * v = lambda * v for every row of V, orthonormal rows and descending
// eigenvalues.
void _expect_eigen_decomposition(int n, const double* A, const double* V, const double* d, double tolerance) {
    for (int e = 0; e < n; ++e) {
        if (e > 0) {
            EXPECT_GE(d[e - 1], d[e]);
        }
        const double* v = V + e * n;
        for (int i = 0; i < n; ++i) {
            double image = 0.0;
            for (int k = 0; k < n; ++k) image += A[i * n + k] * v[k];
            EXPECT_NEAR(image, d[e] * v[i], tolerance) << "eigenpair " << e << " row " << i;
        }
        for (int f = 0; f < n; ++f) {
            double dot = 0.0;
            for (int k = 0; k < n; ++k) dot += v[k] * V[f * n + k];
            EXPECT_NEAR(dot, e == f ? 1.0 : 0.0, tolerance);
        }
    }
}

}  // namespace

TEST(Eigen, GeneralSymmetricMatrix) {
    const int n = 5;
    const double A[25] = {
        4,   1, 2,   0.5, -1,  //
        1,   3, 0,   1,   2,   //
        2,   0, 5,   1.5, 0,   //
        0.5, 1, 1.5, 2,   1,   //
        -1,  2, 0,   1,   -3,
    };
    std::vector<double> V(n * n), d(n);
    mat_eigen(n, A, V.data(), d.data());
    _expect_eigen_decomposition(n, A, V.data(), d.data(), 1e-12);

    double trace = 0.0, sum = 0.0, product = 1.0;
    for (int i = 0; i < n; ++i) {
        trace += A[i * n + i];
        sum += d[i];
        product *= d[i];
    }
    EXPECT_NEAR(sum, trace, 1e-12);
    EXPECT_NEAR(product, mat_del(n, A), 1e-9);
}

TEST(Eigen, ReadsOnlyTheUpperTriangle) {
    const double upper[9] = {2, -1, 0, 99, 2, -1, -42, 7, 2};
    const double symmetric[9] = {2, -1, 0, -1, 2, -1, 0, -1, 2};
    double V[9], d[3];
    mat_eigen(3, upper, V, d);
    // Closed form of the second-difference matrix: 2 - 2 cos(k pi / 4).
    EXPECT_NEAR(d[0], 2.0 + std::sqrt(2.0), 1e-14);
    EXPECT_NEAR(d[1], 2.0, 1e-14);
    EXPECT_NEAR(d[2], 2.0 - std::sqrt(2.0), 1e-14);
    _expect_eigen_decomposition(3, symmetric, V, d, 1e-14);
}

TEST(Eigen, TwoByTwoClosedFormAndADiagonalMatrixOnlySorted) {
    const double B[4] = {2, 1, 1, 2};
    double W[4], e[2];
    mat_eigen(2, B, W, e);
    EXPECT_NEAR(e[0], 3.0, 1e-15);
    EXPECT_NEAR(e[1], 1.0, 1e-15);
    EXPECT_NEAR(std::fabs(W[0]), std::sqrt(0.5), 1e-15);
    EXPECT_NEAR(W[0], W[1], 1e-15);
    EXPECT_NEAR(W[2], -W[3], 1e-15);

    const double A[9] = {1, 0, 0, 0, 5, 0, 0, 0, 3};
    double V[9], d[3];
    mat_eigen(3, A, V, d);
    EXPECT_EQ(d[0], 5.0);
    EXPECT_EQ(d[1], 3.0);
    EXPECT_EQ(d[2], 1.0);
    const double expectedRows[9] = {0, 1, 0, 0, 0, 1, 1, 0, 0};
    for (int k = 0; k < 9; ++k) EXPECT_EQ(V[k], expectedRows[k]) << k;
}
