// The checked estimators: they refuse what cannot determine the unknowns
// without ending the process, and otherwise agree bit for bit with the
// classical overloads while adding per-point residuals.
#include "estimation_fixtures.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

using namespace EstimationTests;

namespace {

using Factory = LmCoordinateTransformationFactory;

enum Model { ePlane4, eBursa, ePlane7, ePlane7In3D };
const char* const kModelNames[] = {"plane 4", "Bursa", "plane 7", "plane 7 3D"};

bool Checked(Model model, LmSpatialReference* src, LmSpatialReference* dst, int count, int dim,
             const double* s, const double* t, LmEstimationResult& r) {
    switch (model) {
        case ePlane4: return Factory::ComputePlane4Parameter(count, dim, s, t, r);
        case eBursa: return Factory::ComputeBursa7Parameter(src, dst, count, dim, s, t, r);
        case ePlane7: return Factory::ComputePlane7Parameter(src, dst, count, dim, s, t, r);
        case ePlane7In3D: return Factory::ComputePlane7Parameter3D(src, dst, count, dim, s, t, r);
    }
    return false;
}

double Classical(Model model, LmSpatialReference* src, LmSpatialReference* dst, int count, int dim,
                 const double* s, const double* t, double* p) {
    switch (model) {
        case ePlane4: return Factory::ComputePlane4Parameter(count, dim, s, t, p);
        case eBursa: return Factory::ComputeBursa7Parameter(src, dst, count, dim, s, t, p);
        case ePlane7: return Factory::ComputePlane7Parameter(src, dst, count, dim, s, t, p);
        case ePlane7In3D: return Factory::ComputePlane7Parameter3D(src, dst, count, dim, s, t, p);
    }
    return 0.0;
}

// Source points in Beijing 1954 (plane 4: Gauss-Kruger metres), targets with
// noise, so nothing fits exactly.
void MakePoints(Model model, int count, std::vector<double>& source, std::vector<double>& target) {
    source = ChinaPoints(count);
    if (model == ePlane4) {
        for (std::size_t k = 0; k < source.size(); k += 3) {
            source[k] = 400000.0 + 20000.0 * source[k];
            source[k + 1] = 30000.0 * source[k + 1];
        }
    }
    target = source;
    for (std::size_t k = 0; k < target.size(); ++k) {
        const double shift = model == ePlane4 || model == eBursa ? 5.0 : 1e-5;
        target[k] += shift * (1 + k % 3) + Noise(static_cast<int>(k), shift * 0.01);
    }
}

TEST(CheckedEstimation, AgreesBitForBitAndReportsResiduals) {
    auto beijing1954 = Reference(kBeijing1954);
    auto cgcs2000 = Reference(kCgcs2000);
    for (const Model model : {ePlane4, eBursa, ePlane7, ePlane7In3D}) {
        SCOPED_TRACE(kModelNames[model]);
        const int count = 10;
        std::vector<double> source, target;
        MakePoints(model, count, source, target);
        target[3 * 6] += model == ePlane7 || model == ePlane7In3D ? 1e-3 : 50.0;  // one bad point
        LmEstimationResult result;
        ASSERT_TRUE(Checked(model, beijing1954, cgcs2000, count, 3, source.data(), target.data(), result));
        double p[7];
        const double meanError = Classical(model, beijing1954, cgcs2000, count, 3, source.data(), target.data(), p);
        const std::size_t n = model == ePlane4 ? 4 : 7;
        ASSERT_EQ(result.parameters.size(), n);
        for (std::size_t k = 0; k < n; ++k) EXPECT_EQ(result.parameters[k], p[k]) << k;
        EXPECT_EQ(result.meanError, meanError);
        const int axes = model == ePlane7 ? 2 : 3;
        EXPECT_EQ(result.dimension, axes);
        ASSERT_EQ(result.residuals.size(), std::size_t(count * axes));
        EXPECT_EQ(result.worstPoint, 6);
        // Residuals and mean error measure the same misfit: the sample
        // deviation (count - 1) for plane 4 and Bursa, sqrt(minimum / count)
        // of the horizontal rows for plane 7.
        double squares = 0.0;
        for (std::size_t k = 0; k < result.residuals.size(); ++k) squares += result.residuals[k] * result.residuals[k];
        if (model == ePlane4 || model == eBursa) {
            EXPECT_NEAR(std::sqrt(squares / (count - 1)), meanError, 1e-9 * meanError);
        } else if (model == ePlane7) {
            EXPECT_NEAR(std::sqrt(squares / count), meanError, 1e-6 * meanError);
        }
    }
}

TEST(CheckedEstimation, RefusesTooFewAndDegeneratePointsWithoutEndingTheProcess) {
    auto beijing1954 = Reference(kBeijing1954);
    auto cgcs2000 = Reference(kCgcs2000);
    const double nan = std::numeric_limits<double>::quiet_NaN();
    for (const Model model : {ePlane4, eBursa, ePlane7, ePlane7In3D}) {
        SCOPED_TRACE(kModelNames[model]);
        std::vector<double> source, target;
        MakePoints(model, 12, source, target);
        LmEstimationResult untouched;
        untouched.meanError = 42.0;
        LmEstimationResult r = untouched;
        const int tooFew = model == ePlane4 ? 1 : model == eBursa ? 2 : 3;
        for (int count = 1; count <= tooFew; ++count)
            EXPECT_FALSE(Checked(model, beijing1954, cgcs2000, count, 3, source.data(), target.data(), r)) << count;
        // Twelve copies of one point.
        std::vector<double> same(36), sameTarget(36);
        for (int k = 0; k < 36; ++k) {
            same[k] = source[k % 3];
            sameTarget[k] = target[k % 3];
        }
        EXPECT_FALSE(Checked(model, beijing1954, cgcs2000, 12, 3, same.data(), sameTarget.data(), r));
        // Null arrays, a point that is not a number, and a layout the model cannot read.
        EXPECT_FALSE(Checked(model, beijing1954, cgcs2000, 12, 3, nullptr, target.data(), r));
        std::vector<double> bad = source;
        bad[4] = nan;
        EXPECT_FALSE(Checked(model, beijing1954, cgcs2000, 12, 3, bad.data(), target.data(), r));
        EXPECT_FALSE(Checked(model, beijing1954, cgcs2000, 12, 1, source.data(), target.data(), r));
        EXPECT_EQ(r.meanError, 42.0);
        EXPECT_TRUE(r.parameters.empty());
        EXPECT_TRUE(r.residuals.empty());
    }
}

// Points on one line determine a similarity but not a rotation in space
// about that line.
TEST(CheckedEstimation, CollinearPointsAreRefusedByBursaButNotByThePlaneSimilarity) {
    std::vector<double> line, shifted;
    for (int i = 0; i < 8; ++i) {
        const double t = i * 1250.0;
        line.insert(line.end(), {-2148744.0 + t, 4426641.0 - 2.0 * t, 4044656.0 + 0.5 * t});
        shifted.insert(shifted.end(), {line[3 * i] + 1.0, line[3 * i + 1] - 2.0, line[3 * i + 2] + 3.0});
    }
    LmEstimationResult r;
    EXPECT_FALSE(Factory::ComputeBursa7Parameter(nullptr, nullptr, 8, 3, line.data(), shifted.data(), r));
    EXPECT_TRUE(Factory::ComputePlane4Parameter(8, 3, line.data(), shifted.data(), r));
    // A kilometre off the line every other point, Bursa is determined again.
    for (int i = 1; i < 8; i += 2) line[3 * i + 2] += 1000.0, shifted[3 * i + 2] += 1000.0;
    EXPECT_TRUE(Factory::ComputeBursa7Parameter(nullptr, nullptr, 8, 3, line.data(), shifted.data(), r));
    EXPECT_NEAR(r.parameters[0], 1.0, 1e-3);
}

}  // namespace
