#include <lmspatialreference/spatialreference.h>

#include <gtest/gtest.h>

using namespace Lumora::Kernel;
using Lumora::Utility::LmEnumParser;
using Lumora::Utility::LmEnumType;

namespace {

LmUnits Parse(const char* text, LmUnits defaultValue = eMeter) {
    return LmEnumParser::ParserFromString<LmUnits>(text, defaultValue);
}

TEST(UnitNames, AreFilledWhenTheLibraryLoads) {
    EXPECT_EQ(LmEnumType<LmUnits>::Instance().FromString("Kilometer", eMM), eKM);
}

TEST(UnitNames, MatchIgnoringCase) {
    EXPECT_EQ(Parse("Meter", eKM), eMeter);
    EXPECT_EQ(Parse("degree"), eDegree);
    EXPECT_EQ(Parse("CENTIMETER"), eCM);
    EXPECT_EQ(Parse("millimeter"), eMM);
    EXPECT_EQ(Parse("emm"), eMM);
    EXPECT_EQ(Parse("eDegree"), eDegree);
}

TEST(UnitNames, TheThreeInchSpellingsShareOneCode) {
    EXPECT_EQ(Parse("Inch_US_Surveyor"), 9203);
    EXPECT_EQ(Parse("INCH"), 9203);
    EXPECT_EQ(Parse("inch_international"), 9203);
    EXPECT_EQ(Parse("eInch"), 9203);
}

TEST(UnitNames, NumbersMatchCodesAndEverythingElseGivesTheDefault) {
    EXPECT_EQ(Parse("9205"), eKM);
    EXPECT_EQ(Parse("9102", eKM), eDegree);
    EXPECT_EQ(Parse("9999", eCM), eCM);
    EXPECT_EQ(Parse("metre", eKM), eKM);
    EXPECT_EQ(Parse("US survey foot", eMM), eMM);
    EXPECT_EQ(Parse("", eDegree), eDegree);
    EXPECT_EQ(Parse(nullptr, eDegree), eDegree);
}

}  // namespace
