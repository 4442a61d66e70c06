// The factory's creators: chain membership for every kind of source and
// target, and objects made from null arguments.
#include <lmspatialreference/lmspatialreference.h>

#include <gtest/gtest.h>

#include <functional>
#include <vector>

namespace {

using namespace Lumora::Kernel;
using Factory = LmCoordinateTransformationFactory;
using Ptr = LmSmarterPtr<LmCoordinateTransformation>;
using Ref = LmSmarterPtr<LmSpatialReference>;

// Gauss-Kruger on CGCS 2000 about 114 E: x near 500 000 m, y near 3 300 000 m.
const char* kGaussKruger = "+proj=tmerc +lat_0=0 +lon_0=114 +k=1 +x_0=500000 +y_0=0 +ellps=GRS80 +units=m +no_defs";
const char* kLocal =
    R"(LOCAL_CS["site grid",LOCAL_DATUM["site",0],UNIT["metre",1],AXIS["X",EAST],AXIS["Y",NORTH]])";

enum Kind { kNull, kLocal_, kGeographic, kProjected };

Ref Reference(Kind kind) {
    switch (kind) {
        case kLocal_: return Ref(new LmSpatialReference(kLocal, eWKT));
        case kGeographic: return Ref(new LmSpatialReference(eCGCS2000));
        case kProjected: return Ref(new LmSpatialReference(kGaussKruger, eProj4));
        default: return Ref();
    }
}

const double kSeven[7] = {-15.0, 120.5, 60.25, 1.5, -0.75, 2.0, 3.5};
const double kCube[4] = {10.0, -5.0, 3.0, 1.5};

LmCoordinateTransformationCombination* Chain(const Ptr& p) {
    return dynamic_cast<LmCoordinateTransformationCombination*>(static_cast<LmCoordinateTransformation*>(p));
}

struct ChainCase {
    const char* name;
    std::function<Ptr(LmSpatialReference*, LmSpatialReference*)> create;
    int before[4];  // members before the model, by source kind
    int after[4];   // members after the model, by target kind
};

const std::vector<ChainCase>& ChainCases() {
    static const std::vector<ChainCase> cases = {
        {"Bursa", [](LmSpatialReference* s, LmSpatialReference* t) {
             return Factory::CreateBursa7CoordinateTransformation(s, t, kSeven);
         }, {0, 0, 1, 2}, {0, 0, 1, 2}},
        {"Cube", [](LmSpatialReference* s, LmSpatialReference* t) {
             return Factory::CreateCube4PatameterCoordinateTransformation(s, t, 0.6, 2.0, kCube);
         }, {0, 0, 1, 2}, {0, 0, 1, 2}},
        // Unlike the cube chain, this one always returns to geodetic form.
        {"Molodensky", [](LmSpatialReference* s, LmSpatialReference* t) {
             return Factory::CreateMolodenskyCoordinateTransformation(s, t, kSeven, nullptr);
         }, {0, 0, 1, 2}, {1, 1, 1, 2}},
        {"Plane7", [](LmSpatialReference* s, LmSpatialReference* t) {
             return Factory::CreatePlane7PatameterCoordinateTransformation(s, t, kSeven);
         }, {0, 0, 0, 1}, {0, 0, 0, 1}},
        {"Plane7_3D", [](LmSpatialReference* s, LmSpatialReference* t) {
             return Factory::Create3DPlane7PatameterCoordinateTransformation(s, t, kSeven);
         }, {0, 0, 0, 1}, {0, 0, 0, 1}},
        {"GeoidFitting", [](LmSpatialReference* s, LmSpatialReference* t) {
             const double pts[6] = {114.1, 30.2, 114.3, 30.1, 114.2, 30.4};
             return Factory::CreateGeoidFittingCoordinateTransformation(s, t, 3, 2, pts, pts);
         }, {0, 0, 0, 1}, {0, 0, 0, 1}},
    };
    return cases;
}

TEST(FactoryChains, MemberCountForEveryKindOfSourceAndTarget) {
    for (const ChainCase& c : ChainCases())
        for (Kind s : {kNull, kLocal_, kGeographic, kProjected})
            for (Kind t : {kNull, kLocal_, kGeographic, kProjected}) {
                Ref source = Reference(s), target = Reference(t);
                Ptr p = c.create(source, target);
                LmCoordinateTransformationCombination* chain = Chain(p);
                ASSERT_NE(chain, nullptr) << c.name;
                EXPECT_EQ(chain->MemberCount(), c.before[s] + 1 + c.after[t]) << c.name << " " << s << "->" << t;
                EXPECT_EQ(p->RefCount(), 1) << c.name;
            }
}

// What a chain does to coordinates is a known answer of
// tests/data/projections.known (bursa-chain).

// Every creator makes an object from null or unusable arguments; applied, it
// fails or passes as its class does.
TEST(FactoryCreators, NullArgumentsStillGiveWorkingObjects) {
    const struct {
        const char* name;
        Ptr made;
        bool applies;
        bool identity;
    } cases[] = {
        {"Project", Factory::CreateProjectCoordinateTransformation(nullptr, nullptr), false, true},
        {"ParameterProject",
         Factory::CreateParameterProjectCoordinateTransformation(nullptr, nullptr, ePositionVector7Parameter, nullptr),
         false, true},
        {"Affine", Factory::CreateAffineCoordinateTransformation(nullptr, nullptr, 6), true, true},
        {"Converse", Factory::CreateConverseCoordinateTransformation(nullptr, nullptr, 0.0), false, true},
        {"Plane4", Factory::CreatePlane4PatameterCoordinateTransformation(nullptr), true, true},
        {"Bursa", Factory::CreateBursa7CoordinateTransformation(nullptr, nullptr, nullptr), true, true},
        {"Cube", Factory::CreateCube4PatameterCoordinateTransformation(nullptr, nullptr, 0.0, 0.0, nullptr), true,
         true},
        {"Plane7", Factory::CreatePlane7PatameterCoordinateTransformation(nullptr, nullptr, nullptr), true, false},
        {"PlaneFitting", Factory::CreatePlaneFittingCoordinateTransformation(0, 2, nullptr, nullptr), true, true},
        {"GeoidFitting", Factory::CreateGeoidFittingCoordinateTransformation(nullptr, nullptr, 3, 2, nullptr, nullptr),
         true, true},
        {"Molodensky", Factory::CreateMolodenskyCoordinateTransformation(nullptr, nullptr, nullptr, nullptr), true,
         false},
        {"GeodeticToGeocentric", Factory::CreateGeodeticToGeocentricCoordinateTransformation(nullptr), true, false},
        {"GeocentricToGeodetic", Factory::CreateGeocentricToGeodeticCoordinateTransformation(nullptr), true, false},
        {"Graphs", Factory::CreateGraphsInterpolationCoordinateTransformation(nullptr, nullptr), true, false},
        {"WGS84ToGCJ02", Factory::CreateWGS84ToGCJ02CoordinateTransformation(), true, false},
        {"WGS84ToBD09", Factory::CreateWGS84ToBD09CoordinateTransformation(), true, false},
    };
    for (const auto& c : cases) {
        ASSERT_TRUE(c.made) << c.name;
        EXPECT_EQ(c.made->RefCount(), 1) << c.name;
        double x = 3.0e6, y = -1.5e6, z = 4.0e6;
        EXPECT_EQ(c.made->Transformation(x, y, z), c.applies) << c.name;
        if (c.identity) {
            EXPECT_EQ(x, 3.0e6) << c.name;
            EXPECT_EQ(y, -1.5e6) << c.name;
        }
    }
    Ptr gcj = Factory::CreateGCJ02ToWGS84CoordinateTransformation(0.0);
    Ptr bd = Factory::CreateBD09ToWGS84CoordinateTransformation(-3.0);
    EXPECT_EQ(dynamic_cast<LmGCJ02ToWGS84CoordinateTransformation*>(static_cast<LmCoordinateTransformation*>(gcj))
                  ->Precision(),
              0.001);
    EXPECT_EQ(dynamic_cast<LmGCJ02ToWGS84CoordinateTransformation*>(static_cast<LmCoordinateTransformation*>(bd))
                  ->Precision(),
              3.0);
}

}  // namespace
