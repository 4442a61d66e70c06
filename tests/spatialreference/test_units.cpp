#include <lmspatialreference/spatialreference.h>

#include <gtest/gtest.h>

using namespace Lumora::Kernel;
using Lumora::Utility::LmEnumParser;
using Lumora::Utility::LmEnumType;

namespace {

LmUnits Parse(const char* text, LmUnits defaultValue = eMeter) {
    return LmEnumParser::ParserFromString<LmUnits>(text, defaultValue);
}

TEST(UnitNames, AreFilledWhenTheLibraryLoadsAndMatchIgnoringCase) {
    EXPECT_EQ(LmEnumType<LmUnits>::Instance().FromString("Kilometer", eMM), eKM);
    // The three inch spellings (and the enumerator's own name) share one code.
    const struct {
        const char* text;
        int expected;
    } cases[] = {{"Meter", eMeter}, {"degree", eDegree}, {"CENTIMETER", eCM}, {"millimeter", eMM},
                 {"emm", eMM}, {"eDegree", eDegree}, {"Inch_US_Surveyor", 9203}, {"INCH", 9203},
                 {"inch_international", 9203}, {"eInch", 9203}};
    for (const auto& c : cases) EXPECT_EQ(Parse(c.text, eKM), c.expected) << c.text;
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
