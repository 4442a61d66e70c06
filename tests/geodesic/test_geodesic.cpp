#include "tests/fixtures.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

using namespace Fixtures;

namespace {

constexpr double kR = 6371000.0;  // a sphere

// Great-circle distance on the sphere of radius kR by the haversine formula.
double GreatCircle(double lon1, double lat1, double lon2, double lat2) {
    const long double p1 = Radians(lat1), p2 = Radians(lat2), dl = Radians(lon2 - lon1);
    const long double h = std::pow(std::sin((p2 - p1) / 2), 2) + std::cos(p1) * std::cos(p2) * std::pow(std::sin(dl / 2), 2);
    return static_cast<double>(2 * kR * std::asin(std::sqrt(h)));
}

// The area of the whole ellipsoid, in closed form.
double EllipsoidArea(double a, double inverseF) {
    const long double f = 1.0L / inverseF, e2 = f * (2 - f), e = std::sqrt(e2);
    return static_cast<double>(2 * kPi * a * a * (1 + (1 - e2) / e * std::atanh(e)));
}

// The signed area of the octant bounded by the equator and the meridians 0
// and 90, counter-clockwise in this order.
double OctantArea(LmGeodesicPolygon&& octant, bool reverse = false) {
    octant.AddPoint(0, 0);
    octant.AddPoint(90, 0);
    octant.AddPoint(0, 90);
    double area = 0;
    EXPECT_EQ(octant.Compute(reverse, true, &area, nullptr), 3u);
    return area;
}

TEST(GeodesicInverse, MatchesPublishedDistancesAndAzimuths) {
    const struct {
        double a, f, lon1, lat1, lon2, lat2, s, azi1, azi2, tolerance;
    } cases[] = {
        // Equator to pole on WGS 84.
        {kWgs84A, kWgs84InverseF, 0, 0, 0, 90, 10001965.729, 0, 0, 1e-3},
        // Wellington to Salamanca, the worked example of GeographicLib's documentation.
        {kWgs84A, kWgs84InverseF, 174.81, -41.32, -5.50, 40.96, 19959679.267, NAN, NAN, 1e-3},
        // Vincenty (1975), line (a), on the Bessel ellipsoid.
        {6377397.155, 299.1528128, 0.0, 55.75, 108.0 + 13.0 / 60.0, -(33.0 + 26.0 / 60.0), 14110526.170,
         96.0 + 36.0 / 60.0 + 8.79960 / 3600.0, 137.0 + 52.0 / 60.0 + 22.01454 / 3600.0, 2e-3},
        // The sphere: eastward along the equator, due north along a meridian.
        {kR, 0.0, 0, 0, 90, 0, kR * kPi / 2, 90, 90, 1e-6},
        {kR, 0.0, 30, 10, 30, 50, kR * Radians(40), 0, 0, 1e-6},
        // Asymmetric points: swapping longitude and latitude would change the distance.
        {kR, 0.0, 10, 20, 40, -5, GreatCircle(10, 20, 40, -5), NAN, NAN, 1e-6},
        {kR, 0.0, -120, 60, 30, 10, GreatCircle(-120, 60, 30, 10), NAN, NAN, 1e-6},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.lon1 << " " << c.lat1 << " to " << c.lon2 << " " << c.lat2);
        double azi1 = 0, azi2 = 0;
        const LmGeodesic geodesic(c.a, c.f);
        EXPECT_NEAR(geodesic.Inverse(c.lon1, c.lat1, c.lon2, c.lat2, &azi1, &azi2), c.s, c.tolerance);
        if (!std::isnan(c.azi1)) {
            EXPECT_NEAR(azi1, c.azi1, 1e-8);
            EXPECT_NEAR(azi2, c.azi2, 1e-8);
        }
        // The flattening itself describes the same ellipsoid as its inverse.
        if (c.f > 1) {
            EXPECT_EQ(LmGeodesic(c.a, 1 / c.f).Inverse(c.lon1, c.lat1, c.lon2, c.lat2, nullptr, nullptr),
                      geodesic.Inverse(c.lon1, c.lat1, c.lon2, c.lat2, nullptr, nullptr));
        }
    }
}

TEST(GeodesicDirect, WritesLongitudeToXAndLatitudeToYAndUndoesTheInverse) {
    const LmGeodesic sphere(kR, 0.0), wgs84(kWgs84A, kWgs84InverseF);
    double x = 0, y = 0, azi2 = 0, azi1 = 0;
    sphere.Direct(10, 20, 0, kR * Radians(30), &x, &y, &azi2);
    EXPECT_NEAR(x, 10.0, 1e-12);
    EXPECT_NEAR(y, 50.0, 1e-12);
    EXPECT_NEAR(azi2, 0.0, 1e-12);
    const double s = wgs84.Inverse(174.81, -41.32, -5.50, 40.96, &azi1, nullptr);
    wgs84.Direct(174.81, -41.32, azi1, s, &x, &y, nullptr);
    EXPECT_NEAR(x, -5.50, 1e-9);
    EXPECT_NEAR(y, 40.96, 1e-9);
}

TEST(GeodesicInterpolation, RunsAlongTheGeodesicAndBeyond) {
    // lon1, lat1, lon2, lat2, fraction, expected lon, lat, tolerance (spheres first, then WGS 84).
    const double cases[][8] = {{0, 0, 60, 0, 0.5, 30, 0, 1e-12},
                               {0, 0, 60, 0, 2.0, 120, 0, 1e-12},
                               {20, 10, 20, 40, 0.25, 20, 17.5, 1e-12},
                               {116.4, 39.9, -73.78, 40.64, 0.0, 116.4, 39.9, 1e-12},
                               {116.4, 39.9, -73.78, 40.64, 1.0, -73.78, 40.64, 1e-9}};
    const LmGeodesic sphere(kR, 0.0), wgs84(kWgs84A, kWgs84InverseF);
    for (int i = 0; i < 5; ++i) {
        const double* c = cases[i];
        double x = 0, y = 0, azi = 0;
        (i < 3 ? sphere : wgs84).Interpolation(c[0], c[1], c[2], c[3], c[4], &x, &y, &azi);
        EXPECT_NEAR(x, c[5], c[7]) << i;
        EXPECT_NEAR(y, c[6], c[7]) << i;
        if (i == 0) {
            EXPECT_NEAR(azi, 90.0, 1e-12);
        }
    }
}

TEST(GeodesicLine, PositionsAlongTheLineNeverWriteTheAzimuth) {
    const LmGeodesicLine meridian(kR, 0.0, 10, 0, 0, LmGeodesicLine::eNone);
    double x = 0, y = 0, azi = 12345.0;
    meridian.Position(kR * kPi / 4, &x, &y, &azi);
    EXPECT_NEAR(x, 10.0, 1e-12);
    EXPECT_NEAR(y, 45.0, 1e-12);
    EXPECT_EQ(azi, 12345.0);
    const LmGeodesicLine equator(Reference(eWGS84), 0, 0, 90, LmGeodesicLine::eAll);
    equator.Position(kWgs84A * kPi / 2, &x, &y, nullptr);
    EXPECT_NEAR(x, 90.0, 1e-12);
    EXPECT_NEAR(y, 0.0, 1e-12);
}

TEST(GeodesicPolygon, OctantAreasMatchClosedFormsWhateverGivesTheEllipsoid) {
    const double sphereOctant = kPi * kR * kR / 2, wgs84Octant = EllipsoidArea(kWgs84A, kWgs84InverseF) / 8;
    EXPECT_NEAR(OctantArea(LmGeodesicPolygon(kR, 0.0, false)) / sphereOctant, 1.0, 1e-12);
    EXPECT_NEAR(OctantArea(LmGeodesicPolygon(kWgs84A, kWgs84InverseF, false)) / wgs84Octant, 1.0, 1e-12);
    // Clockwise counts as positive when reversed; signed areas turn negative.
    EXPECT_NEAR(OctantArea(LmGeodesicPolygon(kWgs84A, kWgs84InverseF, false), true) / wgs84Octant, -1.0, 1e-12);
    // A reference gives its ellipsoid; an inverse flattening of 0 is a sphere.
    EXPECT_NEAR(OctantArea(LmGeodesicPolygon(Reference(eWGS84), false)) / wgs84Octant, 1.0, 1e-12);
    auto sphere = Reference("+proj=longlat +R=6371000 +no_defs", eProj4);
    ASSERT_EQ(sphere->FlattenInverseF(), 0.0);
    EXPECT_NEAR(OctantArea(LmGeodesicPolygon(sphere, false)) / sphereOctant, 1.0, 1e-12);
    EXPECT_NEAR(LmGeodesic(sphere).Inverse(0, 0, 0, 90, nullptr, nullptr), kR * kPi / 2, 1e-6);
}

TEST(GeodesicPolygon, EdgesResetAndPolylines) {
    LmGeodesicPolygon polygon(kR, 0.0, false);
    polygon.AddPoint(0, 0);
    polygon.AddEdge(90, kR * kPi / 2);  // to (90, 0)
    polygon.AddEdge(0, kR * kPi / 2);   // to the pole
    double area = 0, perimeter = 0;
    EXPECT_EQ(polygon.Compute(false, true, &area, &perimeter), 3u);
    EXPECT_NEAR(area, kPi * kR * kR / 2, 1e-3);
    EXPECT_NEAR(perimeter, 3 * kR * kPi / 2, 1e-6);
    polygon.Reset();
    EXPECT_EQ(polygon.Compute(false, true, &area, &perimeter), 0u);
    EXPECT_EQ(perimeter, 0.0);

    LmGeodesicPolygon polyline(kR, 0.0, true);
    for (const auto& [x, y] : {std::pair{0, 0}, {90, 0}, {0, 90}}) polyline.AddPoint(x, y);
    area = -7.0;
    EXPECT_EQ(polyline.Compute(false, true, &area, &perimeter), 3u);
    EXPECT_EQ(area, -7.0);
    EXPECT_NEAR(perimeter, kR * kPi, 1e-6);  // open: two legs only
}

TEST(Geodesic, NullReferencesGiveTheDegenerateEllipsoid) {
    auto empty = Reference("", eWKT);
    for (LmSpatialReference* sr : {static_cast<LmSpatialReference*>(empty), static_cast<LmSpatialReference*>(nullptr)}) {
        EXPECT_EQ(LmGeodesic(sr).Inverse(0, 0, 10, 10, nullptr, nullptr), 0.0);
        double x = 0, y = 0, area = 1, perimeter = 1;
        LmGeodesicLine(sr, 0, 0, 0, LmGeodesicLine::eAll).Position(1000, &x, &y, nullptr);
        EXPECT_EQ(LmGeodesicPolygon(sr, true).Compute(false, true, &area, &perimeter), 0u);
        EXPECT_EQ(perimeter, 0.0);
    }
}

TEST(ComputeGeodesic, SkipsHeightsAndCountsOnlyWholePoints) {
    const LmGeodesic sphere(kR, 0.0);
    // Three points with heights: (0, 0), (0, 30), (40, 30).
    const double xyz[9] = {0, 0, 1000, 0, 30, -50, 40, 30, 7};
    const double expected = kR * Radians(30) + GreatCircle(0, 30, 40, 30);
    EXPECT_NEAR(sphere.ComputeGeodesic(xyz, 9, 3), expected, 1e-6);
    // A last point without its latitude is not a point.
    EXPECT_NEAR(sphere.ComputeGeodesic(xyz, 7, 3), kR * Radians(30), 1e-6);
    EXPECT_NEAR(sphere.ComputeGeodesic(xyz, 8, 3), expected, 1e-6);
    // One point only, or a dimension too small for a point, or no array: nothing.
    for (const auto& [count, dimension] : {std::pair{2, 2}, {3, 3}, {9, 1}, {9, 0}})
        EXPECT_EQ(sphere.ComputeGeodesic(xyz, count, dimension), 0.0) << count << " " << dimension;
    EXPECT_EQ(sphere.ComputeGeodesic(nullptr, 9, 3), 0.0);
}

TEST(ComputeGeodesic, ParallelSumEqualsThePolylinePerimeter) {
    const int points = 20001;
    std::vector<double> xy(2 * points);
    LmGeodesicPolygon polyline(kWgs84A, kWgs84InverseF, true);
    for (int i = 0; i < points; ++i) {
        xy[2 * i] = -170.0 + 340.0 * i / points + 0.3 * std::sin(i * 0.7);
        xy[2 * i + 1] = 60.0 * std::sin(i * 0.001) + 0.2 * std::cos(i * 1.3);
        polyline.AddPoint(xy[2 * i], xy[2 * i + 1]);
    }
    double perimeter = 0;
    polyline.Compute(false, true, nullptr, &perimeter);
    for (const int threads : {1, 2, 3, 7}) {
        TeamSize team(threads);
        const double parallel = LmGeodesic(kWgs84A, kWgs84InverseF).ComputeGeodesic(xy.data(), 2 * points, 2);
        EXPECT_NEAR(parallel / perimeter, 1.0, 1e-12) << threads << " threads";
    }
}

}  // namespace
