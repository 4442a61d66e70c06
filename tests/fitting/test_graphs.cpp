// Graph interpolation, grid corner offsets and reverse parameters.
#include <lmspatialreference/coordinatetransformationfactory.h>
#include <lmspatialreference/fittingmodels.h>
#include <lmspatialreference/graphsinterpolation.h>

#include <gtest/gtest.h>

#include <cmath>

namespace {

using namespace Lumora::Kernel;
using Factory = LmCoordinateTransformationFactory;

// Corners 0..3 at (0, 0), (10, 0), (0, 10), (10, 10). Each weight runs from
// the far corner, so a corner receives the offsets of the corner diagonally
// opposite (0 <-> 3, 1 <-> 2), worked out by hand from the formulas.
TEST(GraphsInterpolation, WeightsFromTheFarCorner) {
    const double corners[8] = {0, 0, 10, 0, 0, 10, 10, 10};
    const double offsets[8] = {1, 10, 2, 20, 3, 30, 4, 40};
    const struct {
        double x, y, dx, dy;
    } cases[] = {
        {0, 0, 4, 40}, {10, 10, 1, 10}, {10, 0, 3, 30}, {0, 10, 2, 20}, {5, 5, 2.5, 25}, {2.5, 5, 2.75, 27.5},
    };
    LmGraphsInterpolationCoordinateTransformation graph(corners, offsets);
    for (const auto& c : cases) {
        double x = c.x, y = c.y, z = -1.0;
        ASSERT_TRUE(graph.Transformation(x, y, z));
        EXPECT_DOUBLE_EQ(x, c.x + c.dx) << c.x << "," << c.y;
        EXPECT_DOUBLE_EQ(y, c.y + c.dy) << c.x << "," << c.y;
        EXPECT_EQ(z, -1.0);
    }
    // Equal offsets shift every point alike, here along a strided batch.
    const double same[8] = {0.5, -0.25, 0.5, -0.25, 0.5, -0.25, 0.5, -0.25};
    LmGraphsInterpolationCoordinateTransformation flat(corners, same);
    double xy[6] = {1, 2, 7, 3, 12, -4};
    ASSERT_TRUE(flat.Transformation(xy, 3, 2));
    const double expected[6] = {1.5, 1.75, 7.5, 2.75, 12.5, -4.25};
    for (int k = 0; k < 6; ++k) EXPECT_DOUBLE_EQ(xy[k], expected[k]);
    EXPECT_FALSE(flat.Transformation(nullptr, xy, nullptr, 1, 1));
}

const double kPi = 3.141592653589793;
const double kA = 6378137.0, kF = 1.0 / 298.257223563, kE2 = kF * (2.0 - kF);

void ToGeocentric(double lon, double lat, double* xyz) {
    const double L = lon * kPi / 180, B = lat * kPi / 180, N = kA / std::sqrt(1 - kE2 * std::sin(B) * std::sin(B));
    xyz[0] = N * std::cos(B) * std::cos(L);
    xyz[1] = N * std::cos(B) * std::sin(L);
    xyz[2] = N * (1 - kE2) * std::sin(B);
}

// Latitude and longitude in radians by fixed-point iteration on atan2.
void ToGeodetic(const double* xyz, double& L, double& B) {
    const double p = std::hypot(xyz[0], xyz[1]);
    L = std::atan2(xyz[1], xyz[0]);
    B = std::atan2(xyz[2], p * (1 - kE2));
    for (int k = 0; k < 20; ++k) {
        const double N = kA / std::sqrt(1 - kE2 * std::sin(B) * std::sin(B));
        B = std::atan2(xyz[2] + kE2 * N * std::sin(B), p);
    }
}

// On one ellipsoid the offsets are the first-order change of longitude and
// latitude that the geocentric shift causes, in radians.
TEST(GridCoordinatesOffset, MatchesTheGeocentricShiftOnOneEllipsoid) {
    LmSmarterPtr<LmSpatialReference> wgs84(new LmSpatialReference(eWGS84));
    const double shift[3] = {100.0, -50.0, 80.0};
    const double corners[8] = {114, 30, 115, 30, 114, 31, 115, 31};
    double offsets[8] = {};
    ASSERT_TRUE(Factory::ComputeGridCoordinatesOffset(wgs84, wgs84, shift, corners, offsets));
    for (int j = 0; j < 4; ++j) {
        double xyz[3];
        ToGeocentric(corners[2 * j], corners[2 * j + 1], xyz);
        for (int a = 0; a < 3; ++a) xyz[a] += shift[a];
        double L, B;
        ToGeodetic(xyz, L, B);
        // First order: the neglected terms are about shift / radius of the offset.
        EXPECT_NEAR(offsets[2 * j], L - corners[2 * j] * kPi / 180, 1e-9) << j;
        EXPECT_NEAR(offsets[2 * j + 1], B - corners[2 * j + 1] * kPi / 180, 1e-9) << j;
    }
    double untouched[8] = {9, 9, 9, 9, 9, 9, 9, 9};
    EXPECT_FALSE(Factory::ComputeGridCoordinatesOffset(nullptr, wgs84, shift, corners, untouched));
    EXPECT_FALSE(Factory::ComputeGridCoordinatesOffset(wgs84, wgs84, nullptr, corners, untouched));
    EXPECT_EQ(untouched[0], 9.0);
}

// Applies X' = R X + t for the seven-parameter layouts, the scale on the
// diagonal only (linear) or on the whole matrix (scaled).
void Apply7(const double* p, bool scaled, double* r) {
    const double s = 3.1415926535897833 / 180 / 3600, m = p[6] * 1e-6, k = scaled ? 1 + m : 1;
    const double ex = p[3] * s, ey = p[4] * s, ez = p[5] * s;
    const double X = r[0], Y = r[1], Z = r[2];
    r[0] = (1 + m) * X + k * (ez * Y - ey * Z) + p[0];
    r[1] = (1 + m) * Y + k * (-ez * X + ex * Z) + p[1];
    r[2] = (1 + m) * Z + k * (ey * X - ex * Y) + p[2];
}

TEST(ReverseParameter, SevenParameterLayoutsUndoTheForwardTransformation) {
    const double p[7] = {-120.5, 80.25, 45.0, 1.5, -2.0, 0.75, 3.5};
    for (LmParameterType type : {eLinear7Parameter, eBursa7Parameter}) {
        const bool scaled = type == eBursa7Parameter;
        double reverse[7] = {};
        Factory::ComputeReverseParameter(type, p, reverse, nullptr);
        // To first order the reverse negates every parameter.
        for (int k = 3; k < 7; ++k) EXPECT_NEAR(reverse[k], -p[k], 1e-4) << type << " " << k;
        double r[3] = {-2148744.0, 4426641.0, 4044656.0};
        const double start[3] = {r[0], r[1], r[2]};
        Apply7(p, scaled, r);
        Apply7(reverse, scaled, r);
        // What is left is second order in the rotations and scale.
        for (int a = 0; a < 3; ++a) EXPECT_NEAR(r[a], start[a], 2e-3) << type << " " << a;
    }
    // Zero rotations and scale: the negated shifts exactly.
    const double shiftOnly[7] = {10, -20, 30, 0, 0, 0, 0};
    double reverse[7];
    Factory::ComputeReverseParameter(eBursa7Parameter, shiftOnly, reverse, nullptr);
    const double expected[7] = {-10, 20, -30, 0, 0, 0, 0};
    for (int k = 0; k < 7; ++k) EXPECT_DOUBLE_EQ(reverse[k] + 0.0, expected[k]) << k;
}

// The reverse of a plane four-parameter set is exact in x, while both reverse
// shifts carry the first component.
TEST(ReverseParameter, PlaneFourParameterRepeatsTheFirstShift) {
    const double p[4] = {350.0, -1200.0, 7200.0, 25.0};
    double reverse[4] = {};
    Factory::ComputeReverseParameter(ePlane4Parameter, p, reverse, nullptr);
    EXPECT_EQ(reverse[0], reverse[1]);
    EXPECT_NEAR(reverse[2], -7200.0, 1e-8);
    EXPECT_NEAR(reverse[3], (1 / (1 + 25e-6) - 1) * 1e6, 1e-8);
    const double theta = p[2] * 3.141592653589793 / 180 / 3600, k = 1 + p[3] * 1e-6;
    const double x = 1000.0, y = 2000.0;
    const double X = k * (std::cos(theta) * x - std::sin(theta) * y) + p[0];
    const double Y = k * (std::sin(theta) * x + std::cos(theta) * y) + p[1];
    const double thetaR = reverse[2] * 3.141592653589793 / 180 / 3600, kR = 1 + reverse[3] * 1e-6;
    EXPECT_NEAR(kR * (std::cos(thetaR) * X - std::sin(thetaR) * Y) + reverse[0], x, 1e-6);
}

TEST(ReverseParameter, CubeFourParameterUndoesTheAxisRotation) {
    const double axis[2] = {35.0, 110.0};  // degrees
    const double p[4] = {12.0, -4.0, 7.5, 2.0};
    double reverse[4] = {};
    Factory::ComputeReverseParameter(eCube4Parameter, p, reverse, axis);
    EXPECT_NEAR(reverse[3], -2.0, 1e-4);
    const double phi = axis[0] * 3.1415926535897833 / 180, lambda = axis[1] * 3.1415926535897833 / 180;
    LmCube4Parameter forward, back;
    forward.Create(phi, lambda, p);
    back.Create(phi, lambda, reverse);
    double x = -2148744.0, y = 4426641.0, z = 4044656.0;
    forward.trans(x, y, z);
    back.trans(x, y, z);
    EXPECT_NEAR(x, -2148744.0, 1e-3);
    EXPECT_NEAR(y, 4426641.0, 1e-3);
    EXPECT_NEAR(z, 4044656.0, 1e-3);
    // No axis, an unknown type or a NaN (which would end the process in the
    // LU decomposition): nothing is written.
    double untouched[7] = {5, 5, 5, 5, 5, 5, 5};
    const double nan[7] = {NAN, 0, 0, 0, 0, 0, 0};
    Factory::ComputeReverseParameter(eCube4Parameter, p, untouched, nullptr);
    Factory::ComputeReverseParameter(eLinear7Parameter, nan, untouched, nullptr);
    Factory::ComputeReverseParameter(static_cast<LmParameterType>(9), p, untouched, axis);
    EXPECT_EQ(untouched[0], 5.0);
}

}  // namespace
