#include <lmspatialreference/spatialreference.h>
#include <lmspatialreference/spatialreferencerecords.h>

#include <gtest/gtest.h>

#include <string>

using namespace Lumora::Kernel;

namespace {

const char* const kUtm50 =
    R"(PROJCS["WGS 84 / UTM zone 50N",GEOGCS["WGS 84",DATUM["WGS_1984",SPHEROID["WGS 84",6378137,298.257223563]],)"
    R"(PRIMEM["Greenwich",0],UNIT["degree",0.0174532925199433]],PROJECTION["Transverse_Mercator"],)"
    R"(PARAMETER["latitude_of_origin",0],PARAMETER["central_meridian",117],PARAMETER["scale_factor",0.9996],)"
    R"(PARAMETER["false_easting",500000],PARAMETER["false_northing",0],UNIT["metre",1,AUTHORITY["EPSG","9001"]]])";

// A geographic reference whose ellipsoid and datum carry the given EPSG codes
// and whose axes are written latitude first.
std::string Geographic(int spheroidCode, int datumCode, const char* towgs84 = "") {
    return R"(GEOGCS["g",DATUM["d",SPHEROID["s",6378137,298.257223563,AUTHORITY["EPSG",")" +
           std::to_string(spheroidCode) + R"("]])" + towgs84 + R"(,AUTHORITY["EPSG",")" + std::to_string(datumCode) +
           R"("]],PRIMEM["Greenwich",0],UNIT["degree",0.0174532925199433,AUTHORITY["EPSG","9122"]],)"
           R"(AXIS["Latitude",NORTH],AXIS["Longitude",EAST]])";
}

// The records of UTM, Web Mercator and EPSG references are known answers in
// tests/data/records.known.

TEST(Records, ParametersAreKeptAndCloned) {
    // Read from PROJ.4 the reference has no cached text, so its clone is null
    // and any parameters it has can only be the copied list.
    LmSpatialReference utm("+proj=utm +zone=50 +datum=WGS84 +units=m +no_defs", eProj4);
    EXPECT_TRUE(utm.Clone()->IsNull());
    EXPECT_EQ(utm.Clone()->CoordinateConversionsParameterCount(), 0);
    EXPECT_EQ(utm.CoordinateConversionsParameterCount(), 5);
    EXPECT_EQ(utm.Clone()->CoordinateConversionsParameter(1).Value, 117);
    for (LmSpatialReference* empty : {new LmSpatialReference(eWGS84), new LmSpatialReference(nullptr, eWKT),
                                      new LmSpatialReference(R"(LOCAL_CS["l",UNIT["metre",1]])", eWKT)}) {
        EXPECT_EQ(empty->CoordinateConversionsParameterCount(), 0);
        delete empty;
    }
}

TEST(Records, NamesAreSplitAtTheFirstSlash) {
    LmSpatialReference utm(kUtm50, eWKT);
    utm.Name("/leading slash");
    EXPECT_EQ(utm.CoordinateConversionsRule().Name, "/leading slash");
    EXPECT_EQ(utm.GeographicCoordinateReferenceSystem().Name, "/leading slash");
}

TEST(Records, TOWGS84IsReadAsIntegers) {
    const LmDatum datum =
        LmSpatialReference(Geographic(7030, 6326, ",TOWGS84[-1.25,2.75,23.5,0,0,0,-0.9]").c_str(), eWKT).Datum();
    ASSERT_TRUE(datum.HasTOWGS84);
    const double expected[7] = {-1, 2, 23, 0, 0, 0, 0};
    for (int i = 0; i < 7; ++i) EXPECT_EQ(datum.TOWGS84[i], expected[i]) << i;
    EXPECT_EQ(datum.Code, 6326);
    EXPECT_EQ(datum.EllipsoidCode, 7030);
    EXPECT_EQ(datum.Name, "d");
    EXPECT_FALSE(LmSpatialReference(kUtm50, eWKT).Datum().HasTOWGS84);
}

TEST(Records, CoordinateSystemNamesSpellTheirAxesOrientationsAndUnit) {
    EXPECT_EQ(
        CoordinateSystemName(true, 9122, "LATITUDE", "LONGITUDE", eOrientNorth, eOrientEast, "north", "east", "Lat", "Long"),
        "Ellipsoidal 2D CS. Axes: LATITUDE, LONGITUDE (Lat,Long). Orientations: north, east.  UoM: degree.");
}

// The lookup tables themselves are not repeated here; two of their
// consequences on real texts are.
TEST(Records, PrefixMatchesTakeTheFirstEntryAndDatumCodesGiveTheKind) {
    // The Belgian method name starts with the general one, which wins.
    std::string belgian = kUtm50;
    belgian.replace(belgian.find("Transverse_Mercator"), 19, "Lambert_Conformal_Conic_2SP_Belgium");
    EXPECT_EQ(ConversionsRuleCode(true, LmSpatialReference(belgian.c_str(), eWKT).Handle()), 9802);
    const LmCoordinateReferenceSystem engineering =
        LmSpatialReference(Geographic(7030, 1134).c_str(), eWKT).GeographicCoordinateReferenceSystem();
    EXPECT_EQ(engineering.Kind, "ENGINEERING");
    EXPECT_EQ(engineering.DatumCode[1], 1134);
}

TEST(Records, NullReferenceAnswersNoCodesAndEmptyTexts) {
    LmSpatialReference null(nullptr, eWKT);
    LmAxisOrientation orientation = eOrientOther;
    EXPECT_EQ(null.Axis(0, &orientation), "X");
    EXPECT_EQ(orientation, eOrientEast);
    EXPECT_EQ(null.Axis(7, nullptr), "Y");
    EXPECT_EQ(DefaultAxis(0, &orientation, true), "LATITUDE");
    EXPECT_EQ(orientation, eOrientNorth);
    EXPECT_EQ(DefaultAxis(1, &orientation, true), "LONGITUDE");
    EXPECT_EQ(orientation, eOrientEast);

    const LmCoordinateSystem system = null.CoordinateSystem();
    const LmCoordinateAxis axis = null.CoordinateAxis(1);
    const LmEllipsoid ellipsoid = null.EllipsoidInfo();
    const LmDatum datum = null.Datum();
    const LmCoordinateReferenceSystem crs = null.GeographicCoordinateReferenceSystem();
    const LmCoordinateConversionsRule rule = null.CoordinateConversionsRule();
    const LmCoordinateConversionsParameter parameter = null.CoordinateConversionsParameter(0);
    const int codes[] = {system.Code,        axis.CoordinateSystemCode, axis.AxisNameCode,   axis.UnitCode,
                         ellipsoid.Code,     ellipsoid.UnitCode,        datum.Code,          datum.EllipsoidCode,
                         datum.PrimeMeridianCode, crs.Code,             crs.CoordinateSystemCode, crs.DatumCode[0],
                         crs.DatumCode[1],   rule.MethodCode,           parameter.MethodCode, parameter.ParameterCode};
    for (std::size_t i = 0; i < std::size(codes); ++i) EXPECT_EQ(codes[i], -1) << "code " << i;
    const LmString texts[] = {system.Name,      system.Type,       system.InformationSource, system.DataSource,
                              axis.Orientation, axis.Name,         axis.Abbreviation,        ellipsoid.Name,
                              ellipsoid.InformationSource, ellipsoid.DataSource, datum.Name, datum.Type,
                              datum.InformationSource, datum.DataSource, crs.Name,          crs.Kind,
                              crs.InformationSource, crs.DataSource, rule.Name,             rule.Type,
                              parameter.Name};
    for (std::size_t i = 0; i < std::size(texts); ++i) EXPECT_EQ(texts[i], "") << "text " << i;
    EXPECT_FALSE(datum.HasTOWGS84);
    EXPECT_EQ(ellipsoid.SemiMajorAxis, 0.0);
    EXPECT_EQ(null.CoordinateConversionsParameterCount(), 0);

    EXPECT_EQ(GetCode(nullptr, "UNIT"), -1);
    EXPECT_EQ(AxisName(nullptr), eAxisUnknown);
    EXPECT_EQ(ConversionsRuleCode(true, nullptr), -1);
    EXPECT_TRUE(AllCoordOpParamsInfo(nullptr, 9807).empty());
}

}  // namespace
