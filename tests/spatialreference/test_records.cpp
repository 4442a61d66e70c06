#include <lmspatialreference/spatialreference.h>
#include <lmspatialreference/spatialreferencerecords.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

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

const char* const kBaseGeographic =
    R"(GEOGCS["g",DATUM["d",SPHEROID["s",6378137,298.257223563]],PRIMEM["Greenwich",0],)";

// A geographic reference with the given unit node and axis nodes.
std::string GeographicWithAxes(const char* unit, const char* axis1, const char* axis2) {
    return std::string(kBaseGeographic) + unit + R"(,AXIS[")" + axis1 + R"(],AXIS[")" + axis2 + "]]";
}

// A projected reference in metres with the given axis nodes.
std::string ProjectedWithAxes(const char* axis1, const char* axis2) {
    return std::string("PROJCS[\"p\",") + kBaseGeographic +
           R"(UNIT["degree",0.0174532925199433]],PROJECTION["Transverse_Mercator"],)"
           R"(PARAMETER["central_meridian",117],UNIT["metre",1,AUTHORITY["EPSG","9001"]],AXIS[")" +
           axis1 + R"(],AXIS[")" + axis2 + "]]";
}

// The axis patterns GDAL's trees give (the table's own rows are not repeated
// here), and where no tree has axes.
TEST(Records, CoordinateSystemsFromTheAxisNodes) {
    const char* const degree = R"(UNIT["degree",0.0174532925199433,AUTHORITY["EPSG","9122"]])";
    const char* const grad = R"(UNIT["grad",0.015707963267949,AUTHORITY["EPSG","9105"]])";
    struct Row {
        std::string wkt;
        int code;
    };
    const std::vector<Row> table = {
        {GeographicWithAxes(degree, R"(Latitude",NORTH)", R"(Longitude",EAST)"), 6422},
        // Longitude first is only recognised with the latitude-first orientations.
        {GeographicWithAxes(degree, R"(Longitude",NORTH)", R"(Latitude",EAST)"), 6424},
        {GeographicWithAxes(grad, R"(Longitude",NORTH)", R"(Latitude",EAST)"), 6403},
        {GeographicWithAxes(degree, R"(Longitude",EAST)", R"(Latitude",NORTH)"), 0},
        {ProjectedWithAxes(R"(Easting",EAST)", R"(Northing",NORTH)"), 4400},
        {ProjectedWithAxes(R"(Northing",NORTH)", R"(Easting",EAST)"), 4500},
        {ProjectedWithAxes(R"(X",NORTH)", R"(Y",EAST)"), 4530},
        {ProjectedWithAxes(R"(Lat",NORTH)", R"(Lon",EAST)"), 0},
        // With an EPSG identifier GDAL's GetAxis says "Geodetic latitude";
        // the tree keeps "Latitude".
        {R"(GEOGCRS["WGS 84",DATUM["World Geodetic System 1984",ELLIPSOID["WGS 84",6378137,298.257223563]],)"
         R"w(CS[ellipsoidal,2],AXIS["geodetic latitude (Lat)",north,ANGLEUNIT["degree",0.0174532925199433]],)w"
         R"w(AXIS["geodetic longitude (Lon)",east,ANGLEUNIT["degree",0.0174532925199433]],ID["EPSG",4326]])w",
         6422},
        // No PROJCS node to read axes from: the default X east, Y north.
        {R"(LOCAL_CS["l",UNIT["metre",1,AUTHORITY["EPSG","9001"]],AXIS["Up",UP],AXIS["Down",DOWN]])", 4499},
    };
    for (const auto& row : table) {
        const LmSpatialReference reference(row.wkt.c_str(), eWKT);
        ASSERT_FALSE(reference.IsNull()) << row.wkt;
        EXPECT_EQ(reference.CoordinateSystem().Code, row.code) << row.wkt;
    }
    EXPECT_EQ(LmSpatialReference(table[2].wkt.c_str(), eWKT).CoordinateSystem().Name,
              "Ellipsoidal 2D CS. Axes: Longitude, Latitude (Long,Lat). Orientations: north, east.  UoM: grads.");
    EXPECT_EQ(LmSpatialReference(table.back().wkt.c_str(), eWKT).CoordinateSystem().Name,
              "Cartesian 2D CS. Axes: X, Y (X,Y). Orientations: east, north.  UoM: m.");
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
    EXPECT_EQ(ConversionsRuleCode(true, nullptr), -1);
    EXPECT_TRUE(AllCoordOpParamsInfo(nullptr, 9807).empty());
}

// The expected values are the EPSG dataset's own: its coordinate systems
// (6422 for both geographic CRSs, 4400 for UTM), axis names, abbreviations and
// directions, axis name codes (9901 geodetic latitude, 9902 geodetic
// longitude, 9906 easting, 9907 northing), units, datums, ellipsoids and
// conversions (method 9807, scale factors 0.9996 and 1). Where the records
// depart from the dataset they follow GDAL's WKT 1 tree on purpose: the tree
// names the geographic axes "Latitude" and "Longitude" and carries no
// abbreviations, so EPSG:4548's axes Northing (X) and Easting (Y), EPSG's
// CS 4530, read as N and E, which is EPSG's CS 4500; the longitude
// abbreviation is "Long"; and a projected CRS's base is named by the text
// before the "/" of its own name ("CGCS2000", not the base CRS's name).
TEST(Records, OfEpsgReferencesFromCodesAndFromGdalWkt) {
    const char* const latLong =
        "Ellipsoidal 2D CS. Axes: Latitude, Longitude (Lat,Long). Orientations: north, east.  UoM: degree.";
    const struct {
        int code;
        int coordinateSystem;
        const char* coordinateSystemName;
        const char* names[2];
        const char* abbreviations[2];
        const char* orientations[2];
        int axisNameCodes[2];
        int unit;
        int crsCode;
        const char* crsName;
        int datum, ellipsoid;
        int method;
        const char* conversion;
        std::vector<int> parameterValues;  // codes 8801, 8802, 8805, 8806, 8807
    } table[] = {
        {4326, 6422, latLong,
         {"Latitude", "Longitude"}, {"Lat", "Long"}, {"north", "east"}, {9901, 9902}, 9122, 4326, "WGS 84", 6326, 7030,
         -1, "WGS 84", {}},
        {4490, 6422, latLong,
         {"Latitude", "Longitude"}, {"Lat", "Long"}, {"north", "east"}, {9901, 9902}, 9122, 4490,
         "China Geodetic Coordinate System 2000", 1043, 1024, -1, "China Geodetic Coordinate System 2000", {}},
        {32650, 4400, "Cartesian 2D CS. Axes: Easting, Northing (E,N). Orientations: east, north.  UoM: m.",
         {"Easting", "Northing"}, {"E", "N"}, {"east", "north"}, {9906, 9907}, 9001, -1, "WGS 84", 6326, 7030, 9807,
         "UTM zone 50N", {0, 117, 0, 500000, 0}},
        {4548, 4500, "Cartesian 2D CS. Axes: Northing, Easting (N,E). Orientations: north, east.  UoM: m.",
         {"Northing", "Easting"}, {"N", "E"}, {"north", "east"}, {9907, 9906}, 9001, -1, "CGCS2000", 1043, 1024, 9807,
         "3-degree Gauss-Kruger CM 117E", {0, 117, 1, 500000, 0}},
    };
    const int parameterCodes[] = {8801, 8802, 8805, 8806, 8807};
    for (const auto& row : table) {
        const LmSpatialReference fromCode(row.code);
        ASSERT_FALSE(fromCode.IsNull()) << row.code;
        const LmSpatialReference fromWkt(fromCode.ExportToWKT(false).c_str(), eWKT);
        for (const LmSpatialReference* reference : {&fromCode, &fromWkt}) {
            SCOPED_TRACE(std::to_string(row.code) + (reference == &fromCode ? " from its code" : " from WKT"));
            const LmCoordinateSystem system = reference->CoordinateSystem();
            EXPECT_EQ(system.Code, row.coordinateSystem);
            EXPECT_EQ(system.Name, row.coordinateSystemName);
            for (int i = 0; i < 2; ++i) {
                const LmCoordinateAxis axis = reference->CoordinateAxis(i);
                EXPECT_EQ(axis.Name, row.names[i]);
                EXPECT_EQ(axis.Abbreviation, row.abbreviations[i]);
                EXPECT_EQ(axis.Orientation, row.orientations[i]);
                EXPECT_EQ(axis.AxisNameCode, row.axisNameCodes[i]);
                EXPECT_EQ(axis.CoordinateSystemCode, row.coordinateSystem);
                EXPECT_EQ(axis.UnitCode, row.unit);
            }
            const LmCoordinateReferenceSystem crs = reference->GeographicCoordinateReferenceSystem();
            EXPECT_EQ(crs.Code, row.crsCode);
            EXPECT_EQ(crs.Name, row.crsName);
            EXPECT_EQ(crs.CoordinateSystemCode, row.coordinateSystem);
            EXPECT_EQ(crs.DatumCode[1], row.datum);
            EXPECT_EQ(crs.Kind, "GEOGRAPHIC2D");
            const LmDatum datum = reference->Datum();
            EXPECT_EQ(datum.EllipsoidCode, row.ellipsoid);
            EXPECT_EQ(datum.PrimeMeridianCode, 8901);
            EXPECT_EQ(reference->EllipsoidInfo().UnitCode, 9001);
            const LmCoordinateConversionsRule rule = reference->CoordinateConversionsRule();
            EXPECT_EQ(rule.MethodCode, row.method);
            EXPECT_EQ(rule.Name, row.conversion);
            ASSERT_EQ(reference->CoordinateConversionsParameterCount(), static_cast<int>(row.parameterValues.size()));
            for (int i = 0; i < reference->CoordinateConversionsParameterCount(); ++i) {
                const LmCoordinateConversionsParameter parameter = reference->CoordinateConversionsParameter(i);
                EXPECT_EQ(parameter.ParameterCode, parameterCodes[i]) << parameter.Name;
                EXPECT_EQ(parameter.Value, row.parameterValues[static_cast<std::size_t>(i)]) << parameter.Name;
            }
        }
    }
}

}  // namespace
