#include <lmspatialreference/legacyparameters.h>
#include <lmspatialreference/coordinatetransformation.h>
#include <lmspatialreference/spatialreference.h>

#include <gtest/gtest.h>
#include <ogr_spatialref.h>
#include <ogr_srs_api.h>

#include <cmath>
#include <map>
#include <memory>
#include <string>
#include <vector>

using namespace Lumora::Kernel;

namespace {

struct DestroySrs {
    void operator()(OGRSpatialReference* srs) const { OGRSpatialReference::DestroySpatialReference(srs); }
};
using Srs = std::unique_ptr<OGRSpatialReference, DestroySrs>;

std::string Join(const std::vector<std::string>& fields) {
    std::string text;
    for (std::size_t i = 0; i < fields.size(); ++i) text += (i ? "," : "") + fields[i];
    return text;
}

// A Beijing 1954 Gauss-Kruger record for 6-degree zone 20 (central meridian
// 117 E) on the Krassowsky ellipsoid, with the given fields replaced.
std::string GaussKrugerText(const std::map<int, std::string>& changes = {}, int count = 288) {
    std::vector<std::string> fields(count, "0");
    const std::map<int, std::string> record = {{1, "Beijing1954"}, {2, "6378.245"}, {4, "298.3"},
                                               {6, "11"}, {7, "Beijing1954_GK_20"}, {9, "20"},
                                               {11, "500"}, {13, "117"}, {27, "1"}};
    for (const auto& [field, value] : record) fields[field] = value;
    for (const auto& [field, value] : changes) fields[field] = value;
    return Join(fields);
}

// Field i holds "i.5", or "ti" where the record keeps a text: integers then
// read i and doubles i + 0.5, so every member names the field it came from.
std::string DistinctText(int count) {
    std::vector<std::string> fields(count);
    for (int i = 0; i < count; ++i) {
        const bool text = i == 1 || i == 7 || (i >= 55 && i < 255 && (i - 55) % 5 == 0) || (i >= 255 && i < 259);
        fields[i] = (text ? "t" : "") + std::to_string(i) + (text ? "" : ".5");
    }
    return Join(fields);
}

TEST(LegacyRecord, EveryFieldLandsInItsMember) {
    tag_Projection_Param r;
    ASSERT_TRUE(r.FromString(DistinctText(288).c_str()));
    const std::vector<std::pair<int, const std::int32_t*>> ints = {
        {0, &r.Kind},        {6, &r.ProjType},    {8, &r.ZoneWidth}, {9, &r.ZoneNumber},
        {10, &r.Hemisphere}, {54, &r.ItemCount}, {259, &r.Flags[0]}, {268, &r.Flags[9]}};
    for (const auto& [field, member] : ints) EXPECT_EQ(*member, field) << "field " << field;
    const std::vector<std::pair<int, const double*>> doubles = {
        {2, &r.SemiMajorKm},          {3, &r.SemiMinorKm},         {4, &r.InvFlattening},
        {5, &r.RadiusKm},             {11, &r.FalseEastingKm},     {12, &r.FalseNorthingKm},
        {13, &r.CentralMeridian},     {14, &r.OriginLatitude},     {15, &r.ExtraParams[0]},
        {24, &r.ExtraParams[9]},      {25, &r.StdParallel1},       {26, &r.StdParallel2},
        {27, &r.ScaleFactor},         {28, &r.SatelliteHeightKm},  {29, &r.TrueScaleLatitude},
        {30, &r.SpareParam},          {31, &r.Matrix1.Value[0][0]}, {33, &r.Matrix1.Value[0][2]},
        {34, &r.Matrix1.Value[1][0]}, {39, &r.Matrix1.Value[2][2]}, {40, &r.Matrix2.Value[0][0]},
        {48, &r.Matrix2.Value[2][2]}, {49, &r.Affine[0]},          {53, &r.Affine[4]},
        {56, &r.ItemValue1[0]},       {57, &r.ItemValue2[0]},      {58, &r.ItemValue3[0]},
        {59, &r.ItemValue4[0]},       {61, &r.ItemValue1[1]},      {251, &r.ItemValue1[39]},
        {254, &r.ItemValue4[39]},     {269, &r.Shift[0]},          {278, &r.Shift[9]}};
    for (const auto& [field, member] : doubles) EXPECT_EQ(*member, field + 0.5) << "field " << field;
    const std::vector<std::pair<int, std::string>> texts = {
        {1, LmFixedText(r.GeogName)},       {7, LmFixedText(r.ProjName)},   {55, LmFixedText(r.ItemNames[0])},
        {60, LmFixedText(r.ItemNames[1])},  {250, LmFixedText(r.ItemNames[39])},
        {255, LmFixedText(r.Labels[0])},    {258, LmFixedText(r.Labels[3])}};
    for (const auto& [field, member] : texts) EXPECT_EQ(member, "t" + std::to_string(field));
    // Fields 279 to 287 are never read: the second half of the shift block stays 0.
    for (int i = 10; i < 20; ++i) EXPECT_EQ(r.Shift[i], 0.0);
}

TEST(LegacyRecord, NeedsAtLeast288FieldsAndLeavesTheRecordAloneOtherwise) {
    tag_Projection_Param r;
    EXPECT_FALSE(r.FromString(GaussKrugerText({}, 287).c_str()));
    EXPECT_FALSE(r.FromString(nullptr));
    EXPECT_FALSE(r.FromString(""));
    EXPECT_EQ(r.ProjType, 0);
    EXPECT_EQ(r.SemiMajorKm, 6378.2064);
    EXPECT_TRUE(r.FromString(GaussKrugerText({}, 288).c_str()));
    EXPECT_EQ(r.ProjType, 11);
    EXPECT_EQ(r.SemiMajorKm, 6378.245);
    EXPECT_TRUE(r.ToString().empty());
}

TEST(LegacyRecord, FixedTextsAreCutWithoutTerminatorAndReadBackBounded) {
    tag_Projection_Param r;
    ASSERT_TRUE(r.FromString(GaussKrugerText({{1, std::string(200, 'A')}, {7, std::string(127, 'B')}, {6, "1"}}).c_str()));
    EXPECT_EQ(std::string(r.GeogName, 128), std::string(128, 'A'));  // no terminator anywhere
    EXPECT_EQ(LmFixedText(r.GeogName), std::string(128, 'A'));
    EXPECT_EQ(LmFixedText(r.ProjName), std::string(127, 'B'));
    Srs srs(r.ToGdal());
    EXPECT_STREQ(srs->GetAttrValue("GEOGCS"), std::string(128, 'A').c_str());

    char buffer[4];
    Parser<char*>::Parse("abcdef", buffer, sizeof buffer);
    EXPECT_STREQ(buffer, "abc");
    std::int32_t wrapped = 0;
    Parser<std::int32_t>::Parse("4294967297", wrapped);  // 2^32 + 1 keeps its low 32 bits
    EXPECT_EQ(wrapped, 1);
}

TEST(LegacyRecord, TypesWithoutAProjectionConvertToAnEmptyReference) {
    tag_Projection_Param r;
    for (int type : {0, 40, 41}) {
        r.ProjType = type;
        Srs srs(r.ToGdal());
        ASSERT_NE(srs, nullptr);
        EXPECT_TRUE(srs->IsEmpty()) << type;
    }
}

// The method and parameters of every projected type, and the zone forms of
// types 11 and 12, are known answers in tests/data/legacy.known.
TEST(LegacyRecord, GeographicAndUnknownTypes) {
    tag_Projection_Param r;
    Parser<char[128]>::Parse("Geog", r.GeogName);
    Parser<char[128]>::Parse("Proj", r.ProjName);
    r.ProjType = 1;
    Srs geographic(r.ToGdal());
    EXPECT_TRUE(geographic->IsGeographic());
    EXPECT_STREQ(geographic->GetAttrValue("GEOGCS"), "Geog");
    for (int type : {9, 35, -3, 1000}) {
        r.ProjType = type;
        Srs nameOnly(r.ToGdal());
        EXPECT_STREQ(nameOnly->GetAttrValue("PROJCS"), "Proj") << type;
        EXPECT_DOUBLE_EQ(nameOnly->GetProjParm(SRS_PP_FALSE_EASTING, -1), -1) << type;
        EXPECT_DOUBLE_EQ(nameOnly->GetSemiMajor(), 6378206.4) << type;
    }
}

TEST(LegacyRecord, OnlyASevenParameterShiftBecomesTowgs84) {
    for (int type : {1, 11}) {
        for (double count : {7.0, 3.0, 0.0, 7.5}) {
            tag_Projection_Param r;
            r.ProjType = type;
            r.Shift[0] = count;
            for (int i = 1; i < 10; ++i) r.Shift[i] = i * 1.5;
            Srs srs(r.ToGdal());
            double towgs84[7] = {};
            const bool shifted = srs->GetTOWGS84(towgs84, 7) == OGRERR_NONE;
            EXPECT_EQ(shifted, count == 7.0) << type << " " << count;
            for (int i = 0; shifted && i < 7; ++i) EXPECT_DOUBLE_EQ(towgs84[i], (i + 1) * 1.5);
            // The shift must not cost the projected system its own ellipsoid.
            EXPECT_DOUBLE_EQ(srs->GetSemiMajor(), 6378206.4);
        }
    }
}

TEST(LegacyText, AutoDetectFallsBackToWktWhileTheLegacyFormatDoesNot) {
    const char* wkt =
        R"(GEOGCS["WGS 84",DATUM["WGS_1984",SPHEROID["WGS 84",6378137,298.257223563]],)"
        R"(PRIMEM["Greenwich",0],UNIT["degree",0.0174532925199433]])";
    LmSpatialReference autoWkt(wkt, eAutoDetect);
    EXPECT_TRUE(autoWkt.IsGeographic());
    EXPECT_EQ(autoWkt.ExportToWKT(false), wkt);
    EXPECT_TRUE(LmSpatialReference(wkt, eLegacyParameters).IsNull());
    EXPECT_TRUE(LmSpatialReference(GaussKrugerText({}, 287).c_str(), eLegacyParameters).IsNull());

    const std::string legacy = GaussKrugerText();
    for (LmSpatialReferenceFormat format : {eAutoDetect, eLegacyParameters}) {
        LmSpatialReference reference(legacy.c_str(), format);
        ASSERT_TRUE(reference.IsProjected());
        EXPECT_EQ(reference.Name(), "Beijing1954_GK_20");
        EXPECT_EQ(reference.Handle()->GetAxisMappingStrategy(), OAMS_TRADITIONAL_GIS_ORDER);
        // The legacy text is not kept: the WKT is OGR's.
        EXPECT_EQ(reference.ExportToWKT(false).rfind("PROJCS[\"Beijing1954_GK_20\"", 0), 0u);
    }
    // Type 0 is an empty but non-null reference.
    LmSpatialReference empty(GaussKrugerText({{6, "0"}}).c_str(), eLegacyParameters);
    EXPECT_FALSE(empty.IsNull());
    EXPECT_FALSE(empty.IsGeographic());
    EXPECT_FALSE(empty.IsProjected());
}

// Meridian arc length from the equator to `lat` degrees, by Simpson's rule.
double MeridianArc(double a, double invF, double lat) {
    const double f = 1 / invF, e2 = f * (2 - f), phi = lat * M_PI / 180;
    const int n = 1000;
    auto m = [&](double p) { return a * (1 - e2) / std::pow(1 - e2 * std::sin(p) * std::sin(p), 1.5); };
    double sum = m(0) + m(phi);
    for (int i = 1; i < n; ++i) sum += (i % 2 ? 4 : 2) * m(phi * i / n);
    return sum * phi / n / 3;
}

TEST(LegacyText, GaussKrugerReferenceProjectsOntoTheZonePrefixedGrid) {
    LmSmarterPtr<LmSpatialReference> gk(new LmSpatialReference(GaussKrugerText().c_str(), eLegacyParameters));
    LmSmarterPtr<LmSpatialReference> geographic = gk->Geographic();
    ASSERT_TRUE(geographic);
    LmSmarterPtr<LmCoordinateTransformation> project(new LmProjectCoordinateTransformation(geographic, gk));
    // On the central meridian the easting is the false easting and the
    // northing the meridian arc.
    double x = 117.0, y = 30.0;
    ASSERT_TRUE(project->Transformation(x, y));
    EXPECT_NEAR(x, 20500000.0, 1e-6);
    EXPECT_NEAR(y, MeridianArc(6378245.0, 298.3, 30.0), 1e-3);
}

TEST(LegacyText, HostileTextsNeverBreakTheReader) {
    const std::string huge(1 << 20, 'N');
    std::string embeddedZero = GaussKrugerText();
    embeddedZero[40] = '\0';
    const std::vector<std::pair<std::string, bool>> texts = {
        {std::string(99999, ','), true},  // 100,000 empty fields
        {GaussKrugerText({{1, huge}, {7, huge}}), true},
        {GaussKrugerText({{2, "x"}, {4, "--"}, {11, "1e999"}, {13, "nan"}, {27, "-inf"}}), true},
        {GaussKrugerText({{6, "99999999999999999999"}}), true},
        {GaussKrugerText({{6, "12"}, {9, "-2147483648"}, {13, "1e308"}}), true},
        {embeddedZero, false},
    };
    for (const auto& [text, accepted] : texts) {
        tag_Projection_Param r;
        EXPECT_EQ(r.FromString(text.c_str()), accepted);
        Srs srs(r.ToGdal());
        EXPECT_NE(srs, nullptr);
        LmSpatialReference(text.c_str(), eLegacyParameters).ExportToWKT(false);
    }
    // Every type with degenerate numbers: a flat, zero-sized or infinite earth.
    for (double bad : {0.0, -1.0, std::nan(""), HUGE_VAL, -1e308}) {
        for (int type = -1; type <= 42; ++type) {
            tag_Projection_Param r;
            r.ProjType = type;
            r.SemiMajorKm = r.InvFlattening = r.ScaleFactor = r.OriginLatitude = r.StdParallel1 = bad;
            r.Shift[0] = 7;
            Srs srs(r.ToGdal());
            ASSERT_NE(srs, nullptr);
            char* wkt = nullptr;
            CPLPushErrorHandler(CPLQuietErrorHandler);
            srs->exportToWkt(&wkt);
            CPLPopErrorHandler();
            CPLFree(wkt);
        }
    }
}

}  // namespace
