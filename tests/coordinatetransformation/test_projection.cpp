#include "projection_fixtures.h"

#include <gtest/gtest.h>


using namespace ProjectionTests;

namespace {

// Projection pairs, for each format of the geographic reference, are known
// answers in tests/data/projections.known, which names the closed forms the
// values below come from too.

// (117, 30) in UTM zone 50N: on its central meridian, k0 times the meridian arc.
void ExpectUtm50At117And30(double easting, double northing) {
    EXPECT_NEAR(easting, 500000.0, 1e-6);
    EXPECT_NEAR(northing, 3318785.3526084418, 1e-3);
}

// Spherical Mercator on the WGS 84 semi-major axis.
const double kWebMercator10And20[2] = {1113194.9079327357, 2273030.926987689};
const double kWebMercatorMinus30AndMinus40[2] = {-3339584.723798207, -4865942.279503176};

TEST(ProjectionAxisOrder, HoldsForClonesAndGeographicParts) {
    auto epsg4326 = Reference(EpsgWkt(4326).c_str());
    auto utm = Reference(EpsgWkt(32650).c_str());
    LmSmarterPtr<LmSpatialReference> clone = epsg4326->Clone();
    LmSmarterPtr<LmSpatialReference> geographicPart = utm->Geographic();
    for (LmSpatialReference* geographic : {static_cast<LmSpatialReference*>(clone),
                                           static_cast<LmSpatialReference*>(geographicPart)}) {
        LmProjectCoordinateTransformation forward(geographic, utm);
        double x = 117.0, y = 30.0;
        ASSERT_TRUE(forward.Transformation(x, y));
        ExpectUtm50At117And30(x, y);
    }
}

TEST(Projection, AFailingPointFailsTheBatchQuietlyAndSparesTheOthers) {
    LmProjectCoordinateTransformation toWebMercator(Reference(eWGS84), Reference(eWebMercator));
    double xy[6] = {10.0, 20.0, 0.0, 95.0, -30.0, -40.0};
    testing::internal::CaptureStderr();
    const bool ok = toWebMercator.Transformation(xy, 3, 2);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_FALSE(ok);
    EXPECT_NEAR(xy[0], kWebMercator10And20[0], 1e-6);
    EXPECT_NEAR(xy[1], kWebMercator10And20[1], 1e-6);
    EXPECT_NEAR(xy[4], kWebMercatorMinus30AndMinus40[0], 1e-6);
    EXPECT_NEAR(xy[5], kWebMercatorMinus30AndMinus40[1], 1e-6);

    double x = 0.0, y = 95.0;
    testing::internal::CaptureStderr();
    EXPECT_FALSE(toWebMercator.Transformation(x, y));
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST(Projection, WithoutBothReferencesNothingIsTransformed) {
    auto wgs84 = Reference(eWGS84);
    auto webMercator = Reference(eWebMercator);
    auto refused = Reference("PROJCS[", eWKT);
    double x = 10.0, y = 20.0;
    LmProjectCoordinateTransformation noSource(nullptr, webMercator);
    EXPECT_FALSE(noSource.Transformation(x, y));
    EXPECT_FALSE(LmProjectCoordinateTransformation(refused, webMercator).Transformation(x, y));
    EXPECT_FALSE(LmProjectCoordinateTransformation(wgs84, nullptr).Transformation(x, y));
    EXPECT_EQ(x, 10.0);
    EXPECT_EQ(y, 20.0);

    noSource.Source(wgs84);
    EXPECT_EQ(noSource.Source(), static_cast<LmSpatialReference*>(wgs84));
    ASSERT_TRUE(noSource.Transformation(x, y));
    EXPECT_NEAR(x, kWebMercator10And20[0], 1e-6);
    EXPECT_NEAR(y, kWebMercator10And20[1], 1e-6);
}

TEST(Projection, ChangingTheTargetRebuildsTheTransformation) {
    auto wgs84 = Reference(eWGS84);
    LmProjectCoordinateTransformation projection(wgs84, Reference(eWebMercator));
    projection.Target(Reference(EpsgWkt(32650).c_str()));
    double x = 117.0, y = 30.0;
    ASSERT_TRUE(projection.Transformation(x, y));
    ExpectUtm50At117And30(x, y);
    EXPECT_EQ(wgs84->RefCount(), 2);
    projection.Target(nullptr);
    EXPECT_FALSE(projection.Transformation(x, y));
}

}  // namespace
