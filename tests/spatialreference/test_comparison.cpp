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

using Comparison = bool (LmSpatialReference::*)(LmSpatialReference*) const;

// IsSame and IsSameGeogCS go by name (ignoring case) and ellipsoid,
// IsSameProjCS by name and ellipsoid but not the parameters, IsSameParameter
// by every parameter exactly, or for geographic references by the ellipsoid
// alone. Nothing is the same as null, and two empty references are the same.
TEST(Comparisons, AnswerByNameEllipsoidOrParameters) {
    LmSpatialReference null1(nullptr, eWKT), null2("", eWKT), wgs84(eWGS84), webMercator(eWebMercator);
    LmSpatialReference site(Geographic("Site Datum", "D_One", 6378245.0, 298.3).c_str(), eWKT);
    LmSpatialReference siteUpper(Geographic("SITE DATUM", "D_Two", 6378245.0, 298.3).c_str(), eWKT);
    LmSpatialReference otherSite(Geographic("Other Datum", "D_Two", 6378245.0, 298.3).c_str(), eWKT);
    LmSpatialReference siteOnWgs84(Geographic("Site Datum", "D_One", 6378137.0, 298.257223563).c_str(), eWKT);
    LmSpatialReference grid(TransverseMercator("Grid", 0.9996).c_str(), eWKT);
    LmSpatialReference gridShifted(TransverseMercator("grid", 0.9996, 400000.0).c_str(), eWKT);
    LmSpatialReference otherGrid(TransverseMercator("Other grid", 0.9996, 400000.0).c_str(), eWKT);
    LmSpatialReference one(TransverseMercator("one", 0.9996).c_str(), eWKT);
    LmSpatialReference two(TransverseMercator("two", 0.9996).c_str(), eWKT);
    LmSpatialReference nearly(TransverseMercator("one", 0.9996 + 1e-12).c_str(), eWKT);
    LmSpatialReference shifted(TransverseMercator("one", 0.9996, 500000.5).c_str(), eWKT);
    LmSpatialReference geoOne(Geographic("one", "D_One", 6378137.0, 298.257223563).c_str(), eWKT);
    LmSpatialReference geoTwo(Geographic("two", "D_Two", 6378137.0, 298.257223563).c_str(), eWKT);
    LmSpatialReference geoOther(Geographic("one", "D_One", 6378245.0, 298.3).c_str(), eWKT);
    const Comparison same = &LmSpatialReference::IsSame, geog = &LmSpatialReference::IsSameGeogCS,
                     proj = &LmSpatialReference::IsSameProjCS, parameter = &LmSpatialReference::IsSameParameter;
    const struct {
        Comparison compare;
        LmSpatialReference *a, *b;
        bool expected;
    } cases[] = {
        {same, &null1, &null2, true},          {same, &wgs84, nullptr, false},
        {same, &null1, &wgs84, false},         {same, &null1, &webMercator, false},
        {same, &webMercator, &null1, false},   {same, &wgs84, &webMercator, false},
        {same, &webMercator, &wgs84, false},   {same, &wgs84, &wgs84, true},
        {same, &site, &siteUpper, true},       {geog, &site, &siteUpper, true},
        {same, &site, &otherSite, false},      {same, &site, &siteOnWgs84, false},
        {proj, &site, &siteUpper, false},      {proj, &grid, &gridShifted, true},
        {same, &grid, &gridShifted, true},     {proj, &grid, &otherGrid, false},
        {same, &grid, &otherGrid, false},      {geog, &grid, &gridShifted, false},
        {proj, &grid, &wgs84, false},          {parameter, &one, &two, true},
        {parameter, &one, &nearly, false},     {parameter, &one, &shifted, false},
        {parameter, &one, &webMercator, false}, {parameter, &one, &wgs84, false},
        {parameter, &one, nullptr, false},     {parameter, &geoOne, &geoTwo, true},
        {parameter, &geoOne, &geoOther, false},
    };
    for (const auto& c : cases) EXPECT_EQ((c.a->*c.compare)(c.b), c.expected) << "row " << &c - cases;
}

}  // namespace
