#include <lmspatialreference/coordinatetransformation.h>

#include <gtest/gtest.h>

using namespace Lumora::Kernel;

namespace {

// Adds 100 to x and reports a chosen result.
class Marker : public LmCoordinateTransformation {
public:
    using LmCoordinateTransformation::Transformation;
    explicit Marker(bool result) : m_result(result) {}
    bool Transformation(double* x, double*, double*, int count, int step) override {
        for (int i = 0; i < count; ++i) x[i * step] += 100.0;
        return m_result;
    }

private:
    bool m_result;
};

TEST(Combination, MembersApplyInTheOrderAdded) {
    // Translate then rotate differs from rotate then translate.
    LmCoordinateTransformationCombination translateThenRotate;
    translateThenRotate.Add(new LmAffineCoordinateTransformation(1.0, 0.0));
    translateThenRotate.Add(new LmAffineCoordinateTransformation(0.0, 0.0, 90.0));
    double x = 0.0, y = 0.0;
    EXPECT_TRUE(translateThenRotate.Transformation(x, y));
    EXPECT_NEAR(x, 0.0, 1e-15);
    EXPECT_NEAR(y, 1.0, 1e-15);
}

TEST(Combination, StopsAtTheFirstFailingOrNullMemberAndHoldsItsMembers) {
    LmSmarterPtr<LmCoordinateTransformation> succeeding(new Marker(true));
    {
        LmCoordinateTransformationCombination chain, empty, withNull;
        chain.Add(succeeding);
        chain.Add(new Marker(false));
        chain.Add(succeeding);
        EXPECT_EQ(succeeding->RefCount(), 3);
        double xy[4] = {0, 0, 1, 1};
        EXPECT_FALSE(chain.Transformation(xy, 2, 2));
        EXPECT_EQ(xy[0], 200.0);
        EXPECT_EQ(xy[2], 201.0);
        EXPECT_EQ(xy[3], 1.0);
        EXPECT_TRUE(empty.Transformation(xy, 2, 2));  // an empty chain succeeds without changes
        EXPECT_EQ(xy[0], 200.0);
        withNull.Add(succeeding);
        withNull.Add(nullptr);
        EXPECT_FALSE(withNull.Transformation(xy, 2, 2));  // a null member fails instead of crashing
        EXPECT_EQ(xy[0], 300.0);
    }
    EXPECT_EQ(succeeding->RefCount(), 1);
}

}  // namespace
