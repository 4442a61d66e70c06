#include <lmspatialreference/geodesics.h>

#include "tests/teamsize.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

using namespace Lumora::Kernel;

namespace {

constexpr double kPi = 3.141592653589793;
constexpr double kWgs84A = 6378137.0;
constexpr double kWgs84InverseF = 298.257223563;
constexpr double kR = 6371000.0;  // a sphere

double _Radians(double degrees) { return degrees * kPi / 180.0; }

// Great-circle distance on the sphere of radius kR by the haversine formula.
double _GreatCircle(double lon1, double lat1, double lon2, double lat2) {
    const long double p1 = _Radians(lat1), p2 = _Radians(lat2), dl = _Radians(lon2 - lon1);
    const long double h = std::pow(std::sin((p2 - p1) / 2), 2) + std::cos(p1) * std::cos(p2) * std::pow(std::sin(dl / 2), 2);
    return static_cast<double>(2 * kR * std::asin(std::sqrt(h)));
}

TEST(GeodesicInverse, MatchesPublishedWgs84Distances) {
    const LmGeodesic wgs84(kWgs84A, kWgs84InverseF);
    // Equator to pole along a meridian.
    EXPECT_NEAR(wgs84.Inverse(0, 0, 0, 90, nullptr, nullptr), 10001965.729, 1e-3);
    // Wellington (41.32 S, 174.81 E) to Salamanca (40.96 N, 5.50 W), the
    // worked example of GeographicLib's documentation.
    EXPECT_NEAR(wgs84.Inverse(174.81, -41.32, -5.50, 40.96, nullptr, nullptr), 19959679.267, 1e-3);
}

TEST(GeodesicInverse, MatchesVincentysBesselTestLine) {
    // Vincenty (1975), line (a): Bessel ellipsoid, 55 45' N to 33 26' S across 108 13' of longitude.
    const LmGeodesic bessel(6377397.155, 299.1528128);
    double azi1 = 0.0, azi2 = 0.0;
    const double s = bessel.Inverse(0.0, 55.75, 108.0 + 13.0 / 60.0, -(33.0 + 26.0 / 60.0), &azi1, &azi2);
    EXPECT_NEAR(s, 14110526.170, 2e-3);
    EXPECT_NEAR(azi1, 96.0 + 36.0 / 60.0 + 8.79960 / 3600.0, 1e-8);
    EXPECT_NEAR(azi2, 137.0 + 52.0 / 60.0 + 22.01454 / 3600.0, 1e-8);
}

TEST(GeodesicInverse, TakesLongitudeFirstOnASphere) {
    const LmGeodesic sphere(kR, 0.0);
    // Asymmetric points: swapping longitude and latitude changes the distance.
    const double points[][4] = {{10, 20, 40, -5}, {-120, 60, 30, 10}, {0.5, 80, 170, -70}};
    for (const auto& p : points) {
        EXPECT_NEAR(sphere.Inverse(p[0], p[1], p[2], p[3], nullptr, nullptr), _GreatCircle(p[0], p[1], p[2], p[3]),
                    1e-6);
    }
    double azi1 = 0.0, azi2 = 0.0;
    // Along the equator eastward, and due north along a meridian.
    EXPECT_NEAR(sphere.Inverse(0, 0, 90, 0, &azi1, &azi2), kR * kPi / 2, 1e-6);
    EXPECT_NEAR(azi1, 90.0, 1e-12);
    EXPECT_NEAR(azi2, 90.0, 1e-12);
    EXPECT_NEAR(sphere.Inverse(30, 10, 30, 50, &azi1, &azi2), kR * _Radians(40), 1e-6);
    EXPECT_NEAR(azi1, 0.0, 1e-12);
}

TEST(Geodesic, FlatteningAndInverseFlatteningDescribeTheSameEllipsoid) {
    const LmGeodesic byInverse(kWgs84A, kWgs84InverseF);
    const LmGeodesic byFlattening(kWgs84A, 1.0 / kWgs84InverseF);
    double a1 = 0, a2 = 0, b1 = 0, b2 = 0;
    EXPECT_EQ(byInverse.Inverse(10, 20, 130, -35, &a1, &a2), byFlattening.Inverse(10, 20, 130, -35, &b1, &b2));
    EXPECT_EQ(a1, b1);
    EXPECT_EQ(a2, b2);
    // Asking for fewer azimuths changes nothing else.
    EXPECT_EQ(byInverse.Inverse(10, 20, 130, -35, nullptr, nullptr), byInverse.Inverse(10, 20, 130, -35, &a1, &a2));
    EXPECT_EQ(byInverse.Inverse(10, 20, 130, -35, &a1, nullptr), byInverse.Inverse(10, 20, 130, -35, nullptr, &a2));
    double x1 = 0, y1 = 0, x2 = 0, y2 = 0;
    byInverse.Direct(10, 20, 33, 5e6, &x1, &y1, nullptr);
    byFlattening.Direct(10, 20, 33, 5e6, &x2, &y2, nullptr);
    EXPECT_EQ(x1, x2);
    EXPECT_EQ(y1, y2);
}

TEST(GeodesicDirect, WritesLongitudeToXAndLatitudeToYAndUndoesTheInverse) {
    const LmGeodesic sphere(kR, 0.0);
    double x = 0, y = 0, azi2 = 0;
    sphere.Direct(10, 20, 0, kR * _Radians(30), &x, &y, &azi2);
    EXPECT_NEAR(x, 10.0, 1e-12);
    EXPECT_NEAR(y, 50.0, 1e-12);
    EXPECT_NEAR(azi2, 0.0, 1e-12);
    sphere.Direct(0, 0, 90, kR * kPi / 2, &x, &y, nullptr);
    EXPECT_NEAR(x, 90.0, 1e-12);
    EXPECT_NEAR(y, 0.0, 1e-12);

    const LmGeodesic wgs84(kWgs84A, kWgs84InverseF);
    double azi1 = 0;
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
        double x = 0, y = 0;
        (i < 3 ? sphere : wgs84).Interpolation(c[0], c[1], c[2], c[3], c[4], &x, &y, nullptr);
        EXPECT_NEAR(x, c[5], c[7]) << i;
        EXPECT_NEAR(y, c[6], c[7]) << i;
    }
    double x = 0, y = 0, azi = 0;
    sphere.Interpolation(0, 0, 60, 0, 0.5, &x, &y, &azi);
    EXPECT_NEAR(azi, 90.0, 1e-12);
}

TEST(GeodesicLine, PositionsAlongTheLineNeverWriteTheAzimuth) {
    const LmGeodesicLine meridian(kR, 0.0, 10, 0, 0, LmGeodesicLine::eNone);
    double x = 0, y = 0, azi = 12345.0;
    meridian.Position(kR * kPi / 4, &x, &y, &azi);
    EXPECT_NEAR(x, 10.0, 1e-12);
    EXPECT_NEAR(y, 45.0, 1e-12);
    EXPECT_EQ(azi, 12345.0);

    const LmGeodesicLine equator(kWgs84A, kWgs84InverseF, 0, 0, 90, LmGeodesicLine::eAll);
    equator.Position(kWgs84A * kPi / 2, &x, &y, nullptr);
    EXPECT_NEAR(x, 90.0, 1e-12);
    EXPECT_NEAR(y, 0.0, 1e-12);
}

TEST(GeodesicLine, CopiesAreIndependentAndWhole) {
    LmGeodesicLine line(kWgs84A, kWgs84InverseF, 174.81, -41.32, 30, LmGeodesicLine::eAll);
    const LmGeodesicLine copy = line;
    line = LmGeodesicLine(kR, 0, 0, 0, 90, LmGeodesicLine::eAll);
    double x = 0, y = 0, x2 = 0, y2 = 0;
    copy.Position(1e6, &x, &y, nullptr);
    LmGeodesic(kWgs84A, kWgs84InverseF).Direct(174.81, -41.32, 30, 1e6, &x2, &y2, nullptr);
    EXPECT_DOUBLE_EQ(x, x2);
    EXPECT_DOUBLE_EQ(y, y2);
}

// The area of the whole ellipsoid, in closed form.
double _EllipsoidArea(double a, double inverseF) {
    const long double f = 1.0L / inverseF, e2 = f * (2 - f), e = std::sqrt(e2);
    return static_cast<double>(2 * kPi * a * a * (1 + (1 - e2) / e * std::atanh(e)));
}

TEST(GeodesicPolygon, OctantAreasMatchClosedForms) {
    // Two meridians 90 degrees apart and the equator bound an eighth of the
    // surface, counter-clockwise (positive) in this order.
    for (const double inverseF : {0.0, kWgs84InverseF}) {
        const double a = inverseF == 0.0 ? kR : kWgs84A;
        const double expected = inverseF == 0.0 ? kPi * kR * kR / 2 : _EllipsoidArea(a, inverseF) / 8;
        LmGeodesicPolygon octant(a, inverseF, false);
        octant.AddPoint(0, 0);
        octant.AddPoint(90, 0);
        octant.AddPoint(0, 90);
        double area = 0, perimeter = 0;
        EXPECT_EQ(octant.Compute(false, true, &area, &perimeter), 3u);
        EXPECT_NEAR(area / expected, 1.0, 1e-12) << inverseF;
        if (inverseF == 0.0) {
            EXPECT_NEAR(perimeter, 3 * kR * kPi / 2, 1e-6);
        }
        // Clockwise counts as positive when reversed; signed areas turn negative.
        EXPECT_EQ(octant.Compute(true, true, &area, nullptr), 3u);
        EXPECT_NEAR(area / expected, -1.0, 1e-12);
    }
}

TEST(GeodesicPolygon, EdgesResetAndPolylines) {
    LmGeodesicPolygon polygon(kR, 0.0, false);
    polygon.AddPoint(0, 0);
    polygon.AddEdge(90, kR * kPi / 2);  // to (90, 0)
    polygon.AddEdge(0, kR * kPi / 2);   // to the pole
    double area = 0, perimeter = 0;
    EXPECT_EQ(polygon.Compute(false, true, &area, &perimeter), 3u);
    EXPECT_NEAR(area, kPi * kR * kR / 2, 1e-3);
    polygon.Reset();
    EXPECT_EQ(polygon.Compute(false, true, &area, &perimeter), 0u);
    EXPECT_EQ(perimeter, 0.0);

    LmGeodesicPolygon polyline(kR, 0.0, true);
    polyline.AddPoint(0, 0);
    polyline.AddPoint(90, 0);
    polyline.AddPoint(0, 90);
    area = -7.0;
    EXPECT_EQ(polyline.Compute(false, true, &area, &perimeter), 3u);
    EXPECT_EQ(area, -7.0);
    EXPECT_NEAR(perimeter, kR * kPi, 1e-6);  // open: two legs only
}

TEST(ComputeGeodesic, SkipsHeightsAndCountsOnlyWholePoints) {
    const LmGeodesic sphere(kR, 0.0);
    // Three points with heights: (0, 0), (0, 30), (40, 30).
    const double xyz[9] = {0, 0, 1000, 0, 30, -50, 40, 30, 7};
    const double expected = kR * _Radians(30) + _GreatCircle(0, 30, 40, 30);
    EXPECT_NEAR(sphere.ComputeGeodesic(xyz, 9, 3), expected, 1e-6);
    // A last point without its latitude is not a point.
    EXPECT_NEAR(sphere.ComputeGeodesic(xyz, 7, 3), kR * _Radians(30), 1e-6);
    EXPECT_NEAR(sphere.ComputeGeodesic(xyz, 8, 3), expected, 1e-6);
    // One point only, or a dimension too small for a point, or no array: nothing.
    for (const auto& [count, dimension] : {std::pair{2, 2}, {3, 3}, {9, 1}, {9, 0}})
        EXPECT_EQ(sphere.ComputeGeodesic(xyz, count, dimension), 0.0) << count << " " << dimension;
    EXPECT_EQ(sphere.ComputeGeodesic(nullptr, 9, 3), 0.0);
}

TEST(ComputeGeodesic, ParallelSumEqualsTheSerialSum) {
    const LmGeodesic wgs84(kWgs84A, kWgs84InverseF);
    const int points = 20001;
    std::vector<double> xy(2 * points);
    for (int i = 0; i < points; ++i) {
        xy[2 * i] = -170.0 + 340.0 * i / points + 0.3 * std::sin(i * 0.7);
        xy[2 * i + 1] = 60.0 * std::sin(i * 0.001) + 0.2 * std::cos(i * 1.3);
    }
    long double serial = 0;
    LmGeodesicPolygon polyline(kWgs84A, kWgs84InverseF, true);
    polyline.AddPoint(xy[0], xy[1]);
    for (int i = 1; i < points; ++i) {
        serial += wgs84.Inverse(xy[2 * i - 2], xy[2 * i - 1], xy[2 * i], xy[2 * i + 1], nullptr, nullptr);
        polyline.AddPoint(xy[2 * i], xy[2 * i + 1]);
    }
    double perimeter = 0;
    polyline.Compute(false, true, nullptr, &perimeter);
    EXPECT_NEAR(perimeter / static_cast<double>(serial), 1.0, 1e-12);
    for (const int threads : {1, 2, 3, 7}) {
        TeamSize team(threads);
        const double parallel = wgs84.ComputeGeodesic(xy.data(), 2 * points, 2);
        EXPECT_NEAR(parallel / static_cast<double>(serial), 1.0, 1e-13) << threads << " threads";
    }
}

}  // namespace
