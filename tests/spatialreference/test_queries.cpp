#include <lmspatialreference/spatialreference.h>

#include <gtest/gtest.h>

using namespace Lumora::Kernel;

namespace {

const char* const kUtm50 =
    R"(PROJCS["WGS 84 / UTM zone 50N",GEOGCS["WGS 84",DATUM["WGS_1984",SPHEROID["WGS 84",6378137,298.257223563]],)"
    R"(PRIMEM["Greenwich",0],UNIT["degree",0.0174532925199433]],PROJECTION["Transverse_Mercator"],)"
    R"(PARAMETER["latitude_of_origin",0],PARAMETER["central_meridian",117],PARAMETER["scale_factor",0.9996],)"
    R"(PARAMETER["false_easting",500000],PARAMETER["false_northing",0],UNIT["metre",1]])";

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

}  // namespace
