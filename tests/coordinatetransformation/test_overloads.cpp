#include <lmspatialreference/coordinatetransformation.h>

#include <gtest/gtest.h>

#include <vector>

using namespace Lumora::Kernel;

namespace {

// Records how the primitive was reached and shifts every point by (+1, +2, +3),
// so tests can see which elements were treated as x, y and z.
class Recorder : public LmCoordinateTransformation {
public:
    using LmCoordinateTransformation::Transformation;

    bool Transformation(double* x, double* y, double* z, int count, int step) override {
        calls.push_back({x, y, z, count, step});
        for (int i = 0; i < count; ++i) {
            x[i * step] += 1;
            y[i * step] += 2;
            if (z) z[i * step] += 3;
        }
        return result;
    }

    struct Call {
        double *x, *y, *z;
        int count, step;
    };
    std::vector<Call> calls;
    bool result = true;
};

TEST(TransformationOverloads, SeparateArraysAndSinglePointsReachThePrimitive) {
    Recorder recorder;
    double x[2] = {0, 10}, y[2] = {0, 20};
    EXPECT_TRUE(recorder.Transformation(x, y, 2, 1));
    ASSERT_EQ(recorder.calls.size(), 1u);
    EXPECT_EQ(recorder.calls[0].z, nullptr);
    EXPECT_EQ(recorder.calls[0].step, 1);
    EXPECT_EQ(x[1], 11);
    EXPECT_EQ(y[1], 22);

    double px = 0, py = 0, pz = 0;
    EXPECT_TRUE(recorder.Transformation(px, py));
    EXPECT_TRUE(recorder.Transformation(px, py, pz));
    EXPECT_EQ(recorder.calls[1].z, nullptr);
    EXPECT_EQ(recorder.calls[2].z, &pz);
    EXPECT_TRUE(recorder.calls[2].count == 1 && recorder.calls[2].step == 1);
    EXPECT_TRUE(px == 2 && py == 4 && pz == 3) << px << " " << py << " " << pz;
}

TEST(TransformationOverloads, InterleavedArraysTakeDimensionTwoOrThreeOnly) {
    Recorder recorder;
    double xy[4] = {0, 0, 5, 5};
    EXPECT_TRUE(recorder.Transformation(xy, 2, 2));
    EXPECT_EQ(recorder.calls.back().step, 2);
    EXPECT_EQ(recorder.calls.back().z, nullptr);
    EXPECT_EQ(xy[2], 6);
    EXPECT_EQ(xy[3], 7);

    double xyz[6] = {0, 0, 0, 0, 0, 0};
    EXPECT_TRUE(recorder.Transformation(xyz, 2, 3));
    EXPECT_EQ(recorder.calls.back().z, xyz + 2);
    EXPECT_EQ(xyz[5], 3);

    double wide[8] = {1, 2, 3, 4, 5, 6, 7, 8};
    const std::size_t callsBefore = recorder.calls.size();
    EXPECT_FALSE(recorder.Transformation(wide, 2, 4));
    EXPECT_FALSE(recorder.Transformation(wide, 2, 1));
    EXPECT_EQ(recorder.calls.size(), callsBefore);
    EXPECT_TRUE(wide[0] == 1 && wide[7] == 8);
}

TEST(TransformationOverloads, CopyingFormLeavesTheSourceAlone) {
    Recorder recorder;
    const double source[4] = {1, 2, 3, 4};
    double target[4] = {};
    EXPECT_TRUE(recorder.Transformation(source, 2, 2, target));
    EXPECT_EQ(source[0], 1);
    EXPECT_EQ(recorder.calls.back().x, target);
    EXPECT_EQ(recorder.calls.back().step, 2);
    EXPECT_EQ(target[0], 2);
    EXPECT_EQ(target[3], 6);

    // The primitive's failure is reported after copying.
    recorder.result = false;
    EXPECT_FALSE(recorder.Transformation(source, 1, 2, target));
    EXPECT_EQ(target[0], 2);
}

TEST(TransformationOverloads, CopyingFormUsesStepThreeForWideRecords) {
    // Dimension 4 copies 4n doubles but walks them with step 3, so the second
    // "point" starts at the first record's fourth value. This is the contract.
    Recorder recorder;
    const double source[8] = {0, 0, 0, 100, 0, 0, 0, 100};
    double target[8] = {};
    EXPECT_TRUE(recorder.Transformation(source, 2, 4, target));
    EXPECT_EQ(recorder.calls.back().step, 3);
    EXPECT_EQ(recorder.calls.back().z, target + 2);
    const double expected[8] = {1, 2, 3, 101, 2, 3, 0, 100};
    for (int i = 0; i < 8; ++i) EXPECT_EQ(target[i], expected[i]) << i;
}

TEST(TransformationOverloads, CopyingFormRefusesBadArgumentsWithoutCopying) {
    Recorder recorder;
    const double source[4] = {1, 2, 3, 4};
    double target[4] = {9, 9, 9, 9};
    EXPECT_FALSE(recorder.Transformation(source, 0, 2, target));
    EXPECT_FALSE(recorder.Transformation(source, -3, 2, target));
    EXPECT_FALSE(recorder.Transformation(source, 2, 1, target));
    EXPECT_FALSE(recorder.Transformation(nullptr, 2, 2, target));
    EXPECT_FALSE(recorder.Transformation(source, 2, 2, nullptr));
    EXPECT_FALSE(recorder.Transformation(source, 1 << 30, 4, target));  // more doubles than an int counts
    EXPECT_TRUE(recorder.calls.empty());
    EXPECT_EQ(target[0], 9);
}

TEST(TransformationOverloads, ReverseFailsByDefaultButStillCopies) {
    Recorder recorder;
    double x = 1, y = 2;
    EXPECT_FALSE(recorder.ReverseTransformation(&x, &y, nullptr, 1, 1));
    EXPECT_EQ(x, 1);

    const double source[6] = {1, 2, 3, 4, 5, 6};
    double target[6] = {};
    EXPECT_FALSE(recorder.ReverseTransformation(source, 2, 3, target));
    for (int i = 0; i < 6; ++i) EXPECT_EQ(target[i], source[i]);
    EXPECT_TRUE(recorder.calls.empty());
}

// A class that knows its inverse gets the copying reverse form for free.
class Doubler : public LmCoordinateTransformation {
public:
    using LmCoordinateTransformation::ReverseTransformation;
    using LmCoordinateTransformation::Transformation;

    bool Transformation(double* x, double* y, double*, int count, int step) override {
        for (int i = 0; i < count; ++i) x[i * step] *= 2, y[i * step] *= 2;
        return true;
    }
    bool ReverseTransformation(double* x, double* y, double*, int count, int step) override {
        for (int i = 0; i < count; ++i) x[i * step] /= 2, y[i * step] /= 2;
        return true;
    }
};

TEST(TransformationOverloads, CopyingReverseReachesAnOverriddenReverse) {
    Doubler doubler;
    const double source[4] = {2, 4, 6, 8};
    double target[4] = {};
    EXPECT_TRUE(doubler.ReverseTransformation(source, 2, 2, target));
    EXPECT_EQ(target[0], 1);
    EXPECT_EQ(target[3], 4);
}

}  // namespace
