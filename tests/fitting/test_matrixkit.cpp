#include <lmspatialreference/fitting.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

namespace {

const double kUnimodular[9] = {1, 2, 3, 0, 1, 4, 5, 6, 0};
const double kUnimodularInverse[9] = {-24, 18, 5, 20, -15, -4, -5, 4, 1};

}  // namespace

TEST(VectorKit, AffineCombinationsMayWorkInPlace) {
    double x[3] = {1, 2, 3};
    vec_oper1(3, x, 2.0, -1.0, x);
    EXPECT_EQ(x[0], 1.0);
    EXPECT_EQ(x[2], 5.0);

    const double y[3] = {10, 20, 30};
    vec_oper2(3, x, 3.0, y, 0.5, 1.0, x);
    EXPECT_EQ(x[0], 3 * 1.0 + 5 + 1);
    EXPECT_EQ(x[1], 3 * 3.0 + 10 + 1);
    EXPECT_EQ(x[2], 3 * 5.0 + 15 + 1);
    EXPECT_EQ(vec_mul(3, x, y), 9 * 10 + 20 * 20 + 31 * 30.0);
}

TEST(VectorKit, SetLengthScalesOrRefusesTheZeroVector) {
    double v[2] = {3, 4};
    EXPECT_EQ(vec_set_r(2.0, 2, v), 1);
    EXPECT_DOUBLE_EQ(v[0], 1.2);
    EXPECT_DOUBLE_EQ(v[1], 1.6);

    double zero[2] = {0, 0};
    EXPECT_EQ(vec_set_r(2.0, 2, zero), 0);
    EXPECT_EQ(zero[0], 0.0);

    // Squared length 1e-23 is below the threshold: left unchanged.
    double tiny[2] = {std::sqrt(1e-23), 0};
    EXPECT_EQ(vec_set_r(1.0, 2, tiny), 0);
    EXPECT_EQ(tiny[0], std::sqrt(1e-23));
}

TEST(MatrixKit, TransposesProductsAndRankOneUpdatesKeepRowsAndColumnsApart) {
    double A[9] = {1, 2, 3, 4, 5, 6, 7, 8, 9}, B[9];
    mat_turn(3, A, B);
    mat_turn(3, A, A);  // in place
    const double transposed[9] = {1, 4, 7, 2, 5, 8, 3, 6, 9};
    EXPECT_TRUE(std::equal(A, A + 9, transposed));
    EXPECT_TRUE(std::equal(B, B + 9, transposed));

    double C[9];
    mat_mul(3, kUnimodular, kUnimodularInverse, C);
    for (int k = 0; k < 9; ++k) EXPECT_EQ(C[k], k % 4 == 0 ? 1.0 : 0.0) << k;
    const double x[3] = {1, -1, 2};
    double y[3];
    mat_vec(3, kUnimodular, x, y);
    EXPECT_EQ(y[0], 5.0);
    EXPECT_EQ(y[1], 7.0);
    EXPECT_EQ(y[2], -1.0);
    EXPECT_EQ(mat_vec_mul(3, kUnimodular, x), 5.0 - 7.0 - 2.0);

    // A[i][j] += y[j] * x[i] * w, then without the weight.
    const double u[2] = {1, 2}, v[2] = {3, 5};
    double R[4] = {1, 1, 1, 1};
    EXPECT_EQ(mat_add(2, R, u, v, 0.5), 2);
    EXPECT_EQ(R[0], 2.5);
    EXPECT_EQ(R[1], 3.5);
    EXPECT_EQ(R[2], 4.0);
    EXPECT_EQ(R[3], 6.0);
    mat_vec_vec(2, u, v, R);
    EXPECT_EQ(R[1], 8.5);
    EXPECT_EQ(R[2], 10.0);
}

TEST(MatrixKit, SolveThroughThePermutationIndex) {
    double A[9];
    std::copy(kUnimodular, kUnimodular + 9, A);
    double b[3] = {6, 10, -7};  // A * (1, -2, 3)
    double x[3];
    ASSERT_EQ(mat_solve(3, A, b, x), 1);
    for (int k = 0; k < 3; ++k) EXPECT_NEAR(x[k], (k % 2 ? -1 : 1) * (k + 1.0), 1e-12) << k;
}

TEST(MatrixKit, LuKeepsRowsInPlaceAndPivotsByIndex) {
    double A[4] = {1, 2, 4, 3};
    int idx[2];
    ASSERT_EQ(mat_lu(2, A, idx), 1);
    EXPECT_EQ(idx[0], 1);
    EXPECT_EQ(idx[1], 0);
    // Row 1 (the pivot row) is unchanged in place; row 0 holds the multiplier.
    EXPECT_EQ(A[2], 4.0);
    EXPECT_EQ(A[3], 3.0);
    EXPECT_EQ(A[0], 0.25);
    EXPECT_EQ(A[1], 2.0 - 0.25 * 3.0);
}

TEST(MatrixKit, SolveRefusesSharedRightHandSidesAndSingularMatrices) {
    double A[4] = {2, 0, 0, 2}, b[2] = {1, 1}, x[2];
    EXPECT_EQ(mat_solve(2, A, b, b), 0);
    EXPECT_EQ(A[0], 2.0);
    EXPECT_EQ(A[3], 2.0);
    EXPECT_EQ(b[0], 1.0);  // untouched
    double singular[4] = {1, 2, 2, 4};
    EXPECT_EQ(mat_solve(2, singular, b, x), 0);
}

TEST(MatrixKit, InverseInPlaceOrFailureLeavingFactors) {
    double A[9];
    std::copy(kUnimodular, kUnimodular + 9, A);
    ASSERT_EQ(mat_inv(3, A), 1);
    for (int k = 0; k < 9; ++k) EXPECT_NEAR(A[k], kUnimodularInverse[k], 1e-12) << k;

    double singular[9] = {1, 2, 3, 2, 4, 6, 1, 0, 1};
    const double original[9] = {1, 2, 3, 2, 4, 6, 1, 0, 1};
    EXPECT_EQ(mat_inv(3, singular), 0);
    EXPECT_FALSE(std::equal(original, original + 9, singular));
}

TEST(Determinant, ClosedFormsAndKnownValues) {
    const double identity[9] = {1, 0, 0, 0, 1, 0, 0, 0, 1};
    EXPECT_EQ(mat_del(3, identity), 1.0);
    double A[9];
    std::copy(kUnimodular, kUnimodular + 9, A);
    EXPECT_NEAR(mat_del(3, A), 1.0, 1e-12);
    EXPECT_TRUE(std::equal(A, A + 9, kUnimodular));  // the input is left unchanged

    // Vandermonde matrices: the product of all node differences.
    const double v4[16] = {1, 1, 1, 1, 1, 2, 4, 8, 1, 3, 9, 27, 1, 4, 16, 64};
    EXPECT_NEAR(mat_del(4, v4), 12.0, 1e-10);
    std::vector<double> v5;
    for (int node = 0; node < 5; ++node)
        for (int power = 0, value = 1; power < 5; ++power, value *= node) v5.push_back(value);
    EXPECT_NEAR(mat_del(5, v5.data()), 288.0, 1e-9);

    const double single = -3.5;
    EXPECT_EQ(mat_del(1, &single), -3.5);
}

TEST(Determinant, SignFollowsEveryRowPermutation) {
    // Rows of diag(1, 2, 3, 4) permuted: |det| = 24 with the permutation's sign.
    std::array<int, 4> perm = {0, 1, 2, 3};
    int checked = 0;
    do {
        double A[16] = {};
        for (int i = 0; i < 4; ++i) A[i * 4 + perm[i]] = perm[i] + 1.0;
        int inversions = 0;
        for (int i = 0; i < 4; ++i)
            for (int j = i + 1; j < 4; ++j) inversions += perm[i] > perm[j];
        const double expected = inversions % 2 ? -24.0 : 24.0;
        EXPECT_DOUBLE_EQ(mat_del(4, A), expected) << perm[0] << perm[1] << perm[2] << perm[3];
        ++checked;
    } while (std::next_permutation(perm.begin(), perm.end()));
    EXPECT_EQ(checked, 24);
}

TEST(Determinant, AbsoluteThresholdAppliesFromOrderThree) {
    const double small3[9] = {4e-12, 0, 0, 0, 4e-12, 0, 0, 0, 4e-12};
    EXPECT_EQ(mat_del(3, small3), 0.0);
    const double above3[9] = {5e-12, 0, 0, 0, 1, 0, 0, 0, 1};
    EXPECT_DOUBLE_EQ(mat_del(3, above3), 5e-12);
    const double small2[4] = {1e-13, 0, 0, 1e-13};
    EXPECT_EQ(mat_del(2, small2), 1e-26);
}
