#include "tests/fixtures.h"

#include <gtest/gtest.h>

using namespace Fixtures;
using Lumora::Utility::LmEnumParser;
using Lumora::Utility::LmEnumType;

namespace {

LmString GeographicWithUnit(const char* unit) {
    return LmString(R"(GEOGCS["g",DATUM["d",SPHEROID["s",6378137,298.257223563]],PRIMEM["Greenwich",0],UNIT[")") +
           unit + R"(",0.0174532925199433]])";
}

TEST(NullReference, EveryQueryAnswersItsNullValue) {
    LmSpatialReference null(nullptr, eWKT);
    LmSpatialReference other(eWGS84);
    EXPECT_TRUE(null.IsNull());
    EXPECT_EQ(null.Handle(), nullptr);
    EXPECT_FALSE(null.IsGeographic());
    EXPECT_FALSE(null.IsProjected());
    EXPECT_FALSE(null.IsLocalCS());
    for (const LmString& text : {null.Name(), null.Ellipsoid(), null.Projection(), null.ExportToWKT(false),
                                 null.ExportToWKT(true), null.ExportToXml(), null.ExportToProj4()})
        EXPECT_EQ(text, "");
    for (double value : {null.EquatorialRadiusA(), null.PolarRadiusB(), null.FlattenInverseF(), null.MeanRadius()})
        EXPECT_EQ(value, 0.0);
    EXPECT_EQ(static_cast<int>(null.Units()), 0);
    EXPECT_FALSE(null.Geographic());
    EXPECT_TRUE(null.Clone()->IsNull());
    EXPECT_FALSE(null.IsSameGeogCS(&other));
    EXPECT_FALSE(null.IsSameProjCS(&other));
    EXPECT_FALSE(null.IsSameParameter(&other));
    EXPECT_FALSE(other.IsSameParameter(&null));
}

TEST(Radii, OfWgs84) {
    LmSpatialReference wgs84(eWGS84);
    const double a = 6378137.0;
    const double b = a * (1.0 - 1.0 / 298.257223563);
    EXPECT_EQ(wgs84.EquatorialRadiusA(), a);
    EXPECT_NEAR(wgs84.PolarRadiusB(), 6356752.314245, 1e-6);
    EXPECT_NEAR(wgs84.PolarRadiusB(), b, 1e-8);
    EXPECT_NEAR(wgs84.MeanRadius(), (a + b) / 2.0, 1e-8);
    EXPECT_DOUBLE_EQ(wgs84.FlattenInverseF(), 298.257223563);
}

TEST(Names, OfTheCsEllipsoidAndProjection) {
    LmSpatialReference utm(kUtm50, eWKT);
    EXPECT_TRUE(utm.IsProjected());
    EXPECT_FALSE(utm.IsGeographic());
    EXPECT_EQ(utm.Name(), "WGS 84 / UTM zone 50N");
    EXPECT_EQ(utm.Ellipsoid(), "WGS 84");
    EXPECT_EQ(utm.Projection(), "Transverse_Mercator");
    EXPECT_EQ(LmSpatialReference(eWGS84).Projection(), "");

    // A given name renames the object but not its exports.
    utm.Name("Grid of the site");
    EXPECT_EQ(utm.Name(), "Grid of the site");
    EXPECT_NE(utm.ExportToWKT(true).find("WGS 84 / UTM zone 50N"), std::string::npos);
    EXPECT_STREQ(utm.ExportToWKT(false).c_str(), kUtm50);
    utm.Name(nullptr);
    EXPECT_EQ(utm.Name(), "WGS 84 / UTM zone 50N");
}

TEST(Units, OfReferencesFollowTheirFirstUnit) {
    for (const char* degree : {"Degree", "degree"})
        EXPECT_EQ(LmSpatialReference(GeographicWithUnit(degree).c_str(), eWKT).Units(), eDegree) << degree;
    EXPECT_EQ(LmSpatialReference(kUtm50, eWKT).Units(), eMeter);
    EXPECT_EQ(LmSpatialReference(eWebMercator).Units(), eMeter);
    LmSpatialReference kilometres(R"(LOCAL_CS["site",LOCAL_DATUM["site",32767],UNIT["Kilometer",1000],)"
                                  R"(AXIS["X",EAST],AXIS["Y",NORTH]])",
                                  eWKT);
    EXPECT_EQ(kilometres.Units(), eKM);
    // A unit the table does not know answers the default, metre.
    LmSpatialReference feet("+proj=tmerc +lon_0=117 +ellps=WGS84 +units=us-ft +no_defs", eProj4);
    ASSERT_TRUE(feet.IsProjected());
    EXPECT_EQ(feet.Units(), eMeter);
}

LmUnits Parse(const char* text, LmUnits defaultValue = eMeter) {
    return LmEnumParser::ParserFromString<LmUnits>(text, defaultValue);
}

TEST(UnitNames, AreFilledOnFirstUseAndMatchIgnoringCase) {
    EXPECT_EQ(LmEnumType<LmUnits>::Instance().FromString("Kilometer", eMM), eKM);
    // The three inch spellings (and the enumerator's own name) share one code.
    const struct {
        const char* text;
        int expected;
    } cases[] = {{"Meter", eMeter}, {"degree", eDegree}, {"CENTIMETER", eCM}, {"millimeter", eMM},
                 {"emm", eMM}, {"eDegree", eDegree}, {"Inch_US_Surveyor", 9203}, {"INCH", 9203},
                 {"inch_international", 9203}, {"eInch", 9203}};
    for (const auto& c : cases) EXPECT_EQ(Parse(c.text, eKM), c.expected) << c.text;
}

TEST(UnitNames, NumbersMatchCodesAndEverythingElseGivesTheDefault) {
    EXPECT_EQ(Parse("9205"), eKM);
    EXPECT_EQ(Parse("9102", eKM), eDegree);
    EXPECT_EQ(Parse("9999", eCM), eCM);
    EXPECT_EQ(Parse("metre", eKM), eKM);
    EXPECT_EQ(Parse("US survey foot", eMM), eMM);
    EXPECT_EQ(Parse("", eDegree), eDegree);
    EXPECT_EQ(Parse(nullptr, eDegree), eDegree);
}

}  // namespace
