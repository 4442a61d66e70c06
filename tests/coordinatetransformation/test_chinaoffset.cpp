#include <lmspatialreference/coordinatetransformation.h>

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

using namespace Lumora::Kernel;

namespace {

using Real = long double;
const Real kPi = 3.141592653589793238462643383279502884L;
const Real kKrasovskyA = 6378245.0L;
const Real kKrasovskyE2 = 0.006693421622965943L;

struct LonLat {
    double lon, lat;
};

Real _MeridianRadius(double lat) {
    const Real phi = Real(lat) * kPi / 180, w2 = 1 - kKrasovskyE2 * std::sin(phi) * std::sin(phi);
    return kKrasovskyA * (1 - kKrasovskyE2) / (w2 * std::sqrt(w2));
}

// The GCJ-02 offset re-derived in long double from the published series.
LonLat _GcjByHand(double lon, double lat) {
    const Real x = Real(lon) - 105, y = Real(lat) - 35;
    const Real common = (20 * std::sin(6 * kPi * x) + 20 * std::sin(2 * kPi * x)) * 2 / 3;
    const Real north = -100 + 2 * x + 3 * y + 0.2L * y * y + 0.1L * x * y + 0.2L * std::sqrt(std::fabs(x)) + common +
                       (20 * std::sin(kPi * y) + 40 * std::sin(kPi * y / 3)) * 2 / 3 +
                       (160 * std::sin(kPi * y / 12) + 320 * std::sin(kPi * y / 30)) * 2 / 3;
    const Real east = 300 + x + 2 * y + 0.1L * x * x + 0.1L * x * y + 0.1L * std::sqrt(std::fabs(x)) + common +
                      (20 * std::sin(kPi * x) + 40 * std::sin(kPi * x / 3)) * 2 / 3 +
                      (150 * std::sin(kPi * x / 12) + 300 * std::sin(kPi * x / 30)) * 2 / 3;
    // The series give metres-like numbers; scale them by the radii of
    // curvature of the Krasovsky ellipsoid to degrees.
    const Real phi = Real(lat) * kPi / 180, w2 = 1 - kKrasovskyE2 * std::sin(phi) * std::sin(phi);
    const Real parallelRadius = kKrasovskyA / std::sqrt(w2) * std::cos(phi);
    return {static_cast<double>(lon + east * 180 / (parallelRadius * kPi)),
            static_cast<double>(lat + north * 180 / (_MeridianRadius(lat) * kPi))};
}

// BD-09 from GCJ-02 by hand: a small polar-coordinate perturbation and a shift.
LonLat _BdByHand(double lon, double lat) {
    const LonLat g = _GcjByHand(lon, lat);
    const Real x = g.lon, y = g.lat;
    const Real r = std::sqrt(x * x + y * y) + 2e-5L * std::sin(kPi * y);
    const Real angle = std::atan2(y, x) + 3e-6L * std::cos(kPi * x);
    return {static_cast<double>(r * std::cos(angle) + 0.0065L), static_cast<double>(r * std::sin(angle) + 0.006L)};
}

// Half the latitude change of a move of `metres` due north on the Krasovsky
// ellipsoid: the tolerance the reverse transformations work to.
double _HalfNorthStep(double lat, double metres) {
    return static_cast<double>(metres / _MeridianRadius(lat) * 180 / kPi / 2);
}

const LonLat kInside[] = {{116.404, 39.915}, {121.4737, 31.2304}, {87.6168, 43.8256}, {109.5119, 18.2528},
                          {126.6424, 45.7567}, {91.1409, 29.6456}, {140.0, 30.0}};

TEST(OutOfChina, UsesTheBoxAsDefinedIncludingTheLatitudeTestOfTheEasternBound) {
    // lon, lat, out of China
    const double cases[][3] = {{140.0, 30.0, 0}, {179.0, 30.0, 0},    {72.0, 30.0, 1},      {72.004, 30.0, 0},
                               {100.0, 0.5, 1},  {100.0, 0.8293, 0}, {100.0, 55.8271, 0}, {100.0, 55.8272, 1}};
    for (const auto& c : cases) EXPECT_EQ(outOfChina(c[0], c[1]), c[2] != 0) << c[0] << " " << c[1];
}

TEST(OffsetFormulas, MatchTheSeriesWorkedByHand) {
    for (const LonLat& p : kInside) {
        const double in[2] = {p.lon, p.lat};
        double gcj[2], bd[2];
        WGS84ToGCJ02(in, gcj, nullptr);
        WGS84ToBD09(in, bd, nullptr);
        const LonLat expectedGcj = _GcjByHand(p.lon, p.lat), expectedBd = _BdByHand(p.lon, p.lat);
        SCOPED_TRACE(testing::Message() << p.lon << " " << p.lat);
        EXPECT_NEAR(gcj[0], expectedGcj.lon, 1e-11);
        EXPECT_NEAR(gcj[1], expectedGcj.lat, 1e-11);
        EXPECT_NEAR(bd[0], expectedBd.lon, 1e-11);
        EXPECT_NEAR(bd[1], expectedBd.lat, 1e-11);
    }
    // The sample pair of the widely used open-source offset converters.
    const double beijing[2] = {116.404, 39.915};
    double out[2];
    WGS84ToGCJ02(beijing, out, nullptr);
    EXPECT_NEAR(out[0], 116.41024449916938, 1e-11);
    EXPECT_NEAR(out[1], 39.91640428150164, 1e-11);
}

TEST(OffsetTransformations, PointsOutsideChinaAreLeftAloneByGcj02ButNotByBd09) {
    LmSmarterPtr<LmCoordinateTransformation> toGcj(new LmWGS84ToGCJ02CoordinateTransformation);
    LmSmarterPtr<LmCoordinateTransformation> fromGcj(new LmGCJ02ToWGS84CoordinateTransformation(0.001));
    LmSmarterPtr<LmCoordinateTransformation> toBd(new LmWGS84ToBD09CoordinateTransformation);
    LmSmarterPtr<LmCoordinateTransformation> fromBd(new LmBD09ToWGS84CoordinateTransformation(0.001));
    const LonLat outside[] = {{10.0, 50.0}, {100.0, 0.5}, {100.0, 60.0}, {-74.0, 40.7}};
    for (const LonLat& p : outside) {
        double x = p.lon, y = p.lat;
        EXPECT_TRUE(toGcj->Transformation(x, y));
        EXPECT_TRUE(x == p.lon && y == p.lat);
        EXPECT_TRUE(fromGcj->Transformation(x, y));
        EXPECT_TRUE(x == p.lon && y == p.lat);
    }
    double x = 10.0, y = 50.0;
    EXPECT_TRUE(toBd->Transformation(x, y));
    const LonLat expected = _BdByHand(10.0, 50.0);
    EXPECT_NEAR(x, expected.lon, 1e-11);
    EXPECT_NEAR(y, expected.lat, 1e-11);
    EXPECT_TRUE(fromBd->Transformation(x, y));
    EXPECT_NEAR(x, 10.0, 1e-7);
    EXPECT_NEAR(y, 50.0, 1e-7);
    // Missing arrays are refused, unlike points outside the box.
    for (auto* t : {&toGcj, &fromGcj, &toBd, &fromBd}) EXPECT_FALSE((*t)->Transformation(nullptr, &y, 1, 1));
}

TEST(OffsetTransformations, ReversesMeetTheToleranceTheirPrecisionSpans) {
    LmSmarterPtr<LmCoordinateTransformation> toGcj(new LmWGS84ToGCJ02CoordinateTransformation);
    LmSmarterPtr<LmCoordinateTransformation> toBd(new LmWGS84ToBD09CoordinateTransformation);
    for (const double metres : {0.001, 0.5}) {
        LmSmarterPtr<LmCoordinateTransformation> fromGcj(new LmGCJ02ToWGS84CoordinateTransformation(metres));
        LmSmarterPtr<LmCoordinateTransformation> fromBd(new LmBD09ToWGS84CoordinateTransformation(metres));
        for (const LonLat& p : kInside) {
            const double tolerance = _HalfNorthStep(p.lat, metres);
            if (metres == 0.001) {
                EXPECT_NEAR(tolerance, 4.5e-9, 0.1e-9);
            }
            for (auto pair : {std::make_pair(fromGcj, toGcj), std::make_pair(fromBd, toBd)}) {
                double x = p.lon, y = p.lat;
                EXPECT_TRUE(pair.first->Transformation(x, y));
                EXPECT_NE(x, p.lon);
                EXPECT_TRUE(pair.second->Transformation(x, y));
                EXPECT_LE(std::hypot(x - p.lon, y - p.lat), tolerance * (1 + 1e-9)) << p.lon << " " << p.lat;
                // At a millimetre the reverse also recovers the WGS 84 point from its image.
                pair.second->Transformation(x, y);
                pair.first->Transformation(x, y);
                if (metres == 0.001) {
                    EXPECT_LE(std::hypot(x - p.lon, y - p.lat), 1e-8);
                }
            }
        }
    }
}

TEST(OffsetTransformations, PrecisionIsStoredAsAPositiveMagnitude) {
    LmGCJ02ToWGS84CoordinateTransformation gcj(0.0);
    EXPECT_EQ(gcj.Precision(), 0.001);
    gcj.Precision(-2.5);
    EXPECT_EQ(gcj.Precision(), 2.5);
    gcj.Precision(std::nan(""));
    EXPECT_EQ(gcj.Precision(), 0.001);
    EXPECT_EQ(LmBD09ToWGS84CoordinateTransformation(-0.25).Precision(), 0.25);
    EXPECT_EQ(LmBD09ToWGS84CoordinateTransformation(0.0).Precision(), 0.001);
}

}  // namespace
