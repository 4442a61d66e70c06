// Plane four-parameter and Bursa seven-parameter estimation, their
// transformations, and the geodetic/geocentric conversions under them.
#include "estimation_fixtures.h"

#include <gtest/gtest.h>

#include <unistd.h>

#include <cmath>
#include <limits>
#include <vector>

using namespace EstimationTests;

namespace {

using Factory = LmCoordinateTransformationFactory;

TEST(GeocentricConversion, MatchesProjAndComesBackInTheWorkingArea) {
    auto krass = Reference(kBeijing1954);
    std::vector<double> points = ChinaPoints(20, 92.0, -60.0, 87.0);  // 92 E to 179 E
    std::vector<double> byProj = points;
    ProjGeocentric(kBeijing1954, true, byProj);
    std::vector<double> xyz = points;
    LmGeodeticToGeocentricCoordinateTransformation(krass).Transformation(xyz.data(), 20, 3);
    for (std::size_t k = 0; k < xyz.size(); ++k) EXPECT_NEAR(xyz[k], byProj[k], 1e-6) << k;
    LmGeocentricToGeodeticCoordinateTransformation(krass).Transformation(xyz.data(), 20, 3);
    for (std::size_t k = 0; k < xyz.size(); ++k) EXPECT_NEAR(xyz[k], points[k], k % 3 == 2 ? 1e-6 : 1e-9) << k;
}

TEST(GeocentricConversion, KeepsItsLongitudeRuleOutsideNinetyToOneEightyEast) {
    auto wgs84 = Reference(kCgcs2000);
    // 60 E: atan(Y / X) = pi / 3 is not negative, so 180 - 1.047... comes back.
    double x = 60.0, y = 30.0, z = 0.0;
    LmGeodeticToGeocentricCoordinateTransformation(wgs84).Transformation(x, y, z);
    LmGeocentricToGeodeticCoordinateTransformation(wgs84).Transformation(x, y, z);
    EXPECT_DOUBLE_EQ(x, 180.0 - kPi / 3.0);
    EXPECT_NEAR(y, 30.0, 1e-9);
}

TEST(GeocentricConversion, WithoutZUsesHeightZeroAndWritesOnlyXY) {
    auto grs80 = Reference(kCgcs2000);
    std::vector<double> withZ = {120.0, 30.0, 0.0};
    ProjGeocentric(kCgcs2000, true, withZ);
    double xy[2] = {120.0, 30.0};
    LmGeodeticToGeocentricCoordinateTransformation(grs80).Transformation(xy, 1, 2);
    EXPECT_NEAR(xy[0], withZ[0], 1e-6);
    EXPECT_NEAR(xy[1], withZ[1], 1e-6);
    // Geocentric to geodetic without z takes Z = 0: a point on the equator.
    LmGeocentricToGeodeticCoordinateTransformation(grs80).Transformation(xy, 1, 2);
    EXPECT_NEAR(xy[0], 120.0, 1e-9);
    EXPECT_NEAR(xy[1], 0.0, 1e-9);
    // A null reference is an ellipsoid of size 0; null arrays are refused.
    LmGeodeticToGeocentricCoordinateTransformation nullEllipsoid(nullptr);
    EXPECT_TRUE(nullEllipsoid.Transformation(xy[0], xy[1]));
    EXPECT_EQ(xy[0], 0.0);
    EXPECT_FALSE(nullEllipsoid.Transformation(nullptr, xy, nullptr, 1, 1));
}

TEST(GeocentricConversion, PointsThatCannotConvergeStayAsTheyWere) {
    auto grs80 = Reference(kCgcs2000);
    const double nan = std::numeric_limits<double>::quiet_NaN();
    // On the polar axis, at the centre, and not a number: each would spin the
    // latitude iteration without its bound.
    std::vector<double> xyz = {0.0, 0.0, 6356752.0, 0.0, 0.0, 0.0, nan, 1.0, 2.0, 1.0, nan, 2.0};
    const std::vector<double> before = xyz;
    EXPECT_TRUE(LmGeocentricToGeodeticCoordinateTransformation(grs80).Transformation(xyz.data(), 4, 3));
    for (std::size_t k = 0; k < xyz.size(); ++k)
        EXPECT_TRUE(xyz[k] == before[k] || (std::isnan(xyz[k]) && std::isnan(before[k]))) << k;
}

// The worked example: (10, 20, 3600", 0 ppm) on (1000, 0).
TEST(Plane4Parameter, AppliesTheWorkedExample) {
    const double parameters[4] = {10.0, 20.0, 3600.0, 0.0};
    double x = 1000.0, y = 0.0;
    LmPlane4PatameterCoordinateTransformation(parameters).Transformation(x, y);
    EXPECT_DOUBLE_EQ(x, 1010.0 + 1000.0 * (std::cos(kPi / 180.0) - 1.0));
    EXPECT_DOUBLE_EQ(y, 20.0 + 1000.0 * std::sin(kPi / 180.0));
}

// Recovered plane four-parameter and Bursa parameters are known answers in
// tests/data/estimation.known.

const Helmert kTruth = {-15.4, 150.2, 80.3, 0.8, -1.2, 2.3, 3.5};

// Gauss-Kruger source points go through their geographic reference first.
TEST(Bursa7Parameter, ProjectedSourcePointsGiveTheSameParameters) {
    auto gaussKruger = Reference(kCgcs2000GaussKruger);
    auto cgcs2000 = Reference(kCgcs2000);
    auto beijing1954 = Reference(kBeijing1954);
    const BursaCase c = MakeBursaCase(kTruth, true, 10, 0.0);
    std::vector<double> projected = c.source;
    LmProjectCoordinateTransformation(cgcs2000, gaussKruger).Transformation(projected.data(), 10, 3);
    double fromGeographic[7], fromProjected[7];
    Factory::ComputeBursa7Parameter(cgcs2000, beijing1954, 10, 3, c.source.data(), c.target.data(), fromGeographic);
    Factory::ComputeBursa7Parameter(gaussKruger, beijing1954, 10, 3, projected.data(), c.target.data(),
                                    fromProjected);
    for (int k = 0; k < 7; ++k) EXPECT_NEAR(fromProjected[k], fromGeographic[k], k < 3 ? 1e-2 : 1e-5) << k;
}

// Forward is the linearised model, reverse the exact inverse of s R: the
// round trip is exact unless both rotation and scale change are non-zero.
TEST(Bursa7Parameter, ReverseInvertsTheFullModelNotTheLinearisedForward) {
    const double point[3] = {-2148744.0, 4426641.0, 4044656.0};
    const Helmert cases[] = {{10, -20, 30, 0, 0, 0, 0}, {10, -20, 30, 0, 0, 0, 25}, {10, -20, 30, 1.5, -2.0, 3.0, 0},
                             {10, -20, 30, 1.5, -2.0, 3.0, 25}};
    for (const Helmert& c : cases) {
        const double published[7] = {c.dx, c.dy, c.dz, c.rx, c.ry, c.rz, c.ppm};
        LmBursa7ParameterGeocentricCoordinateTransformation bursa(published);
        std::vector<double> xyz(point, point + 3), linear(point, point + 3), full(point, point + 3);
        bursa.Transformation(xyz.data(), 1, 3);
        HelmertForward(c, true, linear);
        for (int k = 0; k < 3; ++k) EXPECT_NEAR(xyz[k], linear[k], 1e-8);
        ASSERT_TRUE(bursa.ReverseTransformation(xyz.data(), xyz.data() + 1, xyz.data() + 2, 1, 1));
        const double miss = std::hypot(xyz[0] - point[0], xyz[1] - point[1], xyz[2] - point[2]);
        if (c.ppm != 0.0 && c.rx != 0.0) {
            EXPECT_GT(miss, 1e-3);  // m * e * 6.4e6 m is about 2 mm
        } else {
            EXPECT_LT(miss, 1e-8);
        }
        HelmertForward({0, 0, 0, c.rx, c.ry, c.rz, 0}, true, full);
        for (int k = 0; k < 3; ++k) full[k] = (1.0 + c.ppm * 1e-6) * full[k] + published[k];
        bursa.ReverseTransformation(full.data(), full.data() + 1, full.data() + 2, 1, 1);
        for (int k = 0; k < 3; ++k) EXPECT_NEAR(full[k], point[k], 1e-7) << k;
    }
    double x = 1, y = 2;
    LmBursa7ParameterGeocentricCoordinateTransformation identity(nullptr);
    EXPECT_FALSE(identity.ReverseTransformation(&x, &y, nullptr, 1, 1));
    EXPECT_TRUE(identity.Transformation(x, y));  // z null: Z taken as 0
    EXPECT_EQ(x, 1.0);
}

// Death tests: too few points end the process exactly as documented.
TEST(EstimationDeathTest, TooFewPointsEndTheProcessThroughTheLUDecomposition) {
    const double one[2] = {3.0, 4.0};
    EXPECT_EXIT(
        {
            dup2(STDERR_FILENO, STDOUT_FILENO);
            double p[4];
            Factory::ComputePlane4Parameter(1, 2, one, one, p);
        },
        ::testing::ExitedWithCode(1), "^singular matrix!\n$");
    const double two[6] = {1.0, 0.0, 0.0, 0.0, 1.0, 0.0};
    EXPECT_EXIT(
        {
            dup2(STDERR_FILENO, STDOUT_FILENO);
            double p[7];
            Factory::ComputeBursa7Parameter(nullptr, nullptr, 2, 3, two, two, p);
        },
        ::testing::ExitedWithCode(1), "^singular matrix!\n$");
}

}  // namespace
