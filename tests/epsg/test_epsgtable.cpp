// The table is read once per process, so every case that needs its own table
// runs in a child process (a death test that must exit with status 0).
#include <lmspatialreference/epsg.h>

#include "epsgtestsupport.h"

#include <ogr_spatialref.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>

using namespace epsgtest;

namespace {

// Leaves the child with status 0 when every check held; the first failing
// check is printed for the parent's log.
#define CHILD_CHECK(condition)                                         \
    do {                                                              \
        if (!(condition)) {                                           \
            std::fprintf(stderr, "failed: %s\n", #condition);         \
            std::_Exit(1);                                            \
        }                                                             \
    } while (0)

void UseTable(const std::string& text) {
    const std::string path = WriteText(MakeFolder("table") + "/EPSG.txt", text);
    LmGlobeConfig::Set("Kernel/SpatialReference/EPSG", path.c_str());
}

// The name of the reference built from a code: the record's CS name, "" when null.
std::string NameOf(int code) {
    LmSpatialReference reference(code);
    return reference.IsNull() ? "" : reference.Name();
}

class EpsgTableTest : public testing::Test {
protected:
    void SetUp() override { GTEST_FLAG_SET(death_test_style, "threadsafe"); }
};

struct LoadCase {
    const char* what;
    std::string table;
    bool loads;
    std::vector<std::pair<int, std::string>> names;  // code, expected name ("" = null)
};

TEST_F(EpsgTableTest, LoadRules) {
    const std::string a = Geographic("A"), b = Geographic("B"), c = Geographic("C");
    const std::vector<LoadCase> cases = {
        {"count 0", "0\n1\n" + a + "\n", false, {{1, ""}, {4326, ""}}},
        {"negative count", "-3\n1\n" + a + "\n", false, {{1, ""}}},
        {"count 100000", "100000\n1\n" + a + "\n", false, {{1, ""}}},
        {"short file", "5\n1\n" + a + "\n2\n" + b + "\n3\n" + c + "\n", true, {{1, "A"}, {2, "B"}, {3, "C"}}},
        {"prefixes in any case", "3\nEPSG:11\n" + a + "\nepsg:12\n" + b + "\nEpSg:13\n" + c + "\n", true,
         {{11, "A"}, {12, "B"}, {13, "C"}}},
        {"code 0 ends the load", "3\n1\n" + a + "\n0\n" + b + "\n3\n" + c + "\n", true, {{1, "A"}, {3, ""}}},
        {"later duplicate wins", "2\n7\n" + a + "\nEPSG:7\n" + b + "\n", true, {{7, "B"}}},
        // Codes the table lacks fall back to GDAL's own definition.
        {"GDAL fallback", "1\n1\n" + a + "\n", true, {{3857, "WGS 84 / Pseudo-Mercator"}, {999999, ""}}},
    };
    for (const LoadCase& item : cases) {
        SCOPED_TRACE(item.what);
        EXPECT_EXIT(
            {
                UseTable(item.table);
                CHILD_CHECK(LoadEPSG() == item.loads);
                for (const auto& [code, name] : item.names) CHILD_CHECK(NameOf(code) == name);
                std::_Exit(0);
            },
            testing::ExitedWithCode(0), "");
    }
}

TEST_F(EpsgTableTest, NoTableMeansNoReferenceFromAnyCode) {
    EXPECT_EXIT(
        {
            LmGlobeConfig::Set("Kernel/SpatialReference/EPSG", "/no/such/EPSG.txt");
            CHILD_CHECK(!LoadEPSG());
            CHILD_CHECK(LmSpatialReference(4326).IsNull());
            CHILD_CHECK(g_SearchEPSG(LmSmarterPtr<LmSpatialReference>(new LmSpatialReference(eWGS84))) == 0);
            // A table that appears later is still read.
            UseTable("1\n4326\n" + Geographic("Late") + "\n");
            CHILD_CHECK(NameOf(4326) == "Late");
            std::_Exit(0);
        },
        testing::ExitedWithCode(0), "");
}

TEST_F(EpsgTableTest, BuiltInsIdentifyFromAnyWorkingFolder) {
    EXPECT_EXIT(
        {
            // A fresh process: the configuration points at the data beside the library.
            CHILD_CHECK(chdir("/") == 0);
            LmSpatialReferenceManager catalogue(nullptr);
            CHILD_CHECK(catalogue.DataFolder() == std::filesystem::path(LM_TEST_DATA_DIR).lexically_normal().string());
            CHILD_CHECK(catalogue.CategoryCount() == 4);
            auto* alias = catalogue.SpecialCategory(LmSpatialReferenceManager::eEPSGAliasCategory);
            CHILD_CHECK(alias->SpatialReference(0)->Name() == "EPSG:4326");
            CHILD_CHECK(alias->SpatialReference(2)->Name() == "EPSG:3857");
            for (int i = 0; i < 4; ++i) CHILD_CHECK(catalogue.Category(i)->Count() > 0);
            CHILD_CHECK(LmSpatialReference(eWGS84).EPSG() == 4326);
            CHILD_CHECK(LmSpatialReference(eCGCS2000).EPSG() == 4490);
            CHILD_CHECK(LmSpatialReference(eWebMercator).EPSG() == 3857);
            LmSpatialReference zone(4547);
            CHILD_CHECK(zone.Name() == "CGCS2000 / 3-degree Gauss-Kruger CM 114E");
            CHILD_CHECK(zone.EPSG() == 4547);  // its own authority code, no search
            // Code-built references have the GIS axis order too.
            CHILD_CHECK(zone.Handle()->GetAxisMappingStrategy() == OAMS_TRADITIONAL_GIS_ORDER);
            CHILD_CHECK(LmSpatialReference(4326).Handle()->GetDataAxisToSRSAxisMapping() == std::vector<int>({2, 1}));
            std::_Exit(0);
        },
        testing::ExitedWithCode(0), "");
}

TEST_F(EpsgTableTest, SearchTriesRecentThenAliasThenSmallestTableCode) {
    EXPECT_EXIT(
        {
            // Code 20 has the loose match (same ellipsoid), 30 the exact one: 20 wins.
            const std::string folder = MakeFolder("search");
            WriteText(folder + "/EPSG.txt", "3\n30\n" + Geographic("Exact") + "\n20\n" + Geographic("Loose") +
                                                "\n10\n" + Geographic("K", true) + "\n");
            LmGlobeConfig::Set("Kernel/SpatialReference/DataFolder", folder.c_str());
            LmGlobeConfig::Clear("Kernel/SpatialReference/EPSG");
            LmSmarterPtr<LmSpatialReference> exact(new LmSpatialReference(Geographic("Exact").c_str(), eWKT));
            CHILD_CHECK(g_SearchRecentEPSG(exact) == 0);
            CHILD_CHECK(exact->EPSG() == 20);
            // The table's reference of code 20 is now recent.
            LmSmarterPtr<LmSpatialReference> loose(new LmSpatialReference(Geographic("Loose").c_str(), eWKT));
            CHILD_CHECK(g_SearchRecentEPSG(loose) == 20);
            CHILD_CHECK(g_SearchRecentEPSG(exact) == 0);

            // An alias answers before the table, and is then recent.
            WriteText(folder + "/EPSG_Alias.txt", "1\nepsg:77\n" + Geographic("K2", true) + "\n");
            LmSmarterPtr<LmSpatialReference> krassowsky(new LmSpatialReference(Geographic("K3", true).c_str(), eWKT));
            CHILD_CHECK(g_SearchEPSG(krassowsky) == 77);
            CHILD_CHECK(g_SearchRecentEPSG(krassowsky) == 0);  // cached under K2's name, not the same CS
            LmSmarterPtr<LmSpatialReference> k2(new LmSpatialReference(Geographic("K2", true).c_str(), eWKT));
            CHILD_CHECK(g_SearchRecentEPSG(k2) == 77);

            // Recent records answer first, smallest code first.
            LmSmarterPtr<LmSpatialReference> mine(new LmSpatialReference(Geographic("Mine").c_str(), eWKT));
            g_CacheRecentEPSG(Geographic("Mine").c_str(), 500);
            g_CacheRecentEPSG(mine, 400);
            CHILD_CHECK(g_SearchEPSG(mine) == 400);
            std::_Exit(0);
        },
        testing::ExitedWithCode(0), "");
}

TEST_F(EpsgTableTest, AliasCodeIsReadFromTheAliasName) {
    const struct {
        const char* what;
        std::string nameLine, csName;
        int code;
    } cases[] = {
        {"the name line", "epsg:77", "K", 77},
        {"an empty name line: the CS name", "", "EPSG:88", 88},
        {"beyond int", "EPSG:4294967373", "K", 0},  // 2^32 + 77, which a plain cast reads as 77
        {"not positive", "EPSG:-5", "K", 0},
        {"no code at all", "", "K", 0},
    };
    for (const auto& item : cases) {
        SCOPED_TRACE(item.what);
        EXPECT_EXIT(
            {
                // The table's only entry is on another ellipsoid, so only the alias can answer.
                const std::string folder = MakeFolder("alias");
                WriteText(folder + "/EPSG.txt", "1\n10\n" + Geographic("W") + "\n");
                WriteText(folder + "/EPSG_Alias.txt",
                          "1\n" + item.nameLine + "\n" + Geographic(item.csName, true) + "\n");
                LmGlobeConfig::Set("Kernel/SpatialReference/DataFolder", folder.c_str());
                LmGlobeConfig::Clear("Kernel/SpatialReference/EPSG");
                LmSmarterPtr<LmSpatialReference> probe(new LmSpatialReference(Geographic("P", true).c_str(), eWKT));
                CHILD_CHECK(g_SearchAliasEPSG(probe) == item.code);
                CHILD_CHECK(g_SearchEPSG(probe) == item.code);
                std::_Exit(0);
            },
            testing::ExitedWithCode(0), "");
    }
}

}  // namespace
