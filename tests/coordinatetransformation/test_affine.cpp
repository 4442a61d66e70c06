#include <lmspatialreference/coordinatetransformation.h>

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

using namespace Lumora::Kernel;

namespace {

// A general affine map in Gauss-Krueger-sized coordinates.
const double kElements[6] = {0.9998, 0.0123, -0.0121, 1.0003, 25.75, -130.5};

void _apply(const double* m, double x, double y, double* out) {
    out[0] = m[0] * x + m[2] * y + m[4];
    out[1] = m[1] * x + m[3] * y + m[5];
}

std::vector<double> _images(const double* m, const std::vector<double>& points) {
    std::vector<double> images(points.size());
    for (std::size_t k = 0; k < points.size(); k += 2) _apply(m, points[k], points[k + 1], &images[k]);
    return images;
}

void _expect_elements(const LmAffineCoordinateTransformation& affine, const double* expected, double tolerance) {
    for (int k = 0; k < 6; ++k) EXPECT_NEAR(affine.Matrix()[k], expected[k], tolerance) << "element " << k;
}

const double kIdentity[6] = {1, 0, 0, 1, 0, 0};

}  // namespace

TEST(AffineConstruction, RotationIsCounterClockwiseAboutItsCentreAndTranslationIsAnOffset) {
    struct Case {
        LmAffineCoordinateTransformation affine;
        double x, y, expectedX, expectedY;
    };
    Case cases[] = {{{1.0, 1.0, 90.0}, 2.0, 1.0, 1.0, 2.0},
                    {{0.0, 0.0, 30.0}, 1.0, 0.0, std::sqrt(3.0) / 2.0, 0.5},
                    {{3.0, -4.0}, 1.0, 1.0, 4.0, -3.0}};
    for (Case& c : cases) {
        double x = c.x, y = c.y;
        EXPECT_TRUE(c.affine.Transformation(x, y));
        EXPECT_NEAR(x, c.expectedX, 1e-15) << c.expectedX;
        EXPECT_NEAR(y, c.expectedY, 1e-15) << c.expectedY;
    }
    // Elements run column by column: x factors, y factors, then the offsets.
    const double expected[6] = {1, 0, 0, 1, 3, -4};
    _expect_elements(cases[2].affine, expected, 0.0);
}

TEST(AffineEstimation, ThreeGeneralPointsAreReproducedExactly) {
    const std::vector<double> source = {500123.25, 3500456.75, 512345.5, 3498765.25, 505432.125, 3512345.5};
    const std::vector<double> target = _images(kElements, source);
    LmAffineCoordinateTransformation affine(source.data(), target.data(), 6);
    // The offsets absorb the rounding of the linear part times 3.5e6.
    for (int k = 0; k < 4; ++k) EXPECT_NEAR(affine.Matrix()[k], kElements[k], 1e-9) << k;
    EXPECT_NEAR(affine.Matrix()[4], kElements[4], 1e-2);
    EXPECT_NEAR(affine.Matrix()[5], kElements[5], 1e-2);
    EXPECT_EQ(affine.IdenticalPointCount(), 6);
    std::vector<double> points = source;
    affine.Transformation(points.data(), 3, 2);
    for (int k = 0; k < 6; ++k) EXPECT_NEAR(points[k], target[k], 1e-6) << k;
}

TEST(AffineEstimation, ExactFitsSucceedWhateverTheSignOfTheRoundedMinimum) {
    // Many exact fits: rounding leaves the minimum slightly negative for about
    // half of them, which must not count as failure.
    int succeeded = 0;
    for (int shift = 0; shift < 40; ++shift) {
        const double d = 997.0 * shift;
        const std::vector<double> source = {3500000.0 + d, 3500000.0,     3500731.3 + d,
                                            3500017.9,     3499911.7 + d, 3500642.1 - d};
        const std::vector<double> target = _images(kElements, source);
        LmAffineCoordinateTransformation affine(1.0, 2.0);
        succeeded += affine.Parameter(source.data(), target.data(), 6);
    }
    EXPECT_EQ(succeeded, 40);
}

TEST(AffineEstimation, OverdeterminedFitIgnoresResidualsOrthogonalToTheModel) {
    // Residuals +e, -e, -e, +e at the corners of a square are orthogonal to
    // x, y and 1, so the least-squares map is the exact one.
    const std::vector<double> source = {0, 0, 100, 0, 0, 100, 100, 100};
    std::vector<double> target = _images(kElements, source);
    const double e = 0.25;
    const double sign[4] = {1, -1, -1, 1};
    for (int k = 0; k < 4; ++k) {
        target[2 * k] += sign[k] * e;
        target[2 * k + 1] -= sign[k] * e;
    }
    LmAffineCoordinateTransformation affine(1.0, 2.0);
    EXPECT_TRUE(affine.Parameter(source.data(), target.data(), 8));
    _expect_elements(affine, kElements, 1e-12);
    EXPECT_EQ(affine.IdenticalPointCount(), 8);
}

TEST(AffineEstimation, CollinearPointsFailAndLeaveTheElements) {
    const std::vector<std::vector<double>> lines = {
        {0, 0, 1, 1, 2, 2},
        {-3, 7, 1, -1, 5, -9},
        {500000, 3500000, 500000, 3500100, 500000, 3500300},  // along y only
        {500000.5, 3500000.25, 501000.5, 3501000.25, 502500.5, 3502500.25},
        {500000, 3500000, 500100, 3500100, 500300, 3500300, 500400, 3500400},
    };
    for (const std::vector<double>& source : lines) {
        const std::vector<double> target = _images(kElements, source);
        const int n = static_cast<int>(source.size());

        LmAffineCoordinateTransformation estimated(source.data(), target.data(), n);
        _expect_elements(estimated, kIdentity, 0.0);
        EXPECT_EQ(estimated.IdenticalPointCount(), n);

        LmAffineCoordinateTransformation translation(3.0, 4.0);
        EXPECT_FALSE(translation.Parameter(source.data(), target.data(), n));
        const double expected[6] = {1, 0, 0, 1, 3, 4};
        _expect_elements(translation, expected, 0.0);
    }
}

TEST(AffineEstimation, FewerThanThreePointsChangeNothing) {
    const std::vector<double> source = {0, 0, 10, 0, 0, 10};
    const std::vector<double> target = _images(kElements, source);
    LmAffineCoordinateTransformation affine(source.data(), target.data(), 6);
    const double pairs[4] = {1, 2, 3, 4};
    EXPECT_FALSE(affine.Parameter(pairs, pairs, 4));
    EXPECT_EQ(affine.IdenticalPointCount(), 6);
    EXPECT_EQ(affine.SourcePoint()[0], 0.0);
    _expect_elements(affine, kElements, 1e-12);
}

