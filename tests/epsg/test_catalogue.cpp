#include "epsgtestsupport.h"

#include <unistd.h>

using namespace epsgtest;

namespace {

const char* const kKey = "Kernel/SpatialReference/DataFolder";
const char* const kOldKey = "Kernel/SpatialRererence/DataFolder";

// Runs in a working folder of its own with neither key set, restoring both after.
class CatalogueTest : public testing::Test {
protected:
    void SetUp() override {
        m_previous = std::filesystem::current_path();
        LmGlobeConfig::Clear(kKey);
        LmGlobeConfig::Clear(kOldKey);
    }
    void TearDown() override {
        std::filesystem::current_path(m_previous);
        LmGlobeConfig::Clear(kKey);
        LmGlobeConfig::Clear(kOldKey);
    }
    std::filesystem::path m_previous;
};

TEST_F(CatalogueTest, FolderComesFromTheArgumentThenEitherKeyThenEitherDefault) {
    const std::string root = MakeFolder("resolve");
    for (const char* sub : {"/run", "/data/coordinatesystem", "/data/Coordinate System", "/given", "/configured"})
        std::filesystem::create_directories(root + sub);
    std::filesystem::current_path(root + "/run");

    EXPECT_EQ(LmSpatialReferenceManager((root + "/given").c_str()).DataFolder(), root + "/given");
    // The correct key's default folder exists, so it wins over the old spelling.
    EXPECT_EQ(LmSpatialReferenceManager((root + "/missing").c_str()).DataFolder(), root + "/data/coordinatesystem");
    std::filesystem::remove_all(root + "/data/coordinatesystem");
    EXPECT_EQ(LmSpatialReferenceManager(nullptr).DataFolder(), root + "/data/Coordinate System");

    LmGlobeConfig::Set(kOldKey, (root + "/configured").c_str());
    EXPECT_EQ(LmSpatialReferenceManager("").DataFolder(), root + "/configured");
    LmGlobeConfig::Set(kKey, "../given");  // relative to the working folder
    EXPECT_EQ(LmSpatialReferenceManager(nullptr).DataFolder(), root + "/given");
    EXPECT_EQ(MakeSpecialFolder(kKey, "x"), root + "/run/../given");
    EXPECT_EQ(MakeSpecialFolder("No/Such/Key", (root + "/configured").c_str()), root + "/configured");
    EXPECT_EQ(MakeSpecialFolder("No/Such/Key", "nowhere"), "");

    LmGlobeConfig::Clear(kOldKey);
    LmGlobeConfig::Clear(kKey);
    std::filesystem::remove_all(root + "/data");
    EXPECT_EQ(LmSpatialReferenceManager(nullptr).DataFolder(), "");
    LmSpatialReferenceManager empty(nullptr);
    EXPECT_EQ(empty.CategoryCount(), 0);
    EXPECT_EQ(empty.Category(0), nullptr);
    EXPECT_EQ(empty.SpecialCategory(LmSpatialReferenceManager::eEPSGCategory), nullptr);
}

TEST_F(CatalogueTest, CategoriesCountTheirEntriesAndBuildNamedReferences) {
    const std::string folder = MakeFolder("categories");
    const std::string wgs = Geographic("Mine");
    WriteText(folder + "/zero.txt", "0\nA\n" + wgs + "\n");
    WriteText(folder + "/toomany.txt", "100000\nA\n" + wgs + "\n");
    WriteText(folder + "/words.txt", "abc\nA\n" + wgs + "\n");
    WriteText(folder + "/short.txt", "3\nFirst\n" + wgs + "\nSecond\n" + Geographic("Other") + "\n");
    WriteText(folder + "/epsg.txt", "1\nE\n" + wgs + "\n");
    WriteText(folder + "/Epsg_ALIAS.TXT", "1\nEPSG:4326\n" + wgs + "\n");
    WriteText(folder + "/notes.md", "1\nA\n" + wgs + "\n");
    std::filesystem::create_directories(folder + "/nested.txt");

    LmSpatialReferenceManager catalogue(folder.c_str());
    ASSERT_EQ(catalogue.CategoryCount(), 6);  // only regular "*.txt" files
    EXPECT_EQ(catalogue.Category(6), nullptr);
    EXPECT_EQ(catalogue.Category(-1), nullptr);
    auto named = [&catalogue](const std::string& name) {
        for (int i = 0; i < catalogue.CategoryCount(); ++i)
            if (catalogue.Category(i)->Name() == name) return catalogue.Category(i);
        return static_cast<LmSpatialReferenceManager::LmSpatialReferenceCategory*>(nullptr);
    };
    for (const auto& [name, count] : std::vector<std::pair<std::string, int>>{
             {"zero", 0}, {"toomany", 0}, {"words", 0}, {"short", 3}, {"epsg", 1}, {"Epsg_ALIAS", 1}}) {
        ASSERT_NE(named(name), nullptr) << name;
        EXPECT_EQ(named(name)->Count(), count) << name;
    }

    EXPECT_EQ(catalogue.SpecialCategory(LmSpatialReferenceManager::eEPSGCategory)->Name(), "epsg");
    EXPECT_EQ(catalogue.SpecialCategory(LmSpatialReferenceManager::eEPSGAliasCategory)->Name(), "Epsg_ALIAS");
    EXPECT_EQ(catalogue.SpecialCategory(static_cast<LmSpatialReferenceManager::LmSpecialCategory>(7))->Name(), "epsg");

    LmSpatialReferenceManager::LmSpatialReferenceCategory* shortFile = named("short");
    LmSmarterPtr<LmSpatialReference> second = shortFile->SpatialReference(1);
    EXPECT_EQ(second->Name(), "Second");
    EXPECT_TRUE(second->IsGeographic());
    EXPECT_NE(shortFile->SpatialReference(1).operator->(), second.operator->());  // a new object each time
    // The promised third entry is missing: an empty name and a null reference.
    EXPECT_TRUE(shortFile->SpatialReference(2)->IsNull());
    EXPECT_EQ(shortFile->SpatialReference(2)->Name(), "");
    EXPECT_FALSE(shortFile->SpatialReference(3));
    EXPECT_FALSE(shortFile->SpatialReference(-1));
}

}  // namespace
