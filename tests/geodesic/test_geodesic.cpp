#include "tests/fixtures.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

using namespace Fixtures;

namespace {

constexpr double kR = 6371000.0;  // a sphere

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

// Distances, directions and interpolations are known answers in
// tests/data/geodesics.known.

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
    // 30 degrees of meridian, then the haversine distance along the parallel.
    const double expected = kR * Radians(30) + 3831642.973896454;
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
