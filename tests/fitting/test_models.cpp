// Cube four-parameter, Molodensky and square fitting: the estimators recover
// parameters from control points made with closed forms written here, and the
// models reproduce them.
#include <lmspatialreference/coordinatetransformationfactory.h>
#include <lmspatialreference/fittingmodels.h>

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

namespace {

using namespace Lumora::Kernel;
using Factory = LmCoordinateTransformationFactory;

const double kSecond = 3.141592653589793 / 180.0 / 3600.0;  // radians per second of arc

// Geocentric control points spread over a few hundred kilometres.
const std::vector<double> kGeocentric = {
    -2148744.0, 4426641.0, 4044656.0,  -2201000.5, 4380112.25, 4072310.0, -2105333.0, 4475000.0, 3998765.5,
    -2250123.0, 4460789.0, 3990001.0,  -2170456.75, 4390555.0, 4101234.0, -2120000.0, 4410000.0, 4060000.0,
};
const int kPoints = 6;

// Molodensky about (X0, Y0, Z0) with the rotations in radians and the scale
// as the change m, written out from the rotation matrix I + [e]x.
void Molodensky(const double* p, const double* c, const double* in, double* out) {
    const double d[3] = {in[0] - c[0], in[1] - c[1], in[2] - c[2]};
    const double ex = p[3] * kSecond, ey = p[4] * kSecond, ez = p[5] * kSecond, m = p[6] * 1e-6;
    const double rotated[3] = {d[0] + ez * d[1] - ey * d[2], -ez * d[0] + d[1] + ex * d[2],
                               ey * d[0] - ex * d[1] + d[2]};
    for (int a = 0; a < 3; ++a) out[a] = c[a] + p[a] + rotated[a] + m * d[a];
}

// r + p + theta * (u x r), with the cross product expanded component-wise.
void Cube(double phi, double lambda, const double* p, const double* in, double* out) {
    const double u[3] = {std::cos(phi) * std::cos(lambda), std::cos(phi) * std::sin(lambda), std::sin(phi)};
    const double cross[3] = {u[1] * in[2] - u[2] * in[1], u[2] * in[0] - u[0] * in[2], u[0] * in[1] - u[1] * in[0]};
    const double theta = p[3] * 3.1415926535897833 / 180.0 / 3600.0;
    for (int a = 0; a < 3; ++a) out[a] = in[a] + p[a] + theta * cross[a];
}

// Parameters are recovered from exact synthetic pairs, with null references
// (the points are geocentric already), with and without a centre. Residuals
// near zero also show the model class agreeing with the formulas above.
TEST(MolodenskyEstimation, RecoversParametersWithAndWithoutCentre) {
    const double centre[3] = {-2170000.0, 4420000.0, 4050000.0};
    const double origin[3] = {0.0, 0.0, 0.0};
    struct Case {
        double p[7];
        bool centred;
    } cases[] = {
        {{12.0, -7.5, 3.25, 1.2, -0.8, 2.5, 4.0}, true},
        {{12.0, -7.5, 3.25, 1.2, -0.8, 2.5, 4.0}, false},
        {{-95.0, 40.0, 80.0, 0.0, 0.0, 0.0, 0.0}, false},  // a pure shift
    };
    for (const Case& c : cases) {
        const double* at = c.centred ? centre : origin;
        std::vector<double> target(kGeocentric.size());
        for (int i = 0; i < kPoints; ++i) Molodensky(c.p, at, &kGeocentric[3 * i], &target[3 * i]);
        double params[7] = {};
        const double meanError = Factory::ComputeMolodenskyParameter(
            nullptr, nullptr, kPoints, 3, kGeocentric.data(), target.data(), params, c.centred ? centre : nullptr);
        // The square root of the rounding left in the minimum.
        EXPECT_GE(meanError, 0.0);
        EXPECT_LT(meanError, 1e-2);
        for (int k = 0; k < 3; ++k) EXPECT_NEAR(params[k], c.p[k], c.centred ? 1e-5 : 2e-2) << k;
        for (int k = 3; k < 7; ++k) EXPECT_NEAR(params[k], c.p[k], 1e-5) << k;

        LmEstimationResult result;
        ASSERT_TRUE(Factory::ComputeMolodenskyParameter(nullptr, nullptr, kPoints, 3, kGeocentric.data(),
                                                        target.data(), result, c.centred ? centre : nullptr));
        ASSERT_EQ(result.parameters.size(), 7u);
        EXPECT_DOUBLE_EQ(result.parameters[6], params[6]);
        ASSERT_EQ(result.residuals.size(), 3u * kPoints);
        for (double r : result.residuals) EXPECT_LT(std::fabs(r), 1e-4);
    }
}

TEST(CubeEstimation, RecoversParametersAndReportsResiduals) {
    const double phi = 0.6, lambda = 2.0, p[4] = {1.5, -2.0, 3.0, 4.5};
    std::vector<double> target(kGeocentric.size());
    for (int i = 0; i < kPoints; ++i) Cube(phi, lambda, p, &kGeocentric[3 * i], &target[3 * i]);
    // One point is moved off the model, so the residuals have something to show.
    target[3 * 4 + 2] += 0.3;
    double params[4] = {};
    double meanError = -1.0;
    Factory::ComputeCube4Parameter(nullptr, nullptr, phi, lambda, kPoints, 3, kGeocentric.data(), target.data(),
                                   params, meanError);
    for (int k = 0; k < 3; ++k) EXPECT_NEAR(params[k], p[k], 0.2) << k;
    EXPECT_NEAR(params[3], p[3], 0.05);
    EXPECT_GT(meanError, 0.0);
    LmEstimationResult result;
    ASSERT_TRUE(Factory::ComputeCube4Parameter(nullptr, nullptr, phi, lambda, kPoints, 3, kGeocentric.data(),
                                               target.data(), result));
    EXPECT_EQ(result.worstPoint, 4);
    EXPECT_DOUBLE_EQ(result.meanError, meanError);
    double squares = 0.0;
    for (double r : result.residuals) squares += r * r;
    // The minimum of the normal equations is the residual sum of squares.
    EXPECT_NEAR(std::sqrt(squares / kPoints), meanError, 1e-6);

    // Exact pairs: exact parameters and a mean error of 0, never NaN.
    target[3 * 4 + 2] -= 0.3;
    EXPECT_EQ(Factory::ComputeCube4Parameter(nullptr, nullptr, phi, lambda, kPoints, 3, kGeocentric.data(),
                                             target.data(), params) >= 0.0,
              true);
    for (int k = 0; k < 4; ++k) EXPECT_NEAR(params[k], p[k], 1e-5) << k;
}

TEST(CheckedEstimation, RefusesPointsThatCannotDetermineTheModel) {
    const std::vector<double> one(kGeocentric.begin(), kGeocentric.begin() + 3);
    // Three points on one line leave a rotation about that line free.
    const std::vector<double> line = {0.0, 0.0, 6.4e6, 0.0, 0.0, 6.5e6, 0.0, 0.0, 6.6e6};
    LmEstimationResult result;
    EXPECT_FALSE(Factory::ComputeCube4Parameter(nullptr, nullptr, 0.1, 0.2, 1, 3, one.data(), one.data(), result));
    EXPECT_FALSE(Factory::ComputeMolodenskyParameter(nullptr, nullptr, 3, 3, line.data(), line.data(), result,
                                                     nullptr));
    EXPECT_FALSE(Factory::ComputeMolodenskyParameter(nullptr, nullptr, kPoints, 2, kGeocentric.data(),
                                                     kGeocentric.data(), result, nullptr));
    EXPECT_FALSE(
        Factory::ComputeCube4Parameter(nullptr, nullptr, 0.1, 0.2, kPoints, 3, nullptr, kGeocentric.data(), result));
    EXPECT_TRUE(result.parameters.empty());
}

// A grid of projected-size coordinates and a correction known in
// origin-reduced coordinates (origin = the first point rounded down).
TEST(SquareFitting, RecoversSecondOrderCorrectionAndConstantShift) {
    const double x0 = 500000.0, y0 = 3000000.0;
    const double a[6] = {0.5, 1e-3, -2e-3, 1e-6, 2e-6, -1e-6};
    const double b[6] = {-0.25, 3e-4, 5e-4, -2e-6, 1e-6, 3e-6};
    const double shiftOnly[6] = {7.5, 0.0, 0.0, 0.0, 0.0, 0.0};
    const double shiftOnlyY[6] = {-3.25, 0.0, 0.0, 0.0, 0.0, 0.0};
    struct Case {
        const double* a;
        const double* b;
    } cases[] = {{a, b}, {shiftOnly, shiftOnlyY}};
    for (const Case& c : cases) {
        std::vector<double> src, dst;
        for (int i = 0; i < 4; ++i)
            for (int j = 0; j < 4; ++j) {
                const double xr = 0.75 + 100.0 * i + 7.0 * j, yr = 0.5 + 90.0 * j - 3.0 * i;
                const double w[6] = {1.0, xr, yr, xr * yr, xr * xr, yr * yr};
                double dx = 0.0, dy = 0.0;
                for (int k = 0; k < 6; ++k) dx += c.a[k] * w[k], dy += c.b[k] * w[k];
                src.insert(src.end(), {x0 + xr, y0 + yr, 0.0});
                dst.insert(dst.end(), {x0 + xr + dx, y0 + yr + dy, 0.0});
            }
        LmSquareFittingTransformation fit;
        fit.Create(16, 3, src.data(), dst.data());
        EXPECT_EQ(fit.OriginX(), x0);
        EXPECT_EQ(fit.OriginY(), y0);
        for (int k = 0; k < 6; ++k) {
            EXPECT_NEAR(fit.XCoefficients()[k + 1], c.a[k], 1e-9 + 1e-7 * std::fabs(c.a[k])) << k;
            EXPECT_NEAR(fit.YCoefficients()[k + 1], c.b[k], 1e-9 + 1e-7 * std::fabs(c.b[k])) << k;
        }
        EXPECT_GE(fit.MeanError(), 0.0);
        EXPECT_LT(fit.MeanError(), 1e-6);
        double x = src[3 * 5], y = src[3 * 5 + 1], z = 42.0;
        fit.trans(x, y, z);
        EXPECT_NEAR(x, dst[3 * 5], 1e-6);
        EXPECT_NEAR(y, dst[3 * 5 + 1], 1e-6);
        EXPECT_EQ(z, 42.0);
    }
}

// With z null, every point gets the height the previous point's trans left:
// with ey of one radian x' = x - z, and dZ raises the carried height by 100
// at each point.
TEST(TransImp, CarriesTheHeightFromPointToPointWhenZIsNull) {
    const double p[7] = {0.0, 0.0, 100.0, 0.0, 180.0 * 3600.0 / 3.141592653589793, 0.0, 0.0};
    TransImp<LmMolodensky7Parameter> t;
    t.Create(p, nullptr);
    double x[3] = {0.0, 0.0, 0.0}, y[3] = {0.0, 0.0, 0.0};
    ASSERT_TRUE(t.Transformation(x, y, nullptr, 3, 1));
    EXPECT_NEAR(x[0], 0.0, 1e-9);
    EXPECT_NEAR(x[1], -100.0, 1e-9);
    EXPECT_NEAR(x[2], -200.0, 1e-9);
    // Given heights are used point by point, interleaved at step 3.
    double xyz[9] = {};
    ASSERT_TRUE(t.Transformation(xyz, xyz + 1, xyz + 2, 3, 3));
    for (int i = 0; i < 3; ++i) {
        EXPECT_NEAR(xyz[3 * i], 0.0, 1e-9);
        EXPECT_NEAR(xyz[3 * i + 2], 100.0, 1e-9);
    }
    EXPECT_FALSE(t.Transformation(nullptr, y, nullptr, 1, 1));
}

}  // namespace
