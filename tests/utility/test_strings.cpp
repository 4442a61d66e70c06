#include <lmspatialreference/utility.h>

#include <gtest/gtest.h>

#include <climits>
#include <clocale>

using namespace Lumora::Utility;

namespace {

TEST(LmString, AcceptsNullAsEmpty) {
    EXPECT_TRUE(LmString(static_cast<const char*>(nullptr)).empty());
    LmString text("abc");
    text = static_cast<const char*>(nullptr);
    EXPECT_EQ(text, "");
}

TEST(LmStringHelp, SplitKeepsEveryField) {
    const auto fields = LmStringHelp::Split("a,,b,", ',');
    EXPECT_EQ(fields, (std::vector<LmString>{"a", "", "b", ""}));
    EXPECT_EQ(LmStringHelp::Split(" x ", ',').front(), " x ");  // no trimming
    EXPECT_EQ(LmStringHelp::Split(nullptr, ',').size(), 1u);
}

TEST(LmStringHelp, TrimStartWithAndNullSafety) {
    EXPECT_EQ(LmStringHelp::Trim(" \t value \r\n"), "value");
    EXPECT_EQ(LmStringHelp::Trim("   "), "");
    EXPECT_EQ(LmStringHelp::Trim(nullptr), "");
    EXPECT_TRUE(LmStringHelp::StartWith("EPSG:4326", "epsg", true));
    EXPECT_FALSE(LmStringHelp::StartWith("EPSG:4326", "epsg", false));
    EXPECT_FALSE(LmStringHelp::StartWith("EP", "EPSG", true));
    EXPECT_FALSE(LmStringHelp::StartWith(nullptr, "a", true));
    EXPECT_TRUE(LmStringHelp::IsNullOrEmpty(nullptr));
    EXPECT_TRUE(LmStringHelp::IsNullOrEmpty(""));
    EXPECT_FALSE(LmStringHelp::IsNullOrEmpty(" "));
    EXPECT_EQ(LmStringHelp::ToString(nullptr), "");
}

TEST(LmCRT, NumbersReadTheirLeadingDigitsOnly) {
    EXPECT_EQ(LmCRT::_atoi64("4326 WGS 84"), 4326);
    EXPECT_EQ(LmCRT::_atoi64("  -12x"), -12);
    EXPECT_EQ(LmCRT::_atoi64("9999999999"), 9999999999LL);
    EXPECT_EQ(LmCRT::_atoi64("abc"), 0);
    EXPECT_EQ(LmCRT::_atoi64(nullptr), 0);
    EXPECT_EQ(LmCRT::_atoi64("99999999999999999999999"), LLONG_MAX);
    EXPECT_DOUBLE_EQ(LmCRT::_atof("23.5,1"), 23.5);
    EXPECT_DOUBLE_EQ(LmCRT::_atof(nullptr), 0.0);
}

TEST(LmCRT, StricmpIgnoresCaseAndTreatsNullAsEmpty) {
    EXPECT_EQ(LmCRT::_stricmp("Degree", "dEGREE"), 0);
    EXPECT_LT(LmCRT::_stricmp("a", "B"), 0);
    EXPECT_GT(LmCRT::_stricmp("b", "A"), 0);
    EXPECT_EQ(LmCRT::_stricmp(nullptr, ""), 0);
    EXPECT_NE(LmCRT::_stricmp(nullptr, "x"), 0);
}

TEST(LmEncoding, Utf8PassesThroughAndOtherBytesAreConverted) {
    const char* chinese = "Web\xE5\xA2\xA8\xE5\x8D\xA1\xE6\x89\x98";  // Web墨卡托
    EXPECT_EQ(LmEncoding::ToUtf8(chinese), chinese);
    std::setlocale(LC_ALL, "C");
    EXPECT_EQ(LmEncoding::ToUtf8("caf\xE9"), "caf\xC3\xA9");  // Latin-1 é
    EXPECT_EQ(LmEncoding::ToUtf8("\xC0\x80"), "\xC3\x80\xC2\x80");  // overlong NUL is not UTF-8
    EXPECT_EQ(LmEncoding::ToUtf8(nullptr), "");
}

}  // namespace
