#include <lmspatialreference/spatialreference.h>

#include <gtest/gtest.h>

#include <cstdio>

using namespace Lumora::Kernel;

namespace {

LmString Geographic(const char* name, const char* datum, double a, double inverseF, double primeMeridian = 0.0) {
    char text[512];
    std::snprintf(text, sizeof text,
                  R"(GEOGCS["%s",DATUM["%s",SPHEROID["s",%.17g,%.17g]],PRIMEM["pm",%.17g],)"
                  R"(UNIT["degree",0.0174532925199433]])",
                  name, datum, a, inverseF, primeMeridian);
    return text;
}

LmString TransverseMercator(const char* name, double scale, double falseEasting = 500000.0,
                            const LmString& geographic = Geographic("WGS 84", "WGS_1984", 6378137, 298.257223563)) {
    char text[1024];
    std::snprintf(text, sizeof text,
                  R"(PROJCS["%s",%s,PROJECTION["Transverse_Mercator"],)"
                  R"(PARAMETER["latitude_of_origin",0],PARAMETER["central_meridian",117],)"
                  R"(PARAMETER["scale_factor",%.17g],PARAMETER["false_easting",%.17g],)"
                  R"(PARAMETER["false_northing",0],UNIT["metre",1]])",
                  name, geographic.c_str(), scale, falseEasting);
    return text;
}

// Projected references of one name compare their ellipsoids with a tolerance
// of 0.001 for the axes and the prime meridian and 1e-6 for the inverse flattening.
TEST(IsSameProjCS, ComparesEllipsoidsWithinTheirTolerances) {
    const LmSpatialReference base(TransverseMercator("p", 0.9996).c_str(), eWKT);
    const struct {
        double a, inverseF, primeMeridian;
        bool same;
    } cases[] = {{6378137.0, 298.257223563, 0.0, true},     {6378137.0009, 298.257223563, 0.0, true},
                 {6378137.002, 298.257223563, 0.0, false},   {6378137.0, 298.2572235635, 0.0, true},
                 // 0.00002 in inverse flattening moves the semi-minor axis by under a
                 // millimetre: only the flattening tolerance rejects it.
                 {6378137.0, 298.257243563, 0.0, false},     {6378137.0, 298.257223563, 0.0009, true},
                 {6378137.0, 298.257223563, 0.002, false}};
    for (const auto& c : cases) {
        LmSpatialReference other(
            TransverseMercator("p", 0.9996, 500000.0, Geographic("g", "d", c.a, c.inverseF, c.primeMeridian)).c_str(),
            eWKT);
        ASSERT_TRUE(other.IsProjected());
        EXPECT_EQ(base.IsSameProjCS(&other), c.same) << c.a << " " << c.inverseF << " " << c.primeMeridian;
    }
}

TEST(IsSame, NullsAndKinds) {
    LmSpatialReference null1(nullptr, eWKT), null2("", eWKT), wgs84(eWGS84), webMercator(eWebMercator);
    EXPECT_TRUE(null1.IsSame(&null2));
    EXPECT_FALSE(wgs84.IsSame(nullptr));
    EXPECT_FALSE(null1.IsSame(&wgs84));
    EXPECT_FALSE(null1.IsSame(&webMercator));
    EXPECT_FALSE(webMercator.IsSame(&null1));
    EXPECT_FALSE(wgs84.IsSame(&webMercator));
    EXPECT_FALSE(webMercator.IsSame(&wgs84));
    EXPECT_TRUE(wgs84.IsSame(&wgs84));
}

TEST(IsSame, GeographicReferencesWithTheSameNameAndEllipsoid) {
    LmSpatialReference a(Geographic("Site Datum", "D_One", 6378245.0, 298.3).c_str(), eWKT);
    LmSpatialReference b(Geographic("SITE DATUM", "D_Two", 6378245.0, 298.3).c_str(), eWKT);
    LmSpatialReference c(Geographic("Other Datum", "D_Two", 6378245.0, 298.3).c_str(), eWKT);
    LmSpatialReference d(Geographic("Site Datum", "D_One", 6378137.0, 298.257223563).c_str(), eWKT);
    EXPECT_TRUE(a.IsSame(&b));
    EXPECT_TRUE(a.IsSameGeogCS(&b));
    EXPECT_FALSE(a.IsSame(&c));
    EXPECT_FALSE(a.IsSame(&d));
    EXPECT_FALSE(a.IsSameProjCS(&b));
}

TEST(IsSame, ProjectedReferencesCompareNameAndEllipsoidNotParameters) {
    LmSpatialReference a(TransverseMercator("Grid", 0.9996).c_str(), eWKT);
    LmSpatialReference b(TransverseMercator("grid", 0.9996, 400000.0).c_str(), eWKT);
    LmSpatialReference c(TransverseMercator("Other grid", 0.9996, 400000.0).c_str(), eWKT);
    EXPECT_TRUE(a.IsSameProjCS(&b));
    EXPECT_TRUE(a.IsSame(&b));
    EXPECT_FALSE(a.IsSameProjCS(&c));
    EXPECT_FALSE(a.IsSame(&c));
    EXPECT_FALSE(a.IsSameGeogCS(&b));
    LmSpatialReference wgs84(eWGS84);
    EXPECT_FALSE(a.IsSameProjCS(&wgs84));
}

TEST(IsSameParameter, ComparesEveryParameterExactly) {
    LmSpatialReference a(TransverseMercator("one", 0.9996).c_str(), eWKT);
    LmSpatialReference b(TransverseMercator("two", 0.9996).c_str(), eWKT);
    LmSpatialReference nearly(TransverseMercator("one", 0.9996 + 1e-12).c_str(), eWKT);
    LmSpatialReference shifted(TransverseMercator("one", 0.9996, 500000.5).c_str(), eWKT);
    EXPECT_TRUE(a.IsSameParameter(&b));
    EXPECT_FALSE(a.IsSameParameter(&nearly));
    EXPECT_FALSE(a.IsSameParameter(&shifted));
    LmSpatialReference webMercator(eWebMercator), wgs84(eWGS84);
    EXPECT_FALSE(a.IsSameParameter(&webMercator));
    EXPECT_FALSE(a.IsSameParameter(&wgs84));
    EXPECT_FALSE(a.IsSameParameter(nullptr));

    // Geographic references need only the same ellipsoid.
    LmSpatialReference one(Geographic("one", "D_One", 6378137.0, 298.257223563).c_str(), eWKT);
    LmSpatialReference two(Geographic("two", "D_Two", 6378137.0, 298.257223563).c_str(), eWKT);
    LmSpatialReference other(Geographic("one", "D_One", 6378245.0, 298.3).c_str(), eWKT);
    EXPECT_TRUE(one.IsSameParameter(&two));
    EXPECT_FALSE(one.IsSameParameter(&other));
}

}  // namespace
