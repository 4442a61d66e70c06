#include <lmspatialreference/geodesics.h>
#include <lmspatialreference/spatialreference.h>

#include <gtest/gtest.h>

#include <cmath>

using namespace Lumora::Kernel;

namespace {

constexpr double kPi = 3.141592653589793;

// The area of the octant bounded by the equator and the meridians 0 and 90.
double _OctantArea(LmGeodesicPolygon&& octant) {
    octant.AddPoint(0, 0);
    octant.AddPoint(90, 0);
    octant.AddPoint(0, 90);
    double area = 0;
    octant.Compute(false, true, &area, nullptr);
    return area;
}

TEST(GeodesicOfReference, Wgs84ReferenceGivesTheWgs84Ellipsoid) {
    LmSmarterPtr<LmSpatialReference> wgs84(new LmSpatialReference(eWGS84));
    const LmGeodesic byReference(wgs84);
    const LmGeodesic byNumbers(6378137.0, 298.257223563);
    double a1 = 0, a2 = 0, b1 = 0, b2 = 0;
    const double s = byReference.Inverse(174.81, -41.32, -5.50, 40.96, &a1, &a2);
    EXPECT_NEAR(s, 19959679.267, 1e-3);
    EXPECT_EQ(s, byNumbers.Inverse(174.81, -41.32, -5.50, 40.96, &b1, &b2));
    EXPECT_EQ(a1, b1);
    EXPECT_EQ(a2, b2);

    const LmGeodesicLine line(wgs84, 0, 0, 0, LmGeodesicLine::eAll);
    double x = 1, y = 0;
    line.Position(10001965.729313, &x, &y, nullptr);
    EXPECT_NEAR(y, 90.0, 1e-9);

    EXPECT_EQ(_OctantArea(LmGeodesicPolygon(wgs84, false)),
              _OctantArea(LmGeodesicPolygon(6378137.0, 298.257223563, false)));
}

TEST(GeodesicOfReference, InverseFlatteningZeroIsASphere) {
    LmSmarterPtr<LmSpatialReference> sphere(new LmSpatialReference("+proj=longlat +R=6371000 +no_defs", eProj4));
    ASSERT_FALSE(sphere->IsNull());
    ASSERT_EQ(sphere->FlattenInverseF(), 0.0);
    const LmGeodesic geodesic(sphere);
    EXPECT_NEAR(geodesic.Inverse(0, 0, 0, 90, nullptr, nullptr), 6371000.0 * kPi / 2, 1e-6);
    EXPECT_NEAR(_OctantArea(LmGeodesicPolygon(sphere, false)) / (kPi * 6371000.0 * 6371000.0 / 2), 1.0, 1e-12);
}

TEST(GeodesicOfReference, NullReferencesDoNotCrash) {
    LmSmarterPtr<LmSpatialReference> empty(new LmSpatialReference("", eWKT));
    ASSERT_TRUE(empty->IsNull());
    for (LmSpatialReference* sr : {static_cast<LmSpatialReference*>(empty), static_cast<LmSpatialReference*>(nullptr)}) {
        const LmGeodesic geodesic(sr);
        const double s = geodesic.Inverse(0, 0, 10, 10, nullptr, nullptr);
        EXPECT_TRUE(s == 0.0 || std::isnan(s));
        double x = 0, y = 0;
        LmGeodesicLine(sr, 0, 0, 0, LmGeodesicLine::eAll).Position(1000, &x, &y, nullptr);
        LmGeodesicPolygon(sr, true).Compute(false, true, nullptr, nullptr);
    }
}

}  // namespace
