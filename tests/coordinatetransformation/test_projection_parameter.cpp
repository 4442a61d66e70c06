#include "projection_fixtures.h"

#include <gtest/gtest.h>

using namespace ProjectionTests;

namespace {

// Beijing 1954 is on the Krassowsky ellipsoid; written without an authority.
const double kKrassowskyA = 6378245.0;
const double kKrassowskyInverseF = 298.3;
const char* const kBeijing1954 =
    R"(GEOGCS["Beijing 1954",DATUM["D_Beijing_1954",SPHEROID["Krassowsky_1940",6378245,298.3]],)"
    R"(PRIMEM["Greenwich",0],UNIT["degree",0.0174532925199433]])";

// Seven parameters in the position vector convention.
const double kShift[7] = {-12.3, -118.6, -35.4, 0.8, -1.2, 2.1, 3.5};

// Where (lon, lat) on the source ellipsoid lands on WGS 84 after the shift.
void ExpectedShift(double sourceA, double sourceInverseF, const double parameters[7], double& lon, double& lat) {
    const Geocentric source = ToGeocentric(sourceA, sourceInverseF, lon, lat);
    ToGeodetic(kWgs84A, kWgs84InverseF, PositionVectorShift(source, parameters), lon, lat);
}

struct Shifted {
    double lon, lat;
};

// A shift from Beijing 1954 to the given target (WGS 84 unless named).
LmSmarterPtr<LmParameterProjectCoordinateTransformation> BeijingShift(
    LmCoordinateTransformationMethod method, const double* parameters,
    LmSmarterPtr<LmSpatialReference> target = Reference(eWGS84)) {
    return new LmParameterProjectCoordinateTransformation(Reference(kBeijing1954), target, method, parameters);
}

Shifted Apply(LmCoordinateTransformation& transformation, double lon, double lat) {
    EXPECT_TRUE(transformation.Transformation(lon, lat));
    return {lon, lat};
}

// Compares a transformation from a geographic source with the closed form of
// a position vector shift, to a millimetre.
void ExpectHelmert(LmCoordinateTransformation& transformation, double sourceA, double sourceInverseF,
                   const double parameters[7], double lon, double lat) {
    double expectedLon = lon, expectedLat = lat;
    ExpectedShift(sourceA, sourceInverseF, parameters, expectedLon, expectedLat);
    const Shifted result = Apply(transformation, lon, lat);
    EXPECT_NEAR(result.lon, expectedLon, 1e-8) << lon << ", " << lat;
    EXPECT_NEAR(result.lat, expectedLat, 1e-8) << lon << ", " << lat;
}

TEST(ParameterProjection, PositionVectorAndTranslationMatchTheHelmertClosedForm) {
    // Three parameters read only the translations, whatever follows them.
    const double translation[7] = {-12.3, -118.6, -35.4, 99.0, 99.0, 99.0, 99.0};
    const double translationOnly[7] = {-12.3, -118.6, -35.4, 0, 0, 0, 0};
    auto sevenParameters = BeijingShift(ePositionVector7Parameter, kShift);
    auto threeParameters = BeijingShift(eGeocentricTranslation3Parameter, translation);
    for (const Shifted point : {Shifted{116.4, 39.9}, Shifted{87.6, 43.8}, Shifted{121.5, 25.0}}) {
        ExpectHelmert(*sevenParameters, kKrassowskyA, kKrassowskyInverseF, kShift, point.lon, point.lat);
        ExpectHelmert(*threeParameters, kKrassowskyA, kKrassowskyInverseF, translationOnly, point.lon, point.lat);
    }
}

TEST(ParameterProjection, CoordinateFrameReversesTheRotations) {
    const double frame[7] = {kShift[0], kShift[1], kShift[2], -kShift[3], -kShift[4], -kShift[5], kShift[6]};
    const Shifted a = Apply(*BeijingShift(ePositionVector7Parameter, kShift), 116.4, 39.9);
    const Shifted b = Apply(*BeijingShift(eCoordinateFrame7Parameter, frame), 116.4, 39.9);
    EXPECT_EQ(a.lon, b.lon);
    EXPECT_EQ(a.lat, b.lat);

    // The same numbers under the other convention land elsewhere (by metres).
    const Shifted c = Apply(*BeijingShift(eCoordinateFrame7Parameter, kShift), 116.4, 39.9);
    EXPECT_GT(std::fabs(c.lon - a.lon) + std::fabs(c.lat - a.lat), 1e-5);
}

TEST(ParameterProjection, ShiftAppliesToProjectedTargets) {
    auto utm = Reference(EpsgWkt(32650).c_str());
    LmProjectCoordinateTransformation wgs84ToUtm(Reference(eWGS84), utm);
    double lon = 117.0, lat = 30.0;
    ExpectedShift(kKrassowskyA, kKrassowskyInverseF, kShift, lon, lat);
    const Shifted expected = Apply(wgs84ToUtm, lon, lat);
    const Shifted result = Apply(*BeijingShift(ePositionVector7Parameter, kShift, utm), 117.0, 30.0);
    EXPECT_NEAR(result.lon, expected.lon, 1e-3);
    EXPECT_NEAR(result.lat, expected.lat, 1e-3);
}

// GDAL 3.4 and later replace a reference that carries an EPSG code by its
// official definition when they build a transformation, which would silently
// drop the shift.
TEST(ParameterProjection, ShiftAppliesToReferencesWithAnEpsgCode) {
    const LmString epsg4214 = EpsgWkt(4214);
    ASSERT_NE(epsg4214.find("AUTHORITY[\"EPSG\",\"4214\"]"), std::string::npos);
    const double translation[3] = {15.8, -154.4, -82.3};
    CPLSetThreadLocalConfigOption("OGR_CT_PREFER_OFFICIAL_SRS_DEF", "YES");
    LmParameterProjectCoordinateTransformation shift(Reference(epsg4214.c_str()), Reference(EpsgWkt(4326).c_str()),
                                                     eGeocentricTranslation3Parameter, translation);
    EXPECT_STREQ(CPLGetThreadLocalConfigOption("OGR_CT_PREFER_OFFICIAL_SRS_DEF", nullptr), "YES");
    CPLSetThreadLocalConfigOption("OGR_CT_PREFER_OFFICIAL_SRS_DEF", nullptr);

    const double expectedParameters[7] = {15.8, -154.4, -82.3, 0, 0, 0, 0};
    ExpectHelmert(shift, kKrassowskyA, kKrassowskyInverseF, expectedParameters, 116.4, 39.9);
}

TEST(ParameterProjection, UnknownMethodsMissingParametersAndNullReferences) {
    double x = 116.4, y = 39.9;
    for (auto source : {LmSmarterPtr<LmSpatialReference>(), Reference("GEOGCS[", eWKT)}) {
        LmParameterProjectCoordinateTransformation shift(source, Reference(eWGS84), ePositionVector7Parameter, kShift);
        EXPECT_FALSE(shift.Transformation(x, y));
    }
    EXPECT_EQ(x, 116.4);
    // The other two leave the plain transformation.
    auto source = Reference(kBeijing1954);
    auto target = Reference(eWGS84);
    LmProjectCoordinateTransformation plain(source, target);
    const Shifted expected = Apply(plain, 116.4, 39.9);

    LmParameterProjectCoordinateTransformation method5(source, target,
                                                       static_cast<LmCoordinateTransformationMethod>(5), kShift);
    EXPECT_EQ(method5.Method(), 5);
    LmParameterProjectCoordinateTransformation noParameters(source, target, ePositionVector7Parameter, nullptr);
    for (LmCoordinateTransformation* transformation :
         {static_cast<LmCoordinateTransformation*>(&method5), static_cast<LmCoordinateTransformation*>(&noParameters)}) {
        const Shifted result = Apply(*transformation, 116.4, 39.9);
        EXPECT_EQ(result.lon, expected.lon);
        EXPECT_EQ(result.lat, expected.lat);
    }
}

TEST(ParameterProjection, ChangingAReferenceDropsTheShiftUntilParametersAreSetAgain) {
    auto source = Reference(kBeijing1954);
    auto target = Reference(eWGS84);
    auto shift = BeijingShift(ePositionVector7Parameter, kShift, target);
    const Shifted shifted = Apply(*shift, 116.4, 39.9);
    LmProjectCoordinateTransformation plain(source, target);
    const Shifted unshifted = Apply(plain, 116.4, 39.9);

    shift->Target(Reference(eWGS84));
    EXPECT_EQ(shift->Method(), ePositionVector7Parameter);
    Shifted result = Apply(*shift, 116.4, 39.9);
    EXPECT_EQ(result.lon, unshifted.lon);
    EXPECT_EQ(result.lat, unshifted.lat);

    shift->Parameter(ePositionVector7Parameter, kShift);
    result = Apply(*shift, 116.4, 39.9);
    EXPECT_EQ(result.lon, shifted.lon);
    EXPECT_EQ(result.lat, shifted.lat);
}

TEST(ParameterProjection, TheCallersReferencesAreNotModified) {
    auto source = Reference(kBeijing1954);
    auto target = Reference(eWGS84);
    const LmString before = source->ExportToWKT(true);
    LmParameterProjectCoordinateTransformation shift(source, target, ePositionVector7Parameter, kShift);
    EXPECT_EQ(source->ExportToWKT(true), before);
    EXPECT_EQ(source->ExportToWKT(true).find("TOWGS84"), std::string::npos);
}
}  // namespace
