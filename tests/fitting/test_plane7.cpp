// Plane seven-parameter estimation and transformations in two and three
// dimensions. The model hands the stored coordinate values to sine and cosine
// unconverted, so the points below are read as radians by it.
#include "estimation_fixtures.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

using namespace EstimationTests;

namespace {

using Factory = LmCoordinateTransformationFactory;

const double kParameters[7] = {20.0, -30.0, 15.0, 0.4, -0.6, 0.9, 2.5};

TEST(Plane7Parameter, IdenticalEllipsoidsAndPointsGiveZeroParametersAndError) {
    auto cgcs2000 = Reference(kCgcs2000);
    const std::vector<double> points = ChinaPoints(9);
    for (const bool threeD : {false, true}) {
        double p[7], meanError = -1.0;
        if (threeD) {
            Factory::ComputePlane7Parameter3D(cgcs2000, cgcs2000, 9, 3, points.data(), points.data(), p, meanError);
        } else {
            Factory::ComputePlane7Parameter(cgcs2000, cgcs2000, 9, 3, points.data(), points.data(), p, meanError);
        }
        for (int k = 0; k < 7; ++k) EXPECT_EQ(p[k], 0.0) << k;
        EXPECT_EQ(meanError, 0.0);  // never NaN for an exact fit
    }
}

// Targets made by the transformation itself: the estimators fit that model,
// so estimating gives back the parameters it was built with.
TEST(Plane7Parameter, EstimatingWhatTheTransformationProducedGivesItsParameters) {
    auto beijing1954 = Reference(kBeijing1954);
    auto cgcs2000 = Reference(kCgcs2000);
    const std::vector<double> source = ChinaPoints(12);
    for (const bool threeD : {false, true}) {
        std::vector<double> target = source;
        LmSmarterPtr<LmCoordinateTransformation> forward;
        if (threeD) {
            forward = new LmPlane7PatameterCoordinateTransformation3D(kParameters, beijing1954, cgcs2000);
        } else {
            forward = new LmPlane7PatameterCoordinateTransformation(kParameters, beijing1954, cgcs2000);
        }
        forward->Transformation(target.data(), 12, 3);
        double p[7];
        const double meanError =
            threeD ? Factory::ComputePlane7Parameter3D(beijing1954, cgcs2000, 12, 3, source.data(), target.data(), p)
                   : Factory::ComputePlane7Parameter(beijing1954, cgcs2000, 12, 3, source.data(), target.data(), p);
        for (int k = 0; k < 7; ++k) EXPECT_NEAR(p[k], kParameters[k], 1e-6) << k << (threeD ? " 3D" : " 2D");
        EXPECT_LT(meanError, 1e-9);
        EXPECT_FALSE(std::isnan(meanError));
    }
}

// A pure 10 m height offset: the height rows weigh 1e-10 against the
// horizontal ones, so the shifts barely move and the mean error is
// sqrt(1e-10 * 10^2) = 1e-4.
TEST(Plane7Parameter, HeightEquationsCarryTheFixedSmallWeight) {
    auto cgcs2000 = Reference(kCgcs2000);
    const std::vector<double> source = ChinaPoints(12);
    std::vector<double> target = source;
    for (std::size_t k = 2; k < target.size(); k += 3) target[k] += 10.0;
    double p[7];
    const double meanError =
        Factory::ComputePlane7Parameter3D(cgcs2000, cgcs2000, 12, 3, source.data(), target.data(), p);
    for (int k = 0; k < 3; ++k) EXPECT_LT(std::fabs(p[k]), 1e-3) << k;
    EXPECT_NEAR(meanError, 1e-4, 2e-6);
}

// Single parameters expose single coefficients (same ellipsoid, height 0).
TEST(Plane7Parameter, KeepsThePublishedCoefficientAsymmetries) {
    auto cgcs2000 = Reference(kCgcs2000);
    const double L = 2.0, B = 0.5;  // as the model reads them
    const double dX[7] = {1, 0, 0, 0, 0, 0, 0};
    double x2 = L, y2 = B, x3 = L, y3 = B, z3 = 0.0;
    LmPlane7PatameterCoordinateTransformation(dX, cgcs2000, cgcs2000).Transformation(x2, y2);
    LmPlane7PatameterCoordinateTransformation3D(dX, cgcs2000, cgcs2000).Transformation(x3, y3, z3);
    // The latitude row's shift terms: + in 2D, - in 3D.
    EXPECT_NEAR(y2 - B, -(y3 - B), 1e-12 * std::fabs(y2 - B));
    EXPECT_NEAR(x2, x3, 1e-12);
    EXPECT_DOUBLE_EQ(z3, std::cos(B) * std::cos(L));
    // Without z the 3D form evaluates at height 0.
    double x0 = L, y0 = B;
    LmPlane7PatameterCoordinateTransformation3D(dX, cgcs2000, cgcs2000).Transformation(x0, y0);
    EXPECT_EQ(x0, x3);
    EXPECT_EQ(y0, y3);

    // The height row's dY coefficient is sin B sin L as published.
    const double dY[7] = {0, 1, 0, 0, 0, 0, 0};
    double x = L, y = B, z = 0.0;
    LmPlane7PatameterCoordinateTransformation3D(dY, cgcs2000, cgcs2000).Transformation(x, y, z);
    EXPECT_DOUBLE_EQ(z, std::sin(B) * std::sin(L));

    // The flattening change reaches the height divided by 1 - a: negligible.
    auto flatter = Reference("+proj=longlat +a=6378137 +rf=297 +no_defs");
    const double none[7] = {};
    x = L, y = B, z = 0.0;
    LmPlane7PatameterCoordinateTransformation3D(none, cgcs2000, flatter).Transformation(x, y, z);
    EXPECT_LT(std::fabs(z), 1e-4);
    EXPECT_NE(z, 0.0);
    EXPECT_GT(std::fabs(y - B), 1.0);  // while the latitude moves by seconds of arc
}

// A geocentric reference is neither projected nor geographic: its points are
// taken as they are, so the estimate equals the geographic one on the same numbers.
TEST(Plane7Parameter, PointsOfOtherReferencesAreTakenAsTheyAre) {
    auto geographic = Reference(kCgcs2000);
    auto geocentric = Reference("+proj=geocent +ellps=GRS80 +units=m +no_defs");
    const std::vector<double> source = ChinaPoints(8);
    std::vector<double> target = source;
    LmPlane7PatameterCoordinateTransformation(kParameters, geographic, geographic).Transformation(target.data(), 8, 3);
    double asGeographic[7], asOther[7];
    Factory::ComputePlane7Parameter(geographic, geographic, 8, 3, source.data(), target.data(), asGeographic);
    Factory::ComputePlane7Parameter(geocentric, geocentric, 8, 3, source.data(), target.data(), asOther);
    for (int k = 0; k < 7; ++k) EXPECT_EQ(asOther[k], asGeographic[k]) << k;
}

}  // namespace
