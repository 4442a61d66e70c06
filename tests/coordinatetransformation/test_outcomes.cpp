// Per-point outcomes must name exactly the refused points, keep the batch's
// values for the others in every batch mode, and restart the points a chain
// left half done.
#include "projection_fixtures.h"

#include <gtest/gtest.h>

#include <cstring>
#include <vector>

using namespace ProjectionTests;

namespace {

// Valid, beyond the pole, too far out for PROJ, valid; x and y in separate arrays.
const std::vector<double> kLon = {116.391, 117.0, 1e13, 113.25};
const std::vector<double> kLat = {39.907, 95.0, 30.0, 23.1};
const std::vector<unsigned char> kExpected = {1, 0, 0, 1};

LmSmarterPtr<LmProjectCoordinateTransformation> ToUtm50() {
    return LmSmarterPtr<LmProjectCoordinateTransformation>(
        new LmProjectCoordinateTransformation(Reference(eWGS84), Reference(EpsgWkt(32650).c_str())));
}

// The values a plain batch of the valid points alone gives.
void ValidPointsByBatch(LmCoordinateTransformation& transformation, std::vector<double>& x, std::vector<double>& y) {
    x = {kLon[0], kLon[3]};
    y = {kLat[0], kLat[3]};
    ASSERT_TRUE(transformation.Transformation(x.data(), y.data(), nullptr, 2, 1));
}

TEST(PointOutcomes, NameTheRefusedPointsInEveryMode) {
    struct Mode {
        bool parallel, blocks;
    };
    for (const Mode mode : {Mode{false, false}, Mode{true, false}, Mode{false, true}, Mode{true, true}}) {
        SCOPED_TRACE(testing::Message() << "parallel " << mode.parallel << ", blocks " << mode.blocks);
        auto projection = ToUtm50();
        projection->Parallel(mode.parallel);
        projection->BlockCalls(mode.blocks);
        EXPECT_EQ(projection->Parallel(), mode.parallel);
        EXPECT_EQ(projection->BlockCalls(), mode.blocks);

        std::vector<double> x(4, -1.0), y(4, -1.0);
        std::vector<unsigned char> transformed(4, 9);
        EXPECT_FALSE(TransformWithOutcomes(*projection, kLon.data(), kLat.data(), nullptr, x.data(), y.data(),
                                           nullptr, 4, 1, transformed.data()));
        EXPECT_EQ(transformed, kExpected);

        std::vector<double> batchX, batchY;
        ValidPointsByBatch(*ToUtm50(), batchX, batchY);
        EXPECT_EQ(std::memcmp(&x[0], &batchX[0], sizeof(double)), 0);
        EXPECT_EQ(std::memcmp(&y[3], &batchY[1], sizeof(double)), 0);
        EXPECT_EQ(x[2], 1e13);  // never handed to PROJ, so left as given
    }
}

TEST(PointOutcomes, AllTransformedTakeOneBatchOnInterleavedPoints) {
    const std::vector<double> source = {116.391, 39.907, 50.0, 113.25, 23.1, -3.0};
    std::vector<double> target(6, 0.0), expected = source;
    std::vector<unsigned char> transformed(2, 0);
    auto projection = ToUtm50();
    ASSERT_TRUE(projection->Transformation(expected.data(), 2, 3));
    EXPECT_TRUE(TransformWithOutcomes(*projection, &source[0], &source[1], &source[2], &target[0], &target[1],
                                      &target[2], 2, 3, transformed.data()));
    EXPECT_EQ(transformed, std::vector<unsigned char>({1, 1}));
    EXPECT_EQ(std::memcmp(target.data(), expected.data(), 6 * sizeof(double)), 0);
}

// A chain stops at the first member that fails, for the whole batch: the
// valid points must still come out through every member.
TEST(PointOutcomes, RestartPointsAChainLeftHalfDone) {
    auto there = ToUtm50();
    LmSmarterPtr<LmCoordinateTransformationCombination> chain(new LmCoordinateTransformationCombination);
    chain->Add(there);
    chain->Add(new LmProjectCoordinateTransformation(Reference(EpsgWkt(32650).c_str()), Reference(eWebMercator)));

    std::vector<double> x(4), y(4);
    std::vector<unsigned char> transformed(4);
    EXPECT_FALSE(TransformWithOutcomes(*chain, kLon.data(), kLat.data(), nullptr, x.data(), y.data(), nullptr, 4, 1,
                                       transformed.data()));
    EXPECT_EQ(transformed, kExpected);
    std::vector<double> batchX, batchY;
    ValidPointsByBatch(*chain, batchX, batchY);
    EXPECT_EQ(x[0], batchX[0]);
    EXPECT_EQ(y[3], batchY[1]);
}

TEST(PointOutcomes, RefuseBadArgumentsWritingNothing) {
    auto projection = ToUtm50();
    double z = 0.0, target = 7.0;
    unsigned char transformed = 9;
    struct Case {
        const char* name;
        const double *sourceX, *sourceZ;
        double* z;
        int count, step;
    };
    const Case cases[] = {
        {"null source", nullptr, nullptr, nullptr, 1, 1},  {"z without source z", kLon.data(), nullptr, &z, 1, 1},
        {"source z without z", kLon.data(), &z, nullptr, 1, 1}, {"negative count", kLon.data(), nullptr, nullptr, -1, 1},
        {"step 0", kLon.data(), nullptr, nullptr, 1, 0},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_FALSE(TransformWithOutcomes(*projection, c.sourceX, kLat.data(), c.sourceZ, &target, &target, c.z,
                                           c.count, c.step, &transformed));
        EXPECT_EQ(target, 7.0);
        EXPECT_EQ(transformed, 9);
    }
    EXPECT_TRUE(TransformWithOutcomes(*projection, kLon.data(), kLat.data(), nullptr, &target, &target, nullptr, 0, 1,
                                      &transformed));
}

// The reverse offsets' batch leaves an unsolved point as it was and
// succeeds; the outcomes name it. A move of 1e-300 m spans no double, so no
// point inside China can be solved to it; outside China GCJ-02 is WGS 84.
TEST(PointOutcomes, NameThePointsTheReverseOffsetsCannotSolve) {
    const double lon[] = {116.391, 10.0}, lat[] = {39.907, 50.0};
    struct Case {
        const char* name;
        LmSmarterPtr<LmCoordinateTransformation> reverse;
        unsigned char outside;
    };
    const Case cases[] = {
        {"from GCJ-02", LmSmarterPtr<LmCoordinateTransformation>(new LmGCJ02ToWGS84CoordinateTransformation(1e-300)), 1},
        {"from BD-09", LmSmarterPtr<LmCoordinateTransformation>(new LmBD09ToWGS84CoordinateTransformation(1e-300)), 0},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        double x[2], y[2];
        unsigned char transformed[2] = {9, 9};
        EXPECT_FALSE(TransformWithOutcomes(*c.reverse, lon, lat, nullptr, x, y, nullptr, 2, 1, transformed));
        EXPECT_EQ(transformed[0], 0);
        EXPECT_EQ(transformed[1], c.outside);
        EXPECT_EQ(x[0], lon[0]);
        EXPECT_EQ(y[0], lat[0]);
        EXPECT_TRUE(c.reverse->Transformation(x, y, nullptr, 2, 1));
    }
    LmGCJ02ToWGS84CoordinateTransformation solvable(0.001);
    double x = lon[0], y = lat[0];
    unsigned char transformed = 9;
    EXPECT_TRUE(TransformWithOutcomes(solvable, lon, lat, nullptr, &x, &y, nullptr, 1, 1, &transformed));
    EXPECT_EQ(transformed, 1);
    EXPECT_NE(x, lon[0]);
}

}  // namespace
