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

TEST(Records, TransverseMercatorParametersAreCodedAndTruncated) {
    LmSpatialReference utm(kUtm50, eWKT);
    EXPECT_EQ(utm.CoordinateConversionsRule().MethodCode, 9807);
    ASSERT_EQ(utm.CoordinateConversionsParameterCount(), 5);
    const struct {
        int code, value, unit;
    } expected[] = {{8801, 0, 9102}, {8802, 117, 9102}, {8805, 0, 9201}, {8806, 500000, 9001}, {8807, 0, 9001}};
    for (int i = 0; i < 5; ++i) {
        const LmCoordinateConversionsParameter parameter = utm.CoordinateConversionsParameter(i);
        EXPECT_EQ(parameter.MethodCode, 9807);
        EXPECT_EQ(parameter.ParameterCode, expected[i].code) << parameter.Name;
        EXPECT_EQ(parameter.Value, expected[i].value) << parameter.Name;
        EXPECT_EQ(static_cast<int>(parameter.Unit), expected[i].unit) << parameter.Name;
    }
    EXPECT_EQ(utm.CoordinateConversionsParameter(2).Name, "scale_factor");
    EXPECT_EQ(utm.CoordinateConversionsParameter(5).ParameterCode, -1);
    EXPECT_EQ(utm.CoordinateConversionsParameter(-1).Name, "");
}

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

TEST(Records, WebMercatorMethodAndParametersAreUnknown) {
    LmSpatialReference web(eWebMercator);
    EXPECT_EQ(web.CoordinateConversionsRule().MethodCode, -1);
    // GDAL's tree of Mercator_1SP has no latitude_of_origin.
    ASSERT_EQ(web.CoordinateConversionsParameterCount(), 4);
    const LmCoordinateConversionsParameter scale = web.CoordinateConversionsParameter(1);
    EXPECT_EQ(scale.Name, "scale_factor");
    EXPECT_EQ(scale.MethodCode, -1);
    EXPECT_EQ(scale.ParameterCode, -1);
    EXPECT_EQ(static_cast<int>(scale.Unit), 0);
    EXPECT_EQ(scale.Value, 1);
}

TEST(Records, NamesAreSplitAtTheFirstSlash) {
    LmSpatialReference utm(kUtm50, eWKT);
    EXPECT_EQ(utm.CoordinateConversionsRule().Name, "UTM zone 50N");
    const LmCoordinateReferenceSystem crs = utm.GeographicCoordinateReferenceSystem();
    EXPECT_EQ(crs.Name, "WGS 84");
    EXPECT_EQ(crs.Code, -1);
    EXPECT_EQ(crs.Kind, "GEOGRAPHIC2D");
    EXPECT_EQ(crs.CoordinateSystemCode, 4400);
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

TEST(Records, AxisIndexIsClamped) {
    LmSpatialReference utm(kUtm50, eWKT);
    const LmCoordinateAxis high = utm.CoordinateAxis(5), low = utm.CoordinateAxis(-3);
    EXPECT_EQ(high.Order, 2);
    EXPECT_EQ(high.Name, "Northing");
    EXPECT_EQ(high.Orientation, "north");
    EXPECT_EQ(high.AxisNameCode, 9907);
    EXPECT_EQ(high.UnitCode, 9001);
    EXPECT_EQ(high.CoordinateSystemCode, 4400);
    EXPECT_EQ(low.Order, 1);
    EXPECT_EQ(low.Name, "Easting");
}

TEST(Records, EllipsoidUnitCodes) {
    const int table[][2] = {{7007, 9005}, {7034, 9005}, {7009, 9003}, {7042, 9080},
                            {7046, 9031}, {7055, 9002}, {7030, 9001}, {7056, 9001}};
    for (const auto& row : table) {
        const LmEllipsoid ellipsoid = LmSpatialReference(Geographic(row[0], 6326).c_str(), eWKT).EllipsoidInfo();
        EXPECT_EQ(ellipsoid.Code, row[0]);
        EXPECT_EQ(ellipsoid.UnitCode, row[1]) << row[0];
    }
}

TEST(Records, LatitudeFirstCoordinateSystemName) {
    const LmCoordinateSystem system = LmSpatialReference(Geographic(7030, 6326).c_str(), eWKT).CoordinateSystem();
    EXPECT_EQ(system.Name,
              "Ellipsoidal 2D CS. Axes: Latitude, Longitude (Lat,Long). Orientations: north, east.  UoM: degree.");
    EXPECT_EQ(system.Code, 6422);
    EXPECT_EQ(
        CoordinateSystemName(true, 9122, "LATITUDE", "LONGITUDE", eOrientNorth, eOrientEast, "north", "east", "Lat", "Long"),
        "Ellipsoidal 2D CS. Axes: LATITUDE, LONGITUDE (Lat,Long). Orientations: north, east.  UoM: degree.");
}

TEST(Records, CoordinateSystemCodesFirstMatch) {
    const struct {
        bool geographic;
        int unit;
        LmAxisName kind1, kind2;
        LmAxisOrientation o1, o2;
        int code;
    } table[] = {
        {true, 9122, eAxisLat, eAxisLon, eOrientNorth, eOrientEast, 6422},
        {true, 9108, eAxisLat, eAxisLon, eOrientNorth, eOrientEast, 6402},
        {true, 9001, eAxisLat, eAxisLon, eOrientNorth, eOrientEast, 0},
        // Longitude first is only recognised with the latitude-first orientations.
        {true, 9122, eAxisLon, eAxisLat, eOrientNorth, eOrientEast, 6424},
        {true, 9122, eAxisLon, eAxisLat, eOrientEast, eOrientNorth, 0},
        {true, 9105, eAxisLon, eAxisLat, eOrientNorth, eOrientEast, 6403},
        {false, -1, eAxisE, eAxisN, eOrientEast, eOrientNorth, 4400},
        {false, 9001, eAxisN, eAxisE, eOrientNorth, eOrientWest, 4501},
        {false, 9001, eAxisX, eAxisY, eOrientSouth, eOrientWest, 6501},
        {false, 9001, eAxisY, eAxisX, eOrientWest, eOrientSouth, 6503},
        {false, 9122, eAxisLat, eAxisLon, eOrientNorth, eOrientEast, 0},
    };
    for (const auto& row : table)
        EXPECT_EQ(CoordinateSystemCode(row.geographic, row.unit, row.kind1, row.kind2, row.o1, row.o2), row.code)
            << row.code;
}

TEST(Records, DatumTypeRangesAtTheirBounds) {
    const char* const g = "geodetic";
    const char* const v = "vertical";
    const char* const e = "engineering";
    const struct {
        int code;
        const char* type;
    } table[] = {{-1, g},   {1133, g}, {1134, e}, {1135, g}, {9299, g}, {9300, e}, {9315, e}, {9316, g},
                 {5099, g}, {5100, v}, {5215, v}, {5216, g}, {1026, g}, {1027, v}, {1029, g}, {1030, v},
                 {1038, g}, {1040, v}, {1041, g}, {1049, v}, {1051, v}, {1052, g}, {1054, v}, {1059, v},
                 {1078, g}, {1079, v}, {1081, g}, {1082, v}, {1094, v}, {1095, g}, {1096, v}, {1100, g},
                 {1101, v}, {1110, v}, {1111, g}, {1119, v}, {1120, g}, {1121, v}, {1127, v}, {1128, g},
                 {1131, v}, {1132, g}, {1140, v}, {1146, v}, {1147, g}, {1148, v}, {1151, v}, {1152, g}};
    for (const auto& row : table) EXPECT_EQ(Datum_Type(row.code), row.type) << row.code;
    const LmCoordinateReferenceSystem engineering =
        LmSpatialReference(Geographic(7030, 1134).c_str(), eWKT).GeographicCoordinateReferenceSystem();
    EXPECT_EQ(engineering.Kind, "ENGINEERING");
    EXPECT_EQ(engineering.DatumCode[0], 1134);
    EXPECT_EQ(engineering.DatumCode[1], 1134);
}

TEST(Records, PrefixTablesFirstMatchIgnoringCase) {
    const struct {
        const char* name;
        LmAxisName kind;
        const char* abbreviation;
    } axes[] = {{"Latitude", eAxisLat, "Lat"}, {"LONGITUDE", eAxisLon, "Long"}, {"Northing", eAxisN, "N"},
                {"easting", eAxisE, "E"},      {"X", eAxisX, "X"},            {"y", eAxisY, "Y"},
                {"Geodetic latitude", eAxisUnknown, ""}};
    for (const auto& axis : axes) {
        EXPECT_EQ(AxisName(axis.name), axis.kind) << axis.name;
        EXPECT_EQ(Axis_Abbreviation(axis.name), axis.abbreviation) << axis.name;
    }
    EXPECT_EQ(AxisName(nullptr), eAxisUnknown);

    LmUnits unit = eInch;
    EXPECT_EQ(ParmID(9805, "LATITUDE_OF_ORIGIN", unit), 8823);
    EXPECT_EQ(unit, eDegree);
    EXPECT_EQ(ParmID(9806, "central_meridian", unit), 8802);
    EXPECT_EQ(static_cast<int>(unit), 9110);
    unit = eInch;
    EXPECT_EQ(ParmID(9807, "standard_parallel_1", unit), -1);
    EXPECT_EQ(ParmID(9804, "false_easting", unit), -1);
    EXPECT_EQ(unit, eInch);

    // The Belgian method name starts with the general one, which wins.
    const std::string belgian =
        std::string(kUtm50).replace(std::string(kUtm50).find("Transverse_Mercator"), 19,
                                    "Lambert_Conformal_Conic_2SP_Belgium");
    LmSpatialReference lambert(belgian.c_str(), eWKT);
    EXPECT_EQ(ConversionsRuleCode(true, lambert.Handle()), 9802);
    EXPECT_EQ(ConversionsRuleCode(false, lambert.Handle()), -1);
}

TEST(Records, NullReferenceAnswersWithoutCrashing) {
    LmSpatialReference null(nullptr, eWKT);
    LmAxisOrientation orientation = eOrientOther;
    EXPECT_EQ(null.Axis(0, &orientation), "X");
    EXPECT_EQ(orientation, eOrientEast);
    EXPECT_EQ(null.Axis(7, nullptr), "Y");
    EXPECT_EQ(DefaultAxis(0, &orientation, true), "LATITUDE");
    EXPECT_EQ(orientation, eOrientNorth);
    EXPECT_EQ(DefaultAxis(1, &orientation, true), "LONGITUDE");
    EXPECT_EQ(orientation, eOrientEast);
    EXPECT_EQ(null.CoordinateAxis(0).UnitCode, -1);
    EXPECT_EQ(null.EllipsoidInfo().Code, -1);
    const LmDatum datum = null.Datum();
    EXPECT_EQ(datum.Code, -1);
    EXPECT_EQ(datum.PrimeMeridianCode, -1);
    EXPECT_FALSE(datum.HasTOWGS84);
    EXPECT_EQ(null.GeographicCoordinateReferenceSystem().Code, -1);
    EXPECT_EQ(null.CoordinateConversionsRule().MethodCode, -1);
    EXPECT_EQ(null.CoordinateConversionsParameter(0).ParameterCode, -1);
    EXPECT_EQ(GetCode(nullptr, "UNIT"), -1);
    EXPECT_EQ(ConversionsRuleCode(true, nullptr), -1);
    EXPECT_TRUE(AllCoordOpParamsInfo(nullptr, 9807).empty());
}

}  // namespace

namespace {

TEST(Records, OfReferencesBuiltFromEpsgCodes) {
    LmSpatialReference utm(32650);
    ASSERT_FALSE(utm.IsNull());
    ASSERT_EQ(utm.CoordinateConversionsParameterCount(), 5);
    EXPECT_EQ(utm.CoordinateConversionsParameter(1).ParameterCode, 8802);
    EXPECT_EQ(utm.CoordinateConversionsParameter(1).Value, 117);
    EXPECT_EQ(utm.CoordinateConversionsParameter(2).Value, 0);
    EXPECT_EQ(static_cast<int>(utm.CoordinateConversionsParameter(2).Unit), 9201);
    EXPECT_EQ(utm.CoordinateConversionsRule().Name, "UTM zone 50N");
    const LmCoordinateReferenceSystem base = utm.GeographicCoordinateReferenceSystem();
    EXPECT_EQ(base.Code, -1);
    EXPECT_EQ(base.Name, "WGS 84");
    EXPECT_EQ(base.DatumCode[0], 6326);

    LmSpatialReference wgs84(4326);
    const LmCoordinateReferenceSystem crs = wgs84.GeographicCoordinateReferenceSystem();
    EXPECT_EQ(crs.Code, 4326);
    EXPECT_EQ(crs.Name, "WGS 84");
    EXPECT_EQ(crs.Kind, "GEOGRAPHIC2D");
    EXPECT_EQ(wgs84.Datum().PrimeMeridianCode, 8901);
    EXPECT_EQ(wgs84.CoordinateConversionsParameterCount(), 0);
}

}  // namespace
