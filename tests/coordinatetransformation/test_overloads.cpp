#include <lmspatialreference/lmspatialreference.h>

#include <gtest/gtest.h>

using namespace Lumora::Kernel;

namespace {

// Shifts every point by (+1, +2, +3), so tests can see which values were x,
// y and z; it has no reverse of its own, and can be told to fail.
class Shift : public LmCoordinateTransformation {
public:
    using LmCoordinateTransformation::Transformation;

    bool Transformation(double* x, double* y, double* z, int count, int step) override {
        for (int i = 0; i < count; ++i) {
            x[i * step] += 1;
            y[i * step] += 2;
            if (z) z[i * step] += 3;
        }
        return result;
    }
    bool result = true;
};

TEST(TransformationOverloads, InterleavedFormsTakeOnlyDimensionsTwoAndThree) {
    Shift shift;
    double xy[4] = {0, 0, 5, 5}, xyz[6] = {};
    EXPECT_TRUE(shift.Transformation(xy, 2, 2));
    EXPECT_EQ(xy[3], 7);
    EXPECT_TRUE(shift.Transformation(xyz, 2, 3));
    EXPECT_EQ(xyz[5], 3);
    double wide[8] = {1, 2, 3, 4, 5, 6, 7, 8};
    EXPECT_FALSE(shift.Transformation(wide, 2, 4));
    EXPECT_FALSE(shift.Transformation(wide, 2, 1));
    EXPECT_EQ(wide[0], 1);
    EXPECT_EQ(wide[7], 8);
}

TEST(TransformationOverloads, CopyingFormsCopyThenTransformWithStepTwoOrThree) {
    Shift shift;
    const double source[8] = {0, 0, 0, 100, 0, 0, 0, 100};
    double target[8] = {};
    EXPECT_TRUE(shift.Transformation(source, 2, 2, target));
    EXPECT_EQ(source[0], 0);
    EXPECT_EQ(target[0], 1);
    EXPECT_EQ(target[3], 102);
    // Dimension 4 copies 4n doubles but walks them with step 3, so the second
    // "point" starts at the first record's fourth value. This is the contract.
    EXPECT_TRUE(shift.Transformation(source, 2, 4, target));
    const double expected[8] = {1, 2, 3, 101, 2, 3, 0, 100};
    for (int i = 0; i < 8; ++i) EXPECT_EQ(target[i], expected[i]) << i;
    // The primitive's failure is reported after copying.
    shift.result = false;
    EXPECT_FALSE(shift.Transformation(source, 1, 2, target));
    EXPECT_EQ(target[0], 1);
}

TEST(TransformationOverloads, CopyingFormsRefuseBadArgumentsWithoutCopying) {
    Shift shift;
    const double source[4] = {1, 2, 3, 4};
    double target[4] = {9, 9, 9, 9};
    for (bool reverse : {false, true}) {
        auto copy = [&](const double* s, int count, int dimension, double* t) {
            return reverse ? shift.ReverseTransformation(s, count, dimension, t)
                           : shift.Transformation(s, count, dimension, t);
        };
        EXPECT_FALSE(copy(source, 0, 2, target));
        EXPECT_FALSE(copy(source, -3, 2, target));
        EXPECT_FALSE(copy(source, 2, 1, target));
        EXPECT_FALSE(copy(nullptr, 2, 2, target));
        EXPECT_FALSE(copy(source, 2, 2, nullptr));
        EXPECT_FALSE(copy(source, 1 << 30, 4, target));  // more doubles than an int counts
    }
    EXPECT_EQ(target[0], 9);
    EXPECT_EQ(target[3], 9);
}

TEST(TransformationOverloads, ReverseFailsByDefaultAfterCopyingAndReachesAnOverride) {
    Shift shift;
    double x = 1, y = 2;
    EXPECT_FALSE(shift.ReverseTransformation(&x, &y, nullptr, 1, 1));
    EXPECT_EQ(x, 1);
    const double source[6] = {1, 2, 3, 4, 5, 6};
    double target[6] = {};
    EXPECT_FALSE(shift.ReverseTransformation(source, 2, 3, target));
    for (int i = 0; i < 6; ++i) EXPECT_EQ(target[i], source[i]);

    // Bursa has a reverse of its own: a pure translation taken back.
    const double translation[7] = {1, 2, 3, 0, 0, 0, 0};
    EXPECT_TRUE(LmBursa7ParameterGeocentricCoordinateTransformation(translation).ReverseTransformation(source, 2, 3, target));
    const double expected[6] = {0, 0, 0, 3, 3, 3};
    for (int i = 0; i < 6; ++i) EXPECT_DOUBLE_EQ(target[i], expected[i]) << i;
}

}  // namespace
