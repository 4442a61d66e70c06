#include <lmspatialreference/coordinatetransformation.h>

#include "coordinatetransformation/iterativeinversesteps.h"

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

void _Identity2(const double* in, double* out, void*) { out[0] = in[0], out[1] = in[1]; }

// Records every point it is asked for and maps everything to (1, 1).
void _ConstantRecording(const double* in, double* out, void* context) {
    static_cast<std::vector<std::vector<double>>*>(context)->push_back({in[0], in[1]});
    out[0] = out[1] = 1.0;
}

// A contraction with a fixed point the refinement reaches by itself.
void _GentleShear(const double* in, double* out, void*) {
    out[0] = in[0] + 0.1 * std::sin(in[1]);
    out[1] = in[1] + 0.1 * std::cos(in[0]);
}

TEST(XymapR1, ReturnsAtOnceOnAFitStallsUntouchedOnNoBetterCandidateAndConvergesOnAContraction) {
    const double fits[2] = {2.0, 4.0}, stalls[2] = {2.0, 2.0}, shear[2] = {0.3, -0.2};
    double fitting[2] = {1.0, 2.0 + 1e-7}, stalling[2] = {0.0, 0.0}, contracting[2] = {0.3, -0.2};
    int fitCalls = 0, stallCalls = 0;
    EXPECT_TRUE(_xymap_r_1(2, fits, fitting, _Double, 1e-12, &fitCalls));
    EXPECT_TRUE(fitCalls == 1 && fitting[1] == 2.0 + 1e-7);
    EXPECT_FALSE(_xymap_r_1(2, stalls, stalling, _Double, 1e-12, &stallCalls));
    EXPECT_TRUE(stallCalls == 2 && stalling[0] == 0.0 && stalling[1] == 0.0);
    ASSERT_TRUE(_xymap_r_1(2, shear, contracting, _GentleShear, 1e-24, nullptr));
    double mapped[2];
    _GentleShear(contracting, mapped, nullptr);
    EXPECT_LE(_dis2(2, shear, mapped), 1e-24);
}

TEST(XymapR2, ProbesLastComponentFirstAndHalvesTheStepTenTimes) {
    std::vector<std::vector<double>> probes;
    const double target[2] = {0.0, 0.0};
    double estimate[2] = {5.0, 7.0};
    EXPECT_FALSE(_xymap_r_2(2, target, estimate, _ConstantRecording, &probes));
    EXPECT_TRUE(estimate[0] == 5.0 && estimate[1] == 7.0);
    // One evaluation of the estimate, then four probes in each of ten passes.
    ASSERT_EQ(probes.size(), 1u + 10u * 4u);
    double half = std::sqrt(2.0) / 2.0;  // the residual distance is sqrt(2)
    for (int pass = 0; pass < 10; ++pass, half /= 2.0) {
        const std::vector<double>* p = &probes[1 + 4 * pass];
        const double expected[4][2] = {{5.0, 7.0 + half}, {5.0, 7.0 - half}, {5.0 + half, 7.0}, {5.0 - half, 7.0}};
        for (int k = 0; k < 4; ++k) {
            EXPECT_DOUBLE_EQ(p[k][0], expected[k][0]) << "pass " << pass << " probe " << k;
            EXPECT_DOUBLE_EQ(p[k][1], expected[k][1]) << "pass " << pass << " probe " << k;
        }
    }
}

TEST(XymapR2, AmongEqualImprovementsTheFirstProbedWins) {
    // From (0, 0) toward (1, 1) the moves +y and +x improve equally; +y is probed first.
    const double target[2] = {1.0, 1.0};
    double estimate[2] = {0.0, 0.0};
    ASSERT_TRUE(_xymap_r_2(2, target, estimate, _Identity2, nullptr));
    EXPECT_EQ(estimate[0], 0.0);
    EXPECT_DOUBLE_EQ(estimate[1], std::sqrt(2.0) / 2.0);
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
    EXPECT_LE(_dis2(2, target, mapped), eps);
}

TEST(XymapR, FailsOnOversizedPointsWhenNothingImprovesOrOnNaNAndLeavesTheEstimate) {
    int calls = 0;
    double big[5] = {0, 0, 0, 0, 0};
    auto counting = [](const double*, double*, void* context) { ++*static_cast<int*>(context); };
    EXPECT_FALSE(xymap_r(5, big, big, counting, 1e-6, &calls));
    EXPECT_FALSE(_xymap_r_1(5, big, big, counting, 1e-6, &calls));
    EXPECT_FALSE(_xymap_r_2(0, big, big, counting, &calls));
    EXPECT_EQ(calls, 0);
    std::vector<std::vector<double>> probes;
    const double target[2] = {0.0, 0.0};
    double estimate[2] = {5.0, 7.0};
    EXPECT_FALSE(xymap_r(2, target, estimate, _ConstantRecording, 1e-6, &probes));
    EXPECT_TRUE(estimate[0] == 5.0 && estimate[1] == 7.0);
    auto nan = [](const double*, double* out, void*) { out[0] = out[1] = std::nan(""); };
    EXPECT_FALSE(xymap_r(2, target, estimate, nan, 1e-6, nullptr));
    EXPECT_TRUE(estimate[0] == 5.0 && estimate[1] == 7.0);
}

}  // namespace
