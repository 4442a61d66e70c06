#include "projection_fixtures.h"

#include <gtest/gtest.h>

#include <vector>

using namespace ProjectionTests;

namespace {

const double kK0 = 0.9996;

// Central meridian of UTM zone 50 is 117 degrees east.
void ExpectUtm50(double lon, double lat, double easting, double northing) {
    if (lat == 0.0) {
        EXPECT_NEAR(easting - 500000.0, EquatorEasting(kWgs84A, kWgs84InverseF, kK0, lon - 117.0), 1e-3);
        EXPECT_NEAR(northing, 0.0, 1e-6);
    } else {
        ASSERT_EQ(lon, 117.0);
        EXPECT_NEAR(easting, 500000.0, 1e-6);
        EXPECT_NEAR(northing, kK0 * MeridianArc(kWgs84A, kWgs84InverseF, lat), 1e-3);
    }
}

struct Source {
    const char* label;
    LmString text;
    LmSpatialReferenceFormat format;
};

std::vector<Source> GeographicSources() {
    return {
        {"WKT with EPSG authority", EpsgWkt(4326), eWKT},
        {"WKT without authority", LmSpatialReference(eWGS84).ExportToWKT(false), eWKT},
        {"PROJ.4", "+proj=longlat +datum=WGS84 +no_defs", eProj4},
        {"XML", LmSpatialReference(EpsgWkt(4326).c_str(), eWKT).ExportToXml(), eXML},
    };
}

TEST(ProjectionAxisOrder, LongitudeComesFirstWhateverTheSourceFormat) {
    auto utm = Reference(EpsgWkt(32650).c_str());
    ASSERT_TRUE(utm->IsProjected());
    for (const Source& source : GeographicSources()) {
        SCOPED_TRACE(source.label);
        auto geographic = Reference(source.text.c_str(), source.format);
        ASSERT_TRUE(geographic->IsGeographic());
        LmProjectCoordinateTransformation forward(geographic, utm);
        double xy[4] = {117.0, 30.0, 120.0, 0.0};
        ASSERT_TRUE(forward.Transformation(xy, 2, 2));
        ExpectUtm50(117.0, 30.0, xy[0], xy[1]);
        ExpectUtm50(120.0, 0.0, xy[2], xy[3]);

        LmProjectCoordinateTransformation inverse(utm, geographic);
        ASSERT_TRUE(inverse.Transformation(xy, 2, 2));
        const double lonLat[4] = {117.0, 30.0, 120.0, 0.0};
        for (int k = 0; k < 4; ++k) EXPECT_NEAR(xy[k], lonLat[k], 1e-9) << k;
    }
}

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
        ExpectUtm50(117.0, 30.0, x, y);
    }
}

TEST(Projection, WebMercatorIsTheSphericalClosedFormAndKeepsHeights) {
    LmProjectCoordinateTransformation toWebMercator(Reference(eWGS84), Reference(eWebMercator));
    const double points[][2] = {{0.0, 0.0}, {116.391, 39.907}, {-70.6, -33.45}, {179.9, 84.0}, {-180.0, -85.0}};
    for (const auto& p : points) {
        double xyz[3] = {p[0], p[1], 50.0}, expectedX, expectedY;
        ASSERT_TRUE(toWebMercator.Transformation(xyz, 1, 3));
        SphericalMercator(kWgs84A, p[0], p[1], expectedX, expectedY);
        EXPECT_NEAR(xyz[0], expectedX, 1e-6) << p[0] << ", " << p[1];
        EXPECT_NEAR(xyz[1], expectedY, 1e-6) << p[0] << ", " << p[1];
        EXPECT_EQ(xyz[2], 50.0);
    }
}

TEST(Projection, AFailingPointFailsTheBatchQuietlyAndSparesTheOthers) {
    LmProjectCoordinateTransformation toWebMercator(Reference(eWGS84), Reference(eWebMercator));
    double xy[6] = {10.0, 20.0, 0.0, 95.0, -30.0, -40.0};
    testing::internal::CaptureStderr();
    const bool ok = toWebMercator.Transformation(xy, 3, 2);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_FALSE(ok);
    for (int k : {0, 4}) {
        double expectedX, expectedY;
        SphericalMercator(kWgs84A, k ? -30.0 : 10.0, k ? -40.0 : 20.0, expectedX, expectedY);
        EXPECT_NEAR(xy[k], expectedX, 1e-6);
        EXPECT_NEAR(xy[k + 1], expectedY, 1e-6);
    }

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
    EXPECT_TRUE(x == 10.0 && y == 20.0);

    noSource.Source(wgs84);
    EXPECT_EQ(noSource.Source(), static_cast<LmSpatialReference*>(wgs84));
    ASSERT_TRUE(noSource.Transformation(x, y));
    double expectedX, expectedY;
    SphericalMercator(kWgs84A, 10.0, 20.0, expectedX, expectedY);
    EXPECT_NEAR(x, expectedX, 1e-6);
    EXPECT_NEAR(y, expectedY, 1e-6);
}

TEST(Projection, ChangingTheTargetRebuildsTheTransformation) {
    auto wgs84 = Reference(eWGS84);
    LmProjectCoordinateTransformation projection(wgs84, Reference(eWebMercator));
    projection.Target(Reference(EpsgWkt(32650).c_str()));
    double x = 117.0, y = 30.0;
    ASSERT_TRUE(projection.Transformation(x, y));
    ExpectUtm50(117.0, 30.0, x, y);
    EXPECT_EQ(wgs84->RefCount(), 2);
    projection.Target(nullptr);
    EXPECT_FALSE(projection.Transformation(x, y));
}

}  // namespace
