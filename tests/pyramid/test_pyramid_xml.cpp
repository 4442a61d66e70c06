#include <lmspatialreference/pyramid.h>

#include <gtest/gtest.h>
#include <tinyxml2.h>

#include <cfloat>
#include <cmath>
#include <cstring>
#include <string>
#include <vector>

using namespace Lumora::Kernel;

namespace {

// The child element names of the written root, and of the root of its Specials.
std::vector<std::string> _Children(const LmString& xml, bool ofSpecials = false) {
    tinyxml2::XMLDocument document;
    EXPECT_EQ(document.Parse(xml.c_str()), tinyxml2::XML_SUCCESS);
    const tinyxml2::XMLElement* root = document.RootElement();
    if (ofSpecials) root = root->FirstChildElement("Specials");
    std::vector<std::string> names;
    for (auto* e = root ? root->FirstChildElement() : nullptr; e; e = e->NextSiblingElement()) names.push_back(e->Name());
    return names;
}

// Every member, the doubles compared bit for bit.
void _ExpectSame(const LmPyramid& a, const LmPyramid& b) {
    EXPECT_EQ(std::make_tuple(a.TopLevelIndex, a.BottomLevelIndex, a.TileSizeX, a.TileSizeY, a.OriginRowIndex,
                              a.OriginColIndex, a.Description, a.PyramidID, a.Name),
              std::make_tuple(b.TopLevelIndex, b.BottomLevelIndex, b.TileSizeX, b.TileSizeY, b.OriginRowIndex,
                              b.OriginColIndex, b.Description, b.PyramidID, b.Name));
    const double LmPyramid::*doubles[] = {&LmPyramid::ScaleX, &LmPyramid::ScaleY, &LmPyramid::FromX, &LmPyramid::FromY,
                                          &LmPyramid::ToX,    &LmPyramid::ToY,    &LmPyramid::XMin,  &LmPyramid::YMin,
                                          &LmPyramid::XMax,   &LmPyramid::YMax,   &LmPyramid::PI,    &LmPyramid::Tolerance};
    for (auto member : doubles) EXPECT_EQ(std::memcmp(&(a.*member), &(b.*member), sizeof(double)), 0) << a.*member;
}

TEST(PyramidXml, StockTextIsWrittenInOrderWithConstAndNoDeclaration) {
    auto web = LmPyramid::WellknownPyramid(eWebMercatorPyramid);
    const LmString xml = web->ToString();
    EXPECT_EQ(xml.rfind("<Pyramid>\n", 0), 0u);
    EXPECT_EQ(_Children(xml), (std::vector<std::string>{"Basic", "Level", "TileBasic", "TopTile", "Const", "Range"}));
    EXPECT_NE(xml.find("Name=\"Web墨卡托金字塔\""), std::string::npos);
    EXPECT_NE(xml.find("<Const PI=\"3.1415926535897931\" Tolerance=\"1.1920928955078125e-07\"/>"), std::string::npos);
    EXPECT_EQ(web->FromX, -20037508.342789199);
    // Other kinds give the geographic default, whose texts are UTF-8.
    LmPyramid geo;
    _ExpectSame(*LmPyramid::WellknownPyramid(eGeographicPyramid), geo);
    _ExpectSame(*LmPyramid::WellknownPyramid(static_cast<LmWellknownPyramid>(7)), geo);
    EXPECT_EQ(geo.Name, "360度");
    EXPECT_EQ(geo.Description, "金字塔方案");
}

TEST(PyramidXml, RoundTripKeepsEveryDoubleExactly) {
    LmPyramid p;
    p.TopLevelIndex = -3, p.BottomLevelIndex = 2147483647, p.TileSizeX = 4294967295u, p.TileSizeY = 1;
    p.OriginRowIndex = -2147483647 - 1, p.OriginColIndex = 17, p.ScaleX = 3, p.ScaleY = -4;
    p.Description = "a \"quoted\" <text> & more", p.PyramidID = "", p.Name = "名\n\t";
    const double values[] = {0.1, 1.0 / 3, -0.0, 5e-324, DBL_MAX, -DBL_MIN, 1e-300, 2.5e15 + 0.5, INFINITY, -INFINITY};
    double* targets[] = {&p.FromX, &p.FromY, &p.ToX, &p.ToY, &p.XMin, &p.YMin, &p.XMax, &p.YMax, &p.PI, &p.Tolerance};
    for (int i = 0; i < 10; ++i) *targets[i] = values[i];
    const LmString xml = p.ToString();
    LmPyramid q("<Pyramid/>");
    ASSERT_TRUE(q.FromString(xml.c_str()));
    _ExpectSame(q, p);
    EXPECT_EQ(q.ToString(), xml);
}

TEST(PyramidXml, ReadingRules) {
    struct Case { const char* xml; void (*check)(const LmPyramid&); };
    const Case cases[] = {
        // The ratios are read as integers, and written back as the doubles read.
        {"<Pyramid><Level ScaleX=\"1.5\" ScaleY=\"-2.9\"/></Pyramid>",
         [](const LmPyramid& p) { EXPECT_EQ(p.ScaleX, 1.0); EXPECT_EQ(p.ScaleY, -2.0); }},
        // atoi and atof: trailing garbage ignored, text reads as 0.
        {"<Pyramid><TileBasic TileSizeX=\"12abc\" TileSizeY=\"x\" OriginRowIndex=\" -4\"/>"
         "<TopTile FromX=\"abc\" ToY=\"1e3m\"/></Pyramid>",
         [](const LmPyramid& p) {
             EXPECT_EQ(std::make_tuple(p.TileSizeX, p.TileSizeY, p.OriginRowIndex), std::make_tuple(12u, 0u, -4));
             EXPECT_EQ(p.FromX, 0.0); EXPECT_EQ(p.ToY, 1000.0); EXPECT_EQ(p.FromY, 90.0);
         }},
        // A later element overwrites; unknown elements and attributes, comments and text are skipped.
        {"<Pyramid><Level TopLevelIndex=\"3\" Foo=\"1\"/><!-- c -->text<Unknown/><Level TopLevelIndex=\"5\"/></Pyramid>",
         [](const LmPyramid& p) { EXPECT_EQ(p.TopLevelIndex, 5); EXPECT_EQ(p.BottomLevelIndex, 20); }},
        {"<Pyramid><Const PI=\"3\" Tolerance=\"0.5\"/><Range XMin=\"1\" YMax=\"2\"/></Pyramid>",
         [](const LmPyramid& p) { EXPECT_EQ(p.PI, 3.0); EXPECT_EQ(p.Tolerance, 0.5); EXPECT_EQ(p.XMin, 1.0); EXPECT_EQ(p.YMax, 2.0); }},
    };
    for (const Case& c : cases) {
        // Start from another pyramid: what the text leaves out takes the default.
        auto p = LmPyramid::WellknownPyramid(eWebMercatorPyramid);
        ASSERT_TRUE(p->FromString(c.xml)) << c.xml;
        c.check(*p);
        EXPECT_EQ(p->Name, "360度");
    }
    LmPyramid scaled("<Pyramid><Level ScaleX=\"1.5\"/></Pyramid>");
    EXPECT_NE(scaled.ToString().find("ScaleX=\"1\""), std::string::npos);
    _ExpectSame(LmPyramid("<Pyramid/>"), LmPyramid());
}

TEST(PyramidXml, RejectedTextsLeaveThePyramidUnchanged) {
    const char* rejected[] = {nullptr, "", "<pyramid/>", "<Pyramid>", "not xml", "<Other><Pyramid/></Other>",
                              "<?xml version=\"1.0\"?>", "<Pyramid a=\"1\" a=\"2\"/>"};
    auto web = LmPyramid::WellknownPyramid(eWebMercatorPyramid);
    LmMultiPyramid multi("<Pyramid><Level TopLevelIndex=\"2\"/><Specials><Pyramid/></Specials></Pyramid>");
    for (const char* xml : rejected) {
        EXPECT_FALSE(web->FromString(xml)) << (xml ? xml : "null");
        _ExpectSame(*web, *LmPyramid::WellknownPyramid(eWebMercatorPyramid));
        // The constructor keeps the defaults; a multi-pyramid keeps its members but not its sub-pyramids.
        _ExpectSame(LmPyramid(xml), LmPyramid());
        EXPECT_FALSE(multi.FromString(xml));
        EXPECT_EQ(multi.TopLevelIndex, 2);
        EXPECT_TRUE(multi.Specials.empty());
    }
}

TEST(PyramidXml, MultiPyramidDelegatesByLevelAndRoundTrips) {
    const char* xml =
        "<Pyramid><Specials><Pyramid><Level TopLevelIndex=\"10\" BottomLevelIndex=\"15\"/>"
        "<TopTile FromX=\"0\" FromY=\"0\" ToX=\"1024\" ToY=\"1024\"/><TileBasic TileSizeX=\"8\"/></Pyramid>"
        "<Pyramid><Level TopLevelIndex=\"12\" BottomLevelIndex=\"12\"/></Pyramid>"
        "<Other/></Specials></Pyramid>";
    LmMultiPyramid multi(xml);
    ASSERT_EQ(multi.Specials.size(), 2u);
    EXPECT_EQ(multi.FindPyramid(12), multi.Specials[0]);
    EXPECT_EQ(multi.FindPyramid(9), nullptr);
    double e[4];
    // Level 12 is the first sub-pyramid's third level: 1024 / 4 a tile, running north-east.
    multi.TileExtent(12, 1, 2, &e[0], &e[1], &e[2], &e[3]);
    EXPECT_EQ(std::vector<double>(e, e + 4), (std::vector<double>{512, 256, 768, 512}));
    multi.TileExtent(9, 0, 0, &e[0], &e[1], &e[2], &e[3]);
    EXPECT_EQ(e[0], -180.0); EXPECT_EQ(e[2], -180.0 + 360.0 / 512);
    int row, col;
    multi.TileIndex(12, 600, 300, &row, &col, nullptr, nullptr);
    EXPECT_EQ(row, 1);
    EXPECT_EQ(col, 2);
    EXPECT_EQ(multi.DirectionY(12), 1); EXPECT_EQ(multi.DirectionY(16), -1);
    // The level walks divide a sub-pyramid's span by the multi-pyramid's own
    // tile size (256, not the sub-pyramid's 8): level 10's pixel is 1024/256 = 4.
    EXPECT_EQ(multi.BestLevel(4.0), 10);
    // Written back, the two sub-pyramids and nothing else.
    const LmString text = multi.ToString();
    EXPECT_EQ(_Children(text).back(), "Specials");
    EXPECT_EQ(_Children(text, true), (std::vector<std::string>{"Pyramid", "Pyramid"}));
    LmMultiPyramid again(text.c_str());
    EXPECT_EQ(again.ToString(), text);
    // A plain pyramid ignores Specials; an empty list writes no Specials element.
    EXPECT_EQ(LmPyramid(xml).ToString(), LmPyramid().ToString());
    multi.Specials.clear();
    EXPECT_EQ(multi.ToString(), LmPyramid().ToString());
    EXPECT_TRUE(LmMultiPyramid(multi.ToString().c_str()).Specials.empty());
}

}  // namespace
