#include "projection_fixtures.h"

#include <gtest/gtest.h>

using namespace ProjectionTests;

namespace {

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

    // The translation written out through geocentric coordinates on Krassowsky's ellipsoid.
    const Shifted result = Apply(shift, 116.4, 39.9);
    EXPECT_NEAR(result.lon, 116.40063729206994, 1e-8);
    EXPECT_NEAR(result.lat, 39.900294867597232, 1e-8);
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
