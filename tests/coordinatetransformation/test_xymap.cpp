#include <lmspatialreference/coordinatetransformation.h>

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

using namespace Lumora::Kernel;

namespace {

// f(x) = 2x in every component: the fixed-point step x + t - f(x) = t - x
// flips the sign of the residual without shrinking it, so it stalls at once.
void _Double(const double* in, double* out, void* context) {
    if (context != nullptr) ++*static_cast<int*>(context);
    for (int i = 0; i < 2; ++i) out[i] = 2.0 * in[i];
}

// Records every point it is asked for and maps everything to (1, 1).
void _ConstantRecording(const double* in, double* out, void* context) {
    static_cast<std::vector<std::vector<double>>*>(context)->push_back({in[0], in[1]});
    out[0] = out[1] = 1.0;
}

TEST(XymapR, ThePatternSearchUnblocksAStalledRefinement) {
    const double target[2] = {3.0, -5.0};
    double estimate[2] = {0.0, 0.0};
    const double eps = 1e-20;
    EXPECT_TRUE(xymap_r(2, target, estimate, _Double, eps, nullptr));
    EXPECT_NEAR(estimate[0], 1.5, 1e-10);
    EXPECT_NEAR(estimate[1], -2.5, 1e-10);
    double mapped[2];
    _Double(estimate, mapped, nullptr);
    EXPECT_LE(std::pow(mapped[0] - target[0], 2) + std::pow(mapped[1] - target[1], 2), eps);
}

TEST(XymapR, FailsOnOversizedPointsWhenNothingImprovesOrOnNaNAndLeavesTheEstimate) {
    int calls = 0;
    double big[5] = {0, 0, 0, 0, 0};
    auto counting = [](const double*, double*, void* context) { ++*static_cast<int*>(context); };
    EXPECT_FALSE(xymap_r(5, big, big, counting, 1e-6, &calls));
    EXPECT_FALSE(xymap_r(0, big, big, counting, 1e-6, &calls));
    EXPECT_EQ(calls, 0);
    std::vector<std::vector<double>> probes;
    const double target[2] = {0.0, 0.0};
    double estimate[2] = {5.0, 7.0};
    EXPECT_FALSE(xymap_r(2, target, estimate, _ConstantRecording, 1e-6, &probes));
    EXPECT_EQ(estimate[0], 5.0);
    EXPECT_EQ(estimate[1], 7.0);
    // The refinement evaluates the estimate and one candidate; then the pattern
    // search evaluates the estimate and probes the last component first, in
    // ten passes that halve the step from half the residual distance, sqrt(2).
    ASSERT_EQ(probes.size(), 2u + 1u + 10u * 4u);
    double half = std::sqrt(2.0) / 2.0;
    for (int pass = 0; pass < 10; ++pass, half /= 2.0) {
        const std::vector<double>* p = &probes[3 + 4 * pass];
        const double expected[4][2] = {{5.0, 7.0 + half}, {5.0, 7.0 - half}, {5.0 + half, 7.0}, {5.0 - half, 7.0}};
        for (int k = 0; k < 4; ++k) {
            EXPECT_DOUBLE_EQ(p[k][0], expected[k][0]) << "pass " << pass << " probe " << k;
            EXPECT_DOUBLE_EQ(p[k][1], expected[k][1]) << "pass " << pass << " probe " << k;
        }
    }
    auto nan = [](const double*, double* out, void*) { out[0] = out[1] = std::nan(""); };
    EXPECT_FALSE(xymap_r(2, target, estimate, nan, 1e-6, nullptr));
    EXPECT_EQ(estimate[0], 5.0);
    EXPECT_EQ(estimate[1], 7.0);
}

}  // namespace
