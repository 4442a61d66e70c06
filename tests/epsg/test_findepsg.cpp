// FindEPSG on texts as users' files carry them, and on every code of the
// generated table exported the two ways files usually hold one.
#include <lmspatialreference/epsg.h>

#include "internal/linereader.h"
#include "internal/ogrsupport.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <map>

using namespace Lumora::Kernel;

namespace {

std::string _Esri(const char* name, const char* geogcs, const char* datum, const char* spheroid, const char* projection,
                  const char* parameters, const char* unit = "UNIT[\"Meter\",1.0]") {
    return std::string("PROJCS[\"") + name + "\",GEOGCS[\"" + geogcs + "\",DATUM[\"" + datum + "\",SPHEROID[" +
           spheroid + "]],PRIMEM[\"Greenwich\",0.0],UNIT[\"Degree\",0.0174532925199433]],PROJECTION[\"" + projection +
           "\"]," + parameters + "," + unit + "]";
}

const char* const kGrs80 = "\"GRS_1980\",6378137.0,298.257222101";
const char* const kKrassowsky = "\"Krasovsky_1940\",6378245.0,298.3";
const char* const kIag75 = "\"IAG_1975\",6378140.0,298.257";

std::string _Tm(double centralMeridian, double scale, double falseEasting, double falseNorthing, double latitude = 0.0) {
    char text[400];
    std::snprintf(text, sizeof text,
                  "PARAMETER[\"False_Easting\",%.10g],PARAMETER[\"False_Northing\",%.10g],PARAMETER[\"Central_Meridian\","
                  "%.16g],PARAMETER[\"Scale_Factor\",%.10g],PARAMETER[\"Latitude_Of_Origin\",%.16g]",
                  falseEasting, falseNorthing, centralMeridian, scale, latitude);
    return text;
}

struct Case {
    const char* what;
    std::string text;
    int findEPSG;
};

// ESRI .prj texts as ArcGIS writes them; the expected codes are the EPSG
// dataset's for the names.
std::vector<Case> _RealTexts() {
    return {
        {"NAD83 UTM 18N, not REGVEN", _Esri("NAD_1983_UTM_Zone_18N", "GCS_North_American_1983", "D_North_American_1983", kGrs80, "Transverse_Mercator", _Tm(-75, 0.9996, 500000, 0).c_str()), 26918},
        {"GDA94 MGA 55, not PNG94", _Esri("GDA_1994_MGA_Zone_55", "GCS_GDA_1994", "D_GDA_1994", kGrs80, "Transverse_Mercator", _Tm(147, 0.9996, 500000, 10000000).c_str()), 28355},
        {"GDA2020 MGA 55", _Esri("GDA2020_MGA_Zone_55", "GCS_GDA2020", "D_GDA2020", kGrs80, "Transverse_Mercator", _Tm(147, 0.9996, 500000, 10000000).c_str()), 7855},
        {"JGD2011 zone 9, not JGD2000", _Esri("JGD_2011_Japan_Zone_9", "GCS_JGD_2011", "D_JGD_2011", kGrs80, "Transverse_Mercator", _Tm(139.8333333333333, 0.9999, 0, 0, 36).c_str()), 6677},
        {"New Jersey in US feet, not New York East", _Esri("NAD_1983_StatePlane_New_Jersey_FIPS_2900_Feet", "GCS_North_American_1983", "D_North_American_1983", kGrs80, "Transverse_Mercator", _Tm(-74.5, 0.9999, 492125, 0, 38.83333333333334).c_str(), "UNIT[\"Foot_US\",0.3048006096012192]"), 3424},
        {"CGCS2000 3-degree, not 6-degree", _Esri("CGCS2000_3_Degree_GK_CM_117E", "GCS_China_Geodetic_Coordinate_System_2000", "D_China_2000", kGrs80, "Gauss_Kruger", _Tm(117, 1, 500000, 0).c_str()), 4548},
        {"Beijing 1954 3-degree", _Esri("Beijing_1954_3_Degree_GK_CM_117E", "GCS_Beijing_1954", "D_Beijing_1954", kKrassowsky, "Gauss_Kruger", _Tm(117, 1, 500000, 0).c_str()), 2436},
        {"Xian 1980 3-degree", _Esri("Xian_1980_3_Degree_GK_CM_117E", "GCS_Xian_1980", "D_Xian_1980", kIag75, "Gauss_Kruger", _Tm(117, 1, 500000, 0).c_str()), 2384},
        {"ETRS89 UTM 32N, not its N-E twin", _Esri("ETRS_1989_UTM_Zone_32N", "GCS_ETRS_1989", "D_ETRS_1989", kGrs80, "Transverse_Mercator", _Tm(9, 0.9996, 500000, 0).c_str()), 25832},
        {"TM35FIN, not UTM 35N (N-E)", _Esri("ETRS_1989_TM35FIN_E_N", "GCS_ETRS_1989", "D_ETRS_1989", kGrs80, "Transverse_Mercator", _Tm(27, 0.9996, 500000, 0).c_str()), 3067},
        {"NAD83, not CGCS2000", "GEOGCS[\"GCS_North_American_1983\",DATUM[\"D_North_American_1983\",SPHEROID[\"GRS_1980\",6378137.0,298.257222101]],PRIMEM[\"Greenwich\",0.0],UNIT[\"Degree\",0.0174532925199433]]", 4269},
        {"NAD27, not Tete", "GEOGCS[\"GCS_North_American_1927\",DATUM[\"D_North_American_1927\",SPHEROID[\"Clarke_1866\",6378206.4,294.9786982]],PRIMEM[\"Greenwich\",0.0],UNIT[\"Degree\",0.0174532925199433]]", 4267},
        {"ESRI's Web Mercator", _Esri("WGS_1984_Web_Mercator_Auxiliary_Sphere", "GCS_WGS_1984", "D_WGS_1984", "\"WGS_1984\",6378137.0,298.257223563", "Mercator_Auxiliary_Sphere", "PARAMETER[\"False_Easting\",0.0],PARAMETER[\"False_Northing\",0.0],PARAMETER[\"Central_Meridian\",0.0],PARAMETER[\"Standard_Parallel_1\",0.0],PARAMETER[\"Auxiliary_Sphere_Type\",0.0]", "UNIT[\"Meter\",1.0],AUTHORITY[\"ESRI\",\"102100\"]"), 3857},
        {"a city grid on a local meridian", _Esri("Beijing_Local", "GCS_Beijing_1954", "D_Beijing_1954", kKrassowsky, "Gauss_Kruger", _Tm(116.35025, 1, 500000, 300000, 39.865).c_str()), 0},
        {"an ESRI-only projection", _Esri("World_Winkel_Tripel_NGS", "GCS_WGS_1984", "D_WGS_1984", "\"WGS_1984\",6378137.0,298.257223563", "Winkel_Tripel", "PARAMETER[\"False_Easting\",0.0],PARAMETER[\"False_Northing\",0.0],PARAMETER[\"Central_Meridian\",0.0],PARAMETER[\"Standard_Parallel_1\",50.46666666666667]"), 0},
        {"no datum, a bare ellipsoid", "GEOGCS[\"GCS_unnamed\",DATUM[\"D_unknown\",SPHEROID[\"GRS_1980\",6378137.0,298.257222101]],PRIMEM[\"Greenwich\",0.0],UNIT[\"Degree\",0.0174532925199433]]", 0},
    };
}

TEST(FindEpsg, NamesTheCodeRealTextsMean) {
    for (const Case& test : _RealTexts()) {
        LmSpatialReference reference(test.text.c_str(), eWKT);
        ASSERT_FALSE(reference.IsNull()) << test.what;
        std::vector<LmEPSGMatch> candidates;
        EXPECT_EQ(reference.FindEPSG(&candidates), test.findEPSG) << test.what;
        if (test.findEPSG != 0) {
            ASSERT_FALSE(candidates.empty()) << test.what;
            EXPECT_EQ(candidates.front().Code, test.findEPSG) << test.what;
            EXPECT_GE(candidates.front().Confidence, 70) << test.what;
        }
        for (std::size_t i = 1; i < candidates.size(); ++i)
            EXPECT_GE(candidates[i - 1].Confidence, candidates[i].Confidence) << test.what;
    }
}

}  // namespace

namespace {

// GDAL's WKT of a table text in ESRI's dialect, or in its own without the
// AUTHORITY nodes that would give the code away.
std::string _Exported(const LmString& wkt, bool esri) {
    LmQuietGdalErrors quiet;
    OGRSpatialReference srs;
    if (srs.importFromWkt(wkt.c_str()) != OGRERR_NONE) return "";
    char* text = nullptr;
    const char* const esriOptions[] = {"FORMAT=WKT1_ESRI", nullptr};
    if (esri) srs.exportToWkt(&text, esriOptions);
    else srs.exportToWkt(&text);
    std::string exported = TakeOgrText(text);
    for (std::size_t at; !esri && (at = exported.find(",AUTHORITY[")) != std::string::npos;)
        exported.erase(at, exported.find(']', at) + 1 - at);
    return exported;
}

TEST(FindEpsg, NamesBackNinetyNinePercentOfTheTableAsFilesCarryIt) {
    const auto records = ReadCategoryFile(LM_TEST_DATA_DIR "/EPSG.txt");
    ASSERT_GT(records.size(), 5000u);
    std::map<std::string, int> outcomes;
    int total = 0, named = 0;
    for (std::size_t i = 0; i < records.size(); i += LM_TEST_STRIDE) {
        const int code = static_cast<int>(CodeOfLine(records[i].first));
        for (bool esri : {true, false}) {
            const std::string text = _Exported(records[i].second, esri);
            if (text.empty()) continue;
            LmSpatialReference reference(text.c_str(), eWKT);
            std::vector<LmEPSGMatch> candidates;
            const int found = reference.FindEPSG(&candidates);
            ++total;
            std::string outcome;
            if (found == code) {
                outcome = "named back";
            } else {
                const auto own = std::find_if(candidates.begin(), candidates.end(),
                                              [code](const LmEPSGMatch& match) { return match.Code == code; });
                if (own != candidates.end() && !candidates.empty() && own->Confidence == candidates.front().Confidence && found != 0)
                    outcome = "indistinguishable: same numbers, same datum and same name";
                else if (own == candidates.end() && esri && found != 0)
                    outcome = "northing-first code whose text states no axes: its easting-first twin";
                else
                    outcome = "missed";
                if (outcome == "missed" && outcomes[outcome] < 30)
                    std::printf("%s %d -> %d (%zu candidates%s%s)\n", esri ? "esri" : "gdal", code, found, candidates.size(),
                                candidates.empty() ? "" : ", top ", candidates.empty() ? "" : (std::to_string(candidates.front().Code) + "/" + std::to_string(candidates.front().Confidence)).c_str());
            }
            named += outcome != "missed";
            ++outcomes[outcome];
        }
    }
    for (const auto& outcome : outcomes) std::printf("%6d  %s\n", outcome.second, outcome.first.c_str());
    EXPECT_GE(named, total * 99 / 100) << named << " of " << total;
}

}  // namespace
