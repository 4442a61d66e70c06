#include <lmspatialreference/fitting.h>

#include <gtest/gtest.h>

#include <cfloat>
#include <vector>

namespace {

// Accumulates v * v' for observation rows v = (observed, coefficients...).
struct _NormalForm {
    explicit _NormalForm(int n) : n(n), M(n * n, 0.0) {}
    void Add(std::vector<double> row) { mat_vec_vec(n, row.data(), row.data(), M.data()); }
    int n;
    std::vector<double> M;
};

}  // namespace

TEST(QuadraticMinimum, ExactFitGivesZeroAndTheUnknowns) {
    // t = 2 + 3u - 0.5w, written as t + x1 u + x2 w + x3 = 0.
    _NormalForm form(4);
    const double points[][2] = {{0, 0}, {1, 0}, {0, 1}, {2, 3}, {-1, 4}, {5, -2}};
    for (const auto& p : points) form.Add({2 + 3 * p[0] - 0.5 * p[1], p[0], p[1], 1.0});
    double x[4];
    const double minimum = mat_min2(4, form.M.data(), x);
    EXPECT_NEAR(minimum, 0.0, 1e-12);
    EXPECT_EQ(x[0], 1.0);
    EXPECT_NEAR(x[1], -3.0, 1e-12);
    EXPECT_NEAR(x[2], 0.5, 1e-12);
    EXPECT_NEAR(x[3], -2.0, 1e-12);
}

TEST(QuadraticMinimum, LineFitMatchesTheClosedForm) {
    const double xs[] = {0, 1, 2, 3, 4, 5};
    const double ys[] = {1.1, 2.9, 5.2, 7.1, 8.8, 11.3};
    const int count = 6;
    _NormalForm form(3);
    double sx = 0, sy = 0, sxx = 0, sxy = 0;
    for (int k = 0; k < count; ++k) {
        form.Add({-ys[k], xs[k], 1.0});
        sx += xs[k];
        sy += ys[k];
        sxx += xs[k] * xs[k];
        sxy += xs[k] * ys[k];
    }
    const double slope = (count * sxy - sx * sy) / (count * sxx - sx * sx);
    const double intercept = (sy - slope * sx) / count;
    double residual = 0.0;
    for (int k = 0; k < count; ++k) {
        const double e = ys[k] - (slope * xs[k] + intercept);
        residual += e * e;
    }

    double x[3];
    const double minimum = mat_min2(3, form.M.data(), x);
    EXPECT_NEAR(x[1], slope, 1e-12);
    EXPECT_NEAR(x[2], intercept, 1e-12);
    EXPECT_NEAR(minimum, residual, 1e-12);
    EXPECT_NEAR(mat_min2(3, form.M.data(), nullptr), minimum, 0.0);
}

TEST(QuadraticMinimum, UnknownWithoutObservationsStaysZero) {
    _NormalForm form(3);
    form.Add({-3, 1, 0});
    form.Add({-6, 2, 0});
    double x[3] = {9, 9, 9};
    EXPECT_NEAR(mat_min2(3, form.M.data(), x), 0.0, 1e-12);
    EXPECT_NEAR(x[1], 3.0, 1e-12);
    EXPECT_EQ(x[2], 0.0);
}

TEST(QuadraticMinimum, IndefiniteFormIsReportedAndLeavesXAlone) {
    const double M[9] = {1, 0, 0, 0, -1, 0, 0, 0, 1};
    double x[3] = {7, 7, 7};
    EXPECT_EQ(mat_min2(3, M, x), -DBL_MAX);
    EXPECT_EQ(x[0], 7.0);
    EXPECT_EQ(x[2], 7.0);
}

TEST(QuadraticMinimum, FixedUnknownIsNeverAPivot) {
    // Without the constraint the form x0^2 + 4 x0 x1 + 5 x1^2 would pivot on
    // neither; with x0 = 1 the minimum over x1 is at x1 = -2/5 with value 1/5.
    const double M[4] = {1, 2, 2, 5};
    double x[2];
    EXPECT_NEAR(mat_min2(2, M, x), 0.2, 1e-15);
    EXPECT_EQ(x[0], 1.0);
    EXPECT_NEAR(x[1], -0.4, 1e-15);
}
