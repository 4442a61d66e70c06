#include <lmspatialreference/coordinatetransformation.h>

#include <gtest/gtest.h>

#include <vector>

using namespace Lumora::Kernel;

namespace {

// Records how the primitive was reached and shifts every point by (+1, +2, +3)
// (or back, in reverse), so tests can see which values were x, y and z.
class Recorder : public LmCoordinateTransformation {
public:
    using LmCoordinateTransformation::ReverseTransformation;
    using LmCoordinateTransformation::Transformation;

    bool Transformation(double* x, double* y, double* z, int count, int step) override {
        return Shift(x, y, z, count, step, 1.0);
    }
    bool ReverseTransformation(double* x, double* y, double* z, int count, int step) override {
        return reversible ? Shift(x, y, z, count, step, -1.0) : LmCoordinateTransformation::ReverseTransformation(x, y, z, count, step);
    }

    struct Call {
        double *x, *y, *z;
        int count, step;
    };
    std::vector<Call> calls;
    bool result = true, reversible = false;

private:
    bool Shift(double* x, double* y, double* z, int count, int step, double sign) {
        calls.push_back({x, y, z, count, step});
        for (int i = 0; i < count; ++i) {
            x[i * step] += sign;
            y[i * step] += 2 * sign;
            if (z) z[i * step] += 3 * sign;
        }
        return result;
    }
};

TEST(TransformationOverloads, EveryFormReachesThePrimitiveWithItsArraysAndStep) {
    Recorder r;
    double x[2] = {0, 10}, y[2] = {0, 20}, px = 0, py = 0, pz = 0, xy[4] = {0, 0, 5, 5}, xyz[6] = {};
    EXPECT_TRUE(r.Transformation(x, y, 2, 1));
    EXPECT_TRUE(r.Transformation(px, py));
    EXPECT_TRUE(r.Transformation(px, py, pz));
    EXPECT_TRUE(r.Transformation(xy, 2, 2));
    EXPECT_TRUE(r.Transformation(xyz, 2, 3));
    const Recorder::Call expected[] = {{x, y, nullptr, 2, 1}, {&px, &py, nullptr, 1, 1}, {&px, &py, &pz, 1, 1},
                                       {xy, xy + 1, nullptr, 2, 2}, {xyz, xyz + 1, xyz + 2, 2, 3}};
    ASSERT_EQ(r.calls.size(), 5u);
    for (int k = 0; k < 5; ++k) {
        const Recorder::Call &got = r.calls[k], &want = expected[k];
        EXPECT_TRUE(got.x == want.x && got.y == want.y && got.z == want.z && got.count == want.count &&
                    got.step == want.step) << "form " << k;
    }
    EXPECT_TRUE(x[1] == 11 && y[1] == 22 && px == 2 && py == 4 && pz == 3 && xy[3] == 7 && xyz[5] == 3);

    // Other dimensions are refused by the interleaved form without a call.
    double wide[8] = {1, 2, 3, 4, 5, 6, 7, 8};
    EXPECT_FALSE(r.Transformation(wide, 2, 4));
    EXPECT_FALSE(r.Transformation(wide, 2, 1));
    EXPECT_EQ(r.calls.size(), 5u);
    EXPECT_TRUE(wide[0] == 1 && wide[7] == 8);
}

TEST(TransformationOverloads, CopyingFormsCopyThenTransformWithStepTwoOrThree) {
    Recorder r;
    const double source[8] = {0, 0, 0, 100, 0, 0, 0, 100};
    double target[8] = {};
    EXPECT_TRUE(r.Transformation(source, 2, 2, target));
    EXPECT_TRUE(r.calls.back().x == target && r.calls.back().step == 2 && r.calls.back().z == nullptr);
    EXPECT_TRUE(source[0] == 0 && target[0] == 1 && target[3] == 102);
    // Dimension 4 copies 4n doubles but walks them with step 3, so the second
    // "point" starts at the first record's fourth value. This is the contract.
    EXPECT_TRUE(r.Transformation(source, 2, 4, target));
    EXPECT_TRUE(r.calls.back().step == 3 && r.calls.back().z == target + 2);
    const double expected[8] = {1, 2, 3, 101, 2, 3, 0, 100};
    for (int i = 0; i < 8; ++i) EXPECT_EQ(target[i], expected[i]) << i;
    // The primitive's failure is reported after copying.
    r.result = false;
    EXPECT_FALSE(r.Transformation(source, 1, 2, target));
    EXPECT_EQ(target[0], 1);
}

TEST(TransformationOverloads, CopyingFormsRefuseBadArgumentsWithoutCopying) {
    Recorder r;
    const double source[4] = {1, 2, 3, 4};
    double target[4] = {9, 9, 9, 9};
    for (bool reverse : {false, true}) {
        auto copy = [&](const double* s, int count, int dimension, double* t) {
            return reverse ? r.ReverseTransformation(s, count, dimension, t) : r.Transformation(s, count, dimension, t);
        };
        EXPECT_FALSE(copy(source, 0, 2, target));
        EXPECT_FALSE(copy(source, -3, 2, target));
        EXPECT_FALSE(copy(source, 2, 1, target));
        EXPECT_FALSE(copy(nullptr, 2, 2, target));
        EXPECT_FALSE(copy(source, 2, 2, nullptr));
        EXPECT_FALSE(copy(source, 1 << 30, 4, target));  // more doubles than an int counts
    }
    EXPECT_TRUE(r.calls.empty());
    EXPECT_EQ(target[0], 9);
}

TEST(TransformationOverloads, ReverseFailsByDefaultAfterCopyingAndReachesAnOverride) {
    Recorder r;
    double x = 1, y = 2;
    EXPECT_FALSE(r.ReverseTransformation(&x, &y, nullptr, 1, 1));
    EXPECT_EQ(x, 1);
    const double source[6] = {1, 2, 3, 4, 5, 6};
    double target[6] = {};
    EXPECT_FALSE(r.ReverseTransformation(source, 2, 3, target));
    for (int i = 0; i < 6; ++i) EXPECT_EQ(target[i], source[i]);
    EXPECT_TRUE(r.calls.empty());

    r.reversible = true;
    EXPECT_TRUE(r.ReverseTransformation(source, 2, 2, target));
    EXPECT_TRUE(target[0] == 0 && target[1] == 0 && target[3] == 2);
}

}  // namespace
