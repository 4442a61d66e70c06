#include <lmspatialreference/fitting.h>

#include <gtest/gtest.h>

#include <unistd.h>

#include <vector>

using Lumora::Kernel::DelLUPMat;
using Lumora::Kernel::InverseMatrix;
using Lumora::Kernel::LUPDecomp;
using Lumora::Kernel::LUPMat;
using Lumora::Kernel::SolveLinearEq;

namespace {

// A matrix with determinant 1 and an integer inverse.
const double kUnimodular[9] = {1, 2, 3, 0, 1, 4, 5, 6, 0};
const double kUnimodularInverse[9] = {-24, 18, 5, 20, -15, -4, -5, 4, 1};

}  // namespace

TEST(LUPDecomp, FactorsReproducePermutedRows) {
    const double A[16] = {2, -1, 0, 3, 4, 1, -2, 0, -6, 2, 1, 1, 1, 5, 3, -2};
    const int n = 4;
    LUPMat lu;
    LUPDecomp(A, n, lu);
    ASSERT_EQ(lu.n, n);
    // Partial pivoting picks -6 (row 2) first.
    EXPECT_EQ(lu.P[0], 2);
    for (int i = 0; i < n; ++i) {
        EXPECT_DOUBLE_EQ(lu.L[i * n + i], 1.0);
        for (int j = 0; j < n; ++j) {
            if (j > i) {
                EXPECT_EQ(lu.L[i * n + j], 0.0);
            }
            if (j < i) {
                EXPECT_EQ(lu.U[i * n + j], 0.0);
            }
            double product = 0.0;
            for (int k = 0; k < n; ++k) product += lu.L[i * n + k] * lu.U[k * n + j];
            EXPECT_NEAR(product, A[lu.P[i] * n + j], 1e-13) << i << "," << j;
        }
    }
    DelLUPMat(lu);

    const double equalMagnitudes[4] = {-2, 1, 2, 3};  // the first row is kept
    LUPDecomp(equalMagnitudes, 2, lu);
    EXPECT_EQ(lu.P[0], 0);
    EXPECT_EQ(lu.P[1], 1);
    DelLUPMat(lu);
    const double tinyPivots[4] = {1e-300, 0, 0, 1e-300};  // tiny but not zero: accepted
    LUPDecomp(tinyPivots, 2, lu);
    EXPECT_EQ(lu.U[0], 1e-300);
    EXPECT_EQ(lu.U[3], 1e-300);
    DelLUPMat(lu);
}

namespace {

// Decomposes with standard output routed to stderr, where death tests look.
void _DecomposeShowingStdout(const double* A, int n) {
    dup2(STDERR_FILENO, STDOUT_FILENO);
    LUPMat lu;
    LUPDecomp(A, n, lu);
}

}  // namespace

TEST(LUPDecompDeathTest, ExactlyZeroPivotColumnEndsTheProcess) {
    const double firstColumnZero[9] = {0, 1, 2, 0, 3, 4, 0, 5, 6};
    EXPECT_EXIT(_DecomposeShowingStdout(firstColumnZero, 3), ::testing::ExitedWithCode(1), "^singular matrix!\n$");
    // Dependent rows leave an exactly zero column only after elimination.
    const double rankOne[4] = {1, 2, 2, 4};
    EXPECT_EXIT(_DecomposeShowingStdout(rankOne, 2), ::testing::ExitedWithCode(1), "^singular matrix!\n$");
}

TEST(SolveLinearEq, SolvesAKnownSystemAndInverts) {
    // x = (1, -2, 3)
    const double b[3] = {1 * 1 + 2 * -2 + 3 * 3, 0 * 1 + 1 * -2 + 4 * 3, 5 * 1 + 6 * -2 + 0 * 3};
    LUPMat lu;
    LUPDecomp(kUnimodular, 3, lu);
    double x[3];
    SolveLinearEq(lu, b, 3, x);
    EXPECT_NEAR(x[0], 1.0, 1e-12);
    EXPECT_NEAR(x[1], -2.0, 1e-12);
    EXPECT_NEAR(x[2], 3.0, 1e-12);
    DelLUPMat(lu);
    double inv[9];
    InverseMatrix(kUnimodular, 3, inv);
    for (int k = 0; k < 9; ++k) EXPECT_NEAR(inv[k], kUnimodularInverse[k], 1e-12) << k;
}

TEST(InverseMatrix, InvertsAPermutationNeedingPivots) {
    // Cyclic permutation scaled per row: the inverse is the transposed
    // permutation with reciprocal scales.
    const double A[9] = {0, 2, 0, 0, 0, 4, 8, 0, 0};
    const double expected[9] = {0, 0, 0.125, 0.5, 0, 0, 0, 0.25, 0};
    double inv[9];
    InverseMatrix(A, 3, inv);
    for (int k = 0; k < 9; ++k) EXPECT_DOUBLE_EQ(inv[k], expected[k]) << k;
}
