#include <lmspatialreference/coordinatetransformation.h>

#include <gtest/gtest.h>

#include <atomic>
#include <cmath>
#include <vector>

using namespace Lumora::Kernel;

namespace {

// Returns a fixed tolerance and counts its calls, which come from many threads.
class FixedPrecision : public LmCoordinatePrecision {
public:
    explicit FixedPrecision(double tolerance) : m_tolerance(tolerance) {}
    double PointPrecision(double, double, double defaultTolerance) override {
        ++calls;
        lastDefault = defaultTolerance;
        return m_tolerance;
    }
    std::atomic<int> calls{0};
    std::atomic<double> lastDefault{0.0};

private:
    double m_tolerance;
};

// A smooth non-linear forward map with a known inverse.
class Cubic : public LmCoordinateTransformation {
public:
    using LmCoordinateTransformation::Transformation;
    bool Transformation(double* x, double* y, double*, int count, int step) override {
        for (int i = 0; i < count; ++i) {
            const double u = x[i * step];
            const double v = y[i * step];
            x[i * step] = u + 0.01 * u * u * u;
            y[i * step] = v + 0.1 * u;
        }
        return true;
    }
};

}  // namespace

TEST(Converse, InvertsANonLinearMapWithinTheTolerance) {
    LmSmarterPtr<LmCoordinateTransformation> forward(new Cubic);
    const double distance = 1e-7;
    LmConverseCoordinateTransformation converse(forward, nullptr, distance * distance);
    std::vector<double> points = {1.5, 2.0, -2.0, 0.5, 0.25, -3.0};
    std::vector<double> images(points.size());
    forward->Transformation(points.data(), 3, 2, images.data());
    std::vector<double> inverted = images;
    EXPECT_TRUE(converse.Transformation(inverted.data(), 3, 2));
    for (std::size_t k = 0; k < points.size(); k += 2) {
        double image[2];
        forward->Transformation(&inverted[k], 1, 2, image);
        EXPECT_LE(std::hypot(image[0] - images[k], image[1] - images[k + 1]), distance) << k;
        EXPECT_NEAR(inverted[k], points[k], 1e-6) << k;
        EXPECT_NEAR(inverted[k + 1], points[k + 1], 1e-6) << k;
    }
}

TEST(Converse, WithoutForwardFailsAndChangesNothing) {
    LmConverseCoordinateTransformation converse(nullptr, nullptr, 1e-12);
    double x = 1.0, y = 2.0;
    EXPECT_FALSE(converse.Transformation(x, y));
    EXPECT_EQ(x, 1.0);
    EXPECT_EQ(y, 2.0);
}

TEST(Converse, StoredPrecisionIsSquaredAlreadyButAPrecisionObjectsToleranceIsSquared) {
    // The forward map adds (1, 1), so the first estimate, the point itself, is
    // a squared distance of 2 from where it should map: a squared tolerance of
    // 2 or more accepts it (x stays 5), a smaller positive one refines it to 4,
    // and none that is positive leaves the point alone.
    LmSmarterPtr<LmCoordinateTransformation> forward(new LmAffineCoordinateTransformation(1.0, 1.0));
    const struct {
        double stored;
        bool byObject;
        double objectTolerance;
        double expectedX;
    } cases[] = {{0.0, false, 0, 5.0},  {-1.0, false, 0, 5.0}, {2.0, false, 0, 5.0}, {1.0, false, 0, 4.0},
                 {123.0, true, -1.0, 4.0},  // -1 squared is a usable 1, though -1 stored is not
                 {0.0, true, 1.5, 5.0},     // 1.5 squares to 2.25; taken unsquared it would refine
                 {1.0, true, 0.0, 5.0}};
    for (const auto& c : cases) {
        LmSmarterPtr<FixedPrecision> precision(c.byObject ? new FixedPrecision(c.objectTolerance) : nullptr);
        LmConverseCoordinateTransformation converse(forward, precision, 7.0);
        converse.Precision(c.stored);  // replaces the value given on construction
        double x = 5.0, y = 5.0;
        EXPECT_TRUE(converse.Transformation(x, y));
        EXPECT_NEAR(x, c.expectedX, 1e-12) << c.stored << " " << c.objectTolerance;
        if (c.byObject) {
            EXPECT_EQ(precision->calls.load(), 1);
            EXPECT_EQ(precision->lastDefault.load(), c.stored);  // the stored value is the default handed over
        }
    }
}

TEST(Converse, HoldsItsReferencesUntilItDies) {
    LmSmarterPtr<LmCoordinateTransformation> forward(new LmAffineCoordinateTransformation(1.0, 1.0));
    LmSmarterPtr<FixedPrecision> precision(new FixedPrecision(1.0));
    {
        LmSmarterPtr<LmConverseCoordinateTransformation> converse(
            new LmConverseCoordinateTransformation(forward, precision, 0.0));
        EXPECT_EQ(forward->RefCount(), 2);
        EXPECT_EQ(precision->RefCount(), 2);
    }
    EXPECT_EQ(forward->RefCount(), 1);
    EXPECT_EQ(precision->RefCount(), 1);
}
