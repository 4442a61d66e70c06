#include "tests/fixtures.h"

#include <gtest/gtest.h>

#include <cstring>

using namespace Fixtures;

namespace {

const char* const kWgs84 =
    R"(GEOGCS["GCS_WGS_1984",DATUM["D_WGS_1984",SPHEROID["WGS_1984",6378137,298.257223563]],)"
    R"(PRIMEM["Greenwich",0],UNIT["degree",0.0174532925199433]])";
const char* const kCgcs2000 =
    R"(GEOGCS["CGCS2000",DATUM["D_CGCS_2000",SPHEROID["CGCS_2000",6378137,298.257222101]],)"
    R"(PRIMEM["Greenwich",0],UNIT["degree",0.0174532925199433]])";
const char* const kWebMercator =
    R"x(PROJCS["Mercator (1SP) (Web墨卡托投影)",GEOGCS["GCS_WGS_1984",DATUM["D_WGS_1984",)x"
    R"x(SPHEROID["WGS_1984",6378137,298.257223563],TOWGS84[0,0,0,0,0,0,0]],PRIMEM["Greenwich",0],)x"
    R"x(UNIT["degree",0.0174532925199433]],PROJECTION["Mercator_1SP"],PARAMETER["latitude_of_origin",0],)x"
    R"x(PARAMETER["central_meridian",0],PARAMETER["scale_factor",1],PARAMETER["false_easting",0],)x"
    R"x(PARAMETER["false_northing",0],UNIT["Meter",1],EXTENSION["PROJ4","+proj=merc +a=6378137 )x"
    R"x(+b=6378137 +lat_ts=0.0 +lon_0=0.0 +x_0=0.0 +y_0=0 +k=1.0 +units=m +nadgrids=@null +wktext +no_defs"]])x";

TEST(WellKnownReference, ExportsItsTableTextByteForByteAndKnowsItsKind) {
    EXPECT_STREQ(LmSpatialReference(eWGS84).ExportToWKT(false).c_str(), kWgs84);
    EXPECT_STREQ(LmSpatialReference(eCGCS2000).ExportToWKT(false).c_str(), kCgcs2000);
    EXPECT_STREQ(LmSpatialReference(eWebMercator).ExportToWKT(false).c_str(), kWebMercator);
    // The Chinese part of the name is the UTF-8 of 墨卡托投影 (U+58A8 U+5361 U+6258 U+6295 U+5F71).
    EXPECT_NE(std::strstr(kWebMercator, "(Web\xE5\xA2\xA8\xE5\x8D\xA1\xE6\x89\x98\xE6\x8A\x95\xE5\xBD\xB1)"),
              nullptr);
    LmSpatialReference wgs84(eWGS84), cgcs2000(eCGCS2000), webMercator(eWebMercator);
    EXPECT_TRUE(wgs84.IsGeographic());
    EXPECT_TRUE(cgcs2000.IsGeographic());
    EXPECT_TRUE(webMercator.IsProjected());
    EXPECT_DOUBLE_EQ(cgcs2000.FlattenInverseF(), 298.257222101);
    EXPECT_EQ(webMercator.Projection(), "Mercator_1SP");
    EXPECT_EQ(webMercator.Name(), "Mercator (1SP) (Web墨卡托投影)");
}

TEST(WellKnownReference, UnknownValueSaysWktIsNullOnStandardOutput) {
    testing::internal::CaptureStdout();
    LmSpatialReference unknown(static_cast<LmWellKnownSpatialReference>(7));
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "wkt is null\n");
    EXPECT_TRUE(unknown.IsNull());
}

TEST(TextReference, MissingTextsUnknownFormatsAndRefusedWktGiveNullReferencesQuietly) {
    const struct {
        const char* text;
        int format;
    } cases[] = {{nullptr, eWKT}, {"", eWKT}, {"", eXML}, {kWgs84, 6}, {kWgs84, -1},
                 {kWgs84, eLegacyParameters},  // not read as WKT
                 {"GEOGCS[\"broken\",DATUM[", eWKT}};
    testing::internal::CaptureStderr();
    for (const auto& c : cases) {
        LmSpatialReference reference(c.text, static_cast<LmSpatialReferenceFormat>(c.format));
        EXPECT_TRUE(reference.IsNull()) << c.format << " " << (c.text ? c.text : "null");
        EXPECT_EQ(reference.ExportToWKT(false), "");
    }
    // A failed XML or PROJ.4 import leaves an empty object that is not null.
    LmSpatialReference xml("<not a crs/>", eXML), proj4("+proj=nonsense", eProj4);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_FALSE(xml.IsNull());
    EXPECT_FALSE(proj4.IsNull());
    EXPECT_FALSE(xml.IsGeographic());
    EXPECT_FALSE(xml.IsProjected());
}

TEST(TextReference, WktFormatsKeepTheSourceTextUnchanged) {
    for (LmSpatialReferenceFormat format : {eWKT, eWKTOther, eAutoDetect}) {
        LmSpatialReference utm(kUtm50, format);
        ASSERT_FALSE(utm.IsNull()) << format;
        EXPECT_STREQ(utm.ExportToWKT(false).c_str(), kUtm50) << format;
    }
}

TEST(TextReference, Proj4AndXmlAreNotCachedButExportedOnFirstRequest) {
    LmSpatialReference proj4("+proj=utm +zone=50 +datum=WGS84 +units=m +no_defs", eProj4);
    ASSERT_TRUE(proj4.IsProjected());
    const LmString exported = proj4.ExportToWKT(false);
    EXPECT_EQ(exported.rfind("PROJCS[", 0), 0u);
    EXPECT_NE(exported.find("\"central_meridian\",117"), std::string::npos);
    EXPECT_EQ(proj4.ExportToWKT(false), exported);

    LmSpatialReference xml(LmSpatialReference(eCGCS2000).ExportToXml().c_str(), eXML);
    ASSERT_TRUE(xml.IsGeographic());
    EXPECT_DOUBLE_EQ(xml.FlattenInverseF(), 298.257222101);
}

TEST(TextReference, PrettyWktIsIndentedAndNeverCachedAndProj4AndXmlExports) {
    LmSpatialReference utm(kUtm50, eWKT);
    EXPECT_NE(utm.ExportToWKT(true).find("\n    GEOGCS["), std::string::npos);
    EXPECT_STREQ(utm.ExportToWKT(false).c_str(), kUtm50);
    const LmString proj4 = utm.ExportToProj4();
    EXPECT_NE(proj4.find("+proj=utm"), std::string::npos);
    EXPECT_NE(proj4.find("+zone=50"), std::string::npos);
    EXPECT_NE(utm.ExportToXml().find("<gml:ProjectedCRS"), std::string::npos);
}

TEST(Clone, OfAWktReferenceKeepsTextAndNameButIsMadeFromTheCachedTextOnly) {
    LmSpatialReference utm(kUtm50, eWKT);
    utm.Name("site grid");
    LmSmarterPtr<LmSpatialReference> clone = utm.Clone();
    EXPECT_STREQ(clone->ExportToWKT(false).c_str(), kUtm50);
    EXPECT_EQ(clone->Name(), "site grid");
    EXPECT_NE(clone->Handle(), utm.Handle());
    EXPECT_TRUE(clone->IsSame(&utm));

    LmSpatialReference xml(LmSpatialReference(eWGS84).ExportToXml().c_str(), eXML);
    xml.Name("from xml");
    clone = xml.Clone();
    EXPECT_TRUE(clone->IsNull());
    EXPECT_EQ(clone->Name(), "from xml");

    xml.ExportToWKT(false);
    clone = xml.Clone();
    EXPECT_TRUE(clone->IsGeographic());
    EXPECT_TRUE(clone->IsSame(&xml));
}

TEST(Geographic, OfAGeographicReferenceIsTheSameObjectAndNullWithoutAGeographicCs) {
    LmSmarterPtr<LmSpatialReference> wgs84(new LmSpatialReference(eWGS84));
    LmSmarterPtr<LmSpatialReference> geographic = wgs84->Geographic();
    EXPECT_EQ(static_cast<LmSpatialReference*>(geographic), static_cast<LmSpatialReference*>(wgs84));
    EXPECT_EQ(wgs84->RefCount(), 2);

    LmSpatialReference local(R"(LOCAL_CS["site",LOCAL_DATUM["site",32767],UNIT["Meter",1],)"
                             R"(AXIS["X",EAST],AXIS["Y",NORTH]])",
                             eWKT);
    ASSERT_TRUE(local.IsLocalCS());
    EXPECT_FALSE(local.Geographic());
    EXPECT_FALSE(LmSpatialReference(nullptr, eWKT).Geographic());
}

TEST(Geographic, OfAProjectedReferenceIsItsGeographicCs) {
    LmSpatialReference utm(kUtm50, eWKT);
    LmSmarterPtr<LmSpatialReference> geographic = utm.Geographic();
    ASSERT_TRUE(geographic);
    EXPECT_TRUE(geographic->IsGeographic());
    EXPECT_EQ(geographic->Name(), "WGS 84");
    EXPECT_EQ(geographic->ExportToWKT(false).rfind("GEOGCS[\"WGS 84\"", 0), 0u);
    EXPECT_DOUBLE_EQ(geographic->FlattenInverseF(), 298.257223563);
}

}  // namespace

// A geographic CS labelled with the code of a geocentric CRS ends the process
// inside PROJ 9.1 when exported to PROJ.4 or transformed; the label is dropped.
// The last text, whose zero unit and missing commas PROJ's reader forgives,
// cannot be written as WKT 1, so OGR holds it as WKT 2, where the label is an
// ID of the BASEGEOGCRS; it has no PROJ.4 form or point worth checking.
TEST(TextReference, GeographicCsLabelledGeocentricIsUsableWithoutTheLabel) {
    const auto labelled = [](std::string text, std::size_t at, const char* code) {
        return text.insert(at, std::string(",AUTHORITY[\"EPSG\",\"") + code + "\"]");
    };
    const std::string utm50 = kUtm50;
    const std::size_t utmGeogcsEnd = utm50.find("]],PROJECTION") + 1;
    const struct {
        std::string text;
        const char* code;
        const char* proj4;  // null: not checked
    } cases[] = {
        {labelled(kWgs84, std::strlen(kWgs84) - 1, "4978"), "4978", "+proj=longlat +datum=WGS84 +no_defs"},
        {labelled(kWgs84, std::strlen(kWgs84) - 1, "4936"), "4936", "+proj=longlat +datum=WGS84 +no_defs"},
        {labelled(utm50, utmGeogcsEnd, "4362"), "4362", "+proj=utm +zone=50 +datum=WGS84 +units=m +no_defs"},
        {R"(PROJCS["",GEOGCS["",DATUM[SPHEROID["",7,2[""]][""][""""]]UNIT["e",3[""]]AUTHORITY["EPSG","4362"]])"
         R"(PROJECTION["TransverseMercator"][""][""]PARAMETER["northing",0]UNIT["m",0[""[""[""]][""]]""])"
         R"(AUTHORITY["",""]])",
         "4362", nullptr},
    };
    for (const auto& c : cases) {
        LmSmarterPtr<LmSpatialReference> reference(new LmSpatialReference(c.text.c_str(), eWKT));
        ASSERT_FALSE(reference->IsNull()) << c.code;
        const LmString proj4 = reference->ExportToProj4();
        EXPECT_EQ(reference->ExportToWKT(true).find(c.code), std::string::npos) << c.code;
        LmProjectCoordinateTransformation toWgs84(reference, new LmSpatialReference(eWGS84));
        // A point of the central meridian 117 E, or a WGS 84 point kept as it is.
        const bool projected = reference->IsProjected();
        double x = projected ? 500000.0 : 116.391, y = projected ? 4400000.0 : 39.907;
        const bool transformed = toWgs84.Transformation(x, y);
        if (c.proj4 == nullptr) continue;
        EXPECT_EQ(proj4, c.proj4) << c.code;
        EXPECT_TRUE(transformed) << c.code;
        EXPECT_NEAR(x, projected ? 117.0 : 116.391, 1e-9) << c.code;
    }
}

// OGR refreshes its PROJ object lazily, even in IsGeographic(), and PROJ
// reports the missing grid of a +nadgrids reference through GDAL's error
// handler each time: every query must keep that off stderr.
TEST(TextReference, QueriesOfAReferenceWithAMissingGridPrintNothing) {
    for (const char* text : {"+proj=longlat +ellps=clrk66 +nadgrids=conus +no_defs",
                             "+proj=tmerc +ellps=clrk66 +nadgrids=ntv1_can.dat +no_defs"}) {
        testing::internal::CaptureStderr();
        LmSmarterPtr<LmSpatialReference> reference(new LmSpatialReference(text, eProj4));
        LmSmarterPtr<LmSpatialReference> wgs84(new LmSpatialReference(eWGS84));
        reference->IsGeographic();
        reference->Name();
        reference->ExportToWKT(false);
        reference->ExportToProj4();
        reference->EPSG();
        reference->Datum();
        reference->IsSame(wgs84);
        reference->IsSameParameter(wgs84);
        wgs84->IsSame(reference);
        reference->Clone();
        LmProjectCoordinateTransformation projection(reference, wgs84);
        double x = -100.0, y = 40.0;
        projection.Transformation(x, y);
        EXPECT_EQ(testing::internal::GetCapturedStderr(), "") << text;
    }
}
