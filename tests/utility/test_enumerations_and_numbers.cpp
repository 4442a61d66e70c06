#include <lmspatialreference/utility.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

using namespace Lumora::Utility;

namespace {

enum Colour { eRed = 0, eGreen = 7, eBlue = 9 };
enum Unfilled : int { eOnly = 3 };

void FillColours() {
    static bool filled = false;
    if (filled) return;
    filled = true;
    auto& table = LmEnumType<Colour>::Instance();
    table.Push("Red", eRed);
    table.Push("Green", eGreen);
    table.Push("green", eBlue);  // a later spelling never wins over an earlier one
    table.Push("Blue", eBlue);
}

TEST(LmEnumType, AnEmptyTableAnswersTheDefault) {
    EXPECT_EQ(LmEnumParser::ParserFromString<Unfilled>("3", eOnly), eOnly);
    EXPECT_EQ(LmEnumType<Unfilled>::Instance().FromString("eOnly", static_cast<Unfilled>(5)), 5);
}

TEST(LmEnumType, NamesMatchIgnoringCaseInInsertionOrder) {
    FillColours();
    EXPECT_EQ(LmEnumParser::ParserFromString<Colour>("GREEN", eRed), eGreen);
    EXPECT_EQ(LmEnumParser::ParserFromString<Colour>("blue", eRed), eBlue);
}

TEST(LmEnumType, NumbersMatchValuesAndAnythingElseGivesTheDefault) {
    FillColours();
    EXPECT_EQ(LmEnumParser::ParserFromString<Colour>("9", eRed), eBlue);
    EXPECT_EQ(LmEnumParser::ParserFromString<Colour>("8", eGreen), eGreen);
    // Text that is no number reads as 0, which is the value of Red.
    EXPECT_EQ(LmEnumParser::ParserFromString<Colour>("purple", eBlue), eRed);
    EXPECT_EQ(LmEnumParser::ParserFromString<Colour>("-99999999999999999999", eGreen), eGreen);
    EXPECT_EQ(LmEnumParser::ParserFromString<Colour>(nullptr, eGreen), eRed);
}

TEST(LmMath, ConstantsAndConversions) {
    EXPECT_EQ(LmMath::Pi(), 3.141592653589793);
    EXPECT_EQ(LmMath::ToRadian(180.0), LmMath::Pi());
    EXPECT_DOUBLE_EQ(LmMath::ToRadian(90.0), std::acos(0.0));
    EXPECT_DOUBLE_EQ(LmMath::Log(std::exp(2.5)), 2.5);
}

TEST(LmMath, MaxAndMinFollowTheirComparisons) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(LmMath::Max(nan, 2.0), 2.0);
    EXPECT_TRUE(std::isnan(LmMath::Max(2.0, nan)));
    EXPECT_EQ(LmMath::Max(3, 2.5), 3.0);
    // Mixed signedness must compare values, not wrapped unsigned bit patterns.
    EXPECT_EQ((LmMath::Min<int, unsigned long>(-1, 5ul)), -1.0);
    EXPECT_EQ((LmMath::Min<int, unsigned long>(7, 5ul)), 5.0);
}

}  // namespace
