#include <lmspatialreference/utility.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <string>

#include <unistd.h>

using namespace Lumora::Utility;

namespace {

std::string WriteFile(const std::string& name, const std::string& text) {
    const std::string path = testing::TempDir() + name;
    std::ofstream(path) << text;
    return path;
}

class ConfigTest : public testing::Test {
protected:
    void SetUp() override { LmGlobeConfig::Clear(""); }
    void TearDown() override { LmGlobeConfig::Clear(""); }
};

TEST_F(ConfigTest, PathAndChainedFormsReachTheSameNode) {
    LmGlobeConfig::Set("Kernel/SpatialReference/EPSG", "/data/EPSG.txt");
    const LmConfig root = LmGlobeConfig::Instance();
    EXPECT_EQ(root["Kernel/SpatialReference/EPSG"].StringValue(""), "/data/EPSG.txt");
    EXPECT_EQ(root["Kernel"]["SpatialReference"]["EPSG"].StringValue(""), "/data/EPSG.txt");
    EXPECT_EQ(root["Kernel"]["SpatialReference/EPSG"].StringValue(""), "/data/EPSG.txt");
    EXPECT_EQ(root["Kernel/SpatialReference"]["EPSG"].StringValue(""), "/data/EPSG.txt");
}

TEST_F(ConfigTest, MissingOrEmptyNodesAnswerTheDefault) {
    const LmConfig root = LmGlobeConfig::Instance();
    EXPECT_EQ(root["No/Such/Key"].StringValue("fallback"), "fallback");
    LmGlobeConfig::Set("Empty", "");
    EXPECT_EQ(root["Empty"].StringValue("fallback"), "fallback");
    EXPECT_TRUE(root["No"]["Such"].BoolValue(true));
    EXPECT_EQ(root[""].StringValue("x"), "x");  // the root itself holds no text
}

TEST_F(ConfigTest, BooleansReadCommonSpellingsElseTheDefault) {
    const LmConfig flag = LmGlobeConfig::Instance()["SpatialReference/ProjectCoordinateTransformation/Parallel"];
    for (const char* yes : {"true", "TRUE", " yes ", "On", "1"}) {
        LmGlobeConfig::Set("SpatialReference/ProjectCoordinateTransformation/Parallel", yes);
        EXPECT_TRUE(flag.BoolValue(false)) << yes;
    }
    for (const char* no : {"false", "No", "off", "0"}) {
        LmGlobeConfig::Set("SpatialReference/ProjectCoordinateTransformation/Parallel", no);
        EXPECT_FALSE(flag.BoolValue(true)) << no;
    }
    LmGlobeConfig::Set("SpatialReference/ProjectCoordinateTransformation/Parallel", "maybe");
    EXPECT_TRUE(flag.BoolValue(true));
    EXPECT_FALSE(flag.BoolValue(false));
}

TEST_F(ConfigTest, ANodeHandedOutEarlierSeesLaterChanges) {
    const LmConfig node = LmGlobeConfig::Instance()["Kernel"]["SpatialReference"]["DataFolder"];
    EXPECT_EQ(node.StringValue("none"), "none");
    LmGlobeConfig::Set("Kernel/SpatialReference/DataFolder", "/srv/data");
    EXPECT_EQ(node.StringValue("none"), "/srv/data");
    LmGlobeConfig::Clear("Kernel/SpatialReference");
    EXPECT_EQ(node.StringValue("none"), "none");
}

TEST_F(ConfigTest, LoadsNestedElementsAsKeysAndMerges) {
    LmGlobeConfig::Set("Kernel/SpatialReference/GDAL_DATA", "/kept");
    const std::string path = WriteFile("lm_config.xml",
        "<?xml version=\"1.0\"?>\n<Configuration>\n"
        "  <Kernel><SpatialReference>\n"
        "    <EPSG> /opt/EPSG.txt </EPSG>\n"
        "    <DataFolder>data/coordinatesystem</DataFolder>\n"
        "  </SpatialReference></Kernel>\n"
        "  <SpatialReference><ProjectCoordinateTransformation><Parallel>true</Parallel>"
        "</ProjectCoordinateTransformation></SpatialReference>\n"
        "</Configuration>\n");
    ASSERT_TRUE(LmGlobeConfig::Load(path.c_str()));
    const LmConfig root = LmGlobeConfig::Instance();
    EXPECT_EQ(root["Kernel/SpatialReference/EPSG"].StringValue(""), "/opt/EPSG.txt");
    EXPECT_EQ(root["Kernel/SpatialReference/DataFolder"].StringValue(""), "data/coordinatesystem");
    EXPECT_EQ(root["Kernel/SpatialReference/GDAL_DATA"].StringValue(""), "/kept");
    EXPECT_TRUE(root["SpatialReference"]["ProjectCoordinateTransformation"]["Parallel"].BoolValue(false));
}

TEST_F(ConfigTest, UnreadableOrMalformedFilesAreRefusedWithoutChanges) {
    LmGlobeConfig::Set("Kept", "yes");
    EXPECT_FALSE(LmGlobeConfig::Load(nullptr));
    EXPECT_FALSE(LmGlobeConfig::Load("/no/such/file.xml"));
    const std::string broken = WriteFile("lm_broken.xml", "<Configuration><Kernel><EPSG>x</Kernel>");
    EXPECT_FALSE(LmGlobeConfig::Load(broken.c_str()));
    EXPECT_EQ(LmGlobeConfig::Instance()["Kept"].StringValue(""), "yes");
    EXPECT_EQ(LmGlobeConfig::Instance()["Kernel/EPSG"].StringValue("none"), "none");
}

TEST_F(ConfigTest, ADefaultFillsOnlyAnAbsentKey) {
    LmGlobeConfig::Set("Kernel/SpatialReference/EPSG", "/given");
    LmGlobeConfig::SetDefault("Kernel/SpatialReference/EPSG", "/built-in");
    LmGlobeConfig::SetDefault("Kernel/SpatialReference/GDAL_DATA", "/built-in");
    const LmConfig root = LmGlobeConfig::Instance();
    EXPECT_EQ(root["Kernel/SpatialReference/EPSG"].StringValue(""), "/given");
    EXPECT_EQ(root["Kernel/SpatialReference/GDAL_DATA"].StringValue(""), "/built-in");
}

TEST(ConfigEnvironment, TheFileNamedByLumoraConfigIsLoadedOnFirstUseOverDefaults) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");  // a fresh process: the tree is not built yet
    const std::string path = WriteFile("lm_env_config.xml", "<C><Kernel><SpatialReference><EPSG>from-env</EPSG>"
                                                            "</SpatialReference></Kernel></C>");
    EXPECT_EXIT(
        {
            setenv("LUMORA_CONFIG", path.c_str(), 1);
            // Defaults given before the first use wait for the tree, and the file overrides them.
            LmGlobeConfig::SetDefault("Kernel/SpatialReference/EPSG", "default");
            LmGlobeConfig::SetDefault("Kernel/SpatialReference/GDAL_DATA", "default");
            const LmConfig root = LmGlobeConfig::Instance();
            const bool loaded = root["Kernel/SpatialReference/EPSG"].StringValue("") == "from-env" &&
                                root["Kernel/SpatialReference/GDAL_DATA"].StringValue("") == "default";
            std::_Exit(loaded ? 0 : 1);
        },
        testing::ExitedWithCode(0), "");
}

}  // namespace
