#include <lmspatialreference/coordinatetransformation.h>

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

using namespace Lumora::Kernel;

namespace {

// The offsets themselves are known answers in tests/data/chinaoffsets.known.

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

// Half the latitude change of a move of `metres` due north on the Krasovsky
// ellipsoid: the tolerance the reverse transformations work to.
double _HalfNorthStep(double lat, double metres) {
    return static_cast<double>(metres / _MeridianRadius(lat) * 180 / kPi / 2);
}

const LonLat kInside[] = {{116.404, 39.915}, {121.4737, 31.2304}, {87.6168, 43.8256}, {109.5119, 18.2528},
                          {126.6424, 45.7567}, {91.1409, 29.6456}, {140.0, 30.0}};

TEST(OffsetTransformations, PointsOutsideChinaAreLeftAloneByGcj02ButNotByBd09) {
    LmSmarterPtr<LmCoordinateTransformation> toGcj(new LmWGS84ToGCJ02CoordinateTransformation);
    LmSmarterPtr<LmCoordinateTransformation> fromGcj(new LmGCJ02ToWGS84CoordinateTransformation(0.001));
    LmSmarterPtr<LmCoordinateTransformation> toBd(new LmWGS84ToBD09CoordinateTransformation);
    LmSmarterPtr<LmCoordinateTransformation> fromBd(new LmBD09ToWGS84CoordinateTransformation(0.001));
    const LonLat outside[] = {{10.0, 50.0}, {100.0, 0.5}, {100.0, 60.0}, {-74.0, 40.7}};
    for (const LonLat& p : outside) {
        double x = p.lon, y = p.lat;
        EXPECT_TRUE(toGcj->Transformation(x, y));
        EXPECT_EQ(x, p.lon);
        EXPECT_EQ(y, p.lat);
        EXPECT_TRUE(fromGcj->Transformation(x, y));
        EXPECT_EQ(x, p.lon);
        EXPECT_EQ(y, p.lat);
    }
    double x = 10.0, y = 50.0;
    EXPECT_TRUE(toBd->Transformation(x, y));
    EXPECT_NEAR(x, 10.022319479091298, 1e-11);  // as bd09 in chinaoffsets.known
    EXPECT_NEAR(y, 50.004208084448834, 1e-11);
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
