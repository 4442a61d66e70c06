// Published parameter sets depend on which value of pi each model converts
// its angles with, and on the order of its unit conversions, down to the last
// bit. A clean-up that unified the two values of pi would still pass every
// test with a tolerance, so both values and one estimate per model are pinned
// here exactly. Each estimate is made from control points that the model's
// own transformation computed from a published parameter set, so it must also
// come back to that set.
#include <lmspatialreference/lmspatialreference.h>

#include "internal/publishedunits.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <ostream>
#include <vector>

using namespace Lumora::Kernel;

namespace {

TEST(PublishedUnits, TheTwoValuesOfPi) {
    EXPECT_EQ(_truePi, std::acos(-1.0));
    EXPECT_EQ(_keptPi, 0x1.921fb54442d02p+1);
    EXPECT_EQ(_keptPi, 3.1415926535897833);
}

using Points = std::vector<double>;

// Four geocentric points around eastern China, and their geographic
// coordinates as the plane seven-parameter model takes them (radians as
// numbers) with heights.
const Points kGeocentric = {-2148743.1, 4426641.3, 4044656.4, -2219000.5, 4380000.2, 4060000.7,
                            -2100000.9, 4500000.6, 3990000.3, -2250000.2, 4460000.8, 3970000.1};
const Points kGeographic = {1.98, 0.55, 120.0, 2.01, 0.57, 35.0, 1.99, 0.60, 310.0, 2.03, 0.52, 80.0};
const Points kPlane = {500123.4, 3400567.8, 512987.1, 3401234.5, 499876.0, 3412999.9, 508765.4, 3395432.1};

const double kPlane4[4] = {-432.1, 217.6, 4.2, -5.3};
const double kSeven[7] = {-15.4, 120.8, 65.3, 1.2, -0.8, 2.4, 4.3};
const double kCube[4] = {12.5, -8.25, 3.75, 1.6};
const double kCentre[3] = {-2180000.0, 4440000.0, 4020000.0};
const double kAxisLatitude = 0.55, kAxisLongitude = 1.99;

Points Transformed(LmCoordinateTransformation&& t, Points points, int dim) {
    t.Transformation(&points[0], &points[1], dim == 3 ? &points[2] : nullptr, int(points.size()) / dim, dim);
    return points;
}

template <class PointModel>
Points Moved(PointModel& model, Points points) {
    for (std::size_t i = 0; i < points.size(); i += 3) model.trans(points[i], points[i + 1], points[i + 2]);
    return points;
}

struct Pin {
    const char* model;
    std::vector<double> published;
    std::function<std::vector<double>()> estimate;
    std::vector<double> pinned;
};

LmSmarterPtr<LmSpatialReference> Krassowsky() {
    return LmSmarterPtr<LmSpatialReference>(new LmSpatialReference("+proj=longlat +ellps=krass +no_defs", eProj4));
}
LmSmarterPtr<LmSpatialReference> Grs80() {
    return LmSmarterPtr<LmSpatialReference>(new LmSpatialReference("+proj=longlat +ellps=GRS80 +no_defs", eProj4));
}

std::vector<double> Plane4Estimate() {
    const Points target = Transformed(LmPlane4PatameterCoordinateTransformation(kPlane4), kPlane, 2);
    std::vector<double> p(4);
    LmCoordinateTransformationFactory::ComputePlane4Parameter(4, 2, kPlane.data(), target.data(), p.data());
    return p;
}

std::vector<double> BursaEstimate() {
    const Points target = Transformed(LmBursa7ParameterGeocentricCoordinateTransformation(kSeven), kGeocentric, 3);
    std::vector<double> p(7);
    LmCoordinateTransformationFactory::ComputeBursa7Parameter(nullptr, nullptr, 4, 3, kGeocentric.data(),
                                                              target.data(), p.data());
    return p;
}

template <class Transformation, bool threeD>
std::vector<double> Plane7Estimate() {
    auto source = Krassowsky(), target = Grs80();
    const Points moved = Transformed(Transformation(kSeven, source, target), kGeographic, 3);
    std::vector<double> p(7);
    if (threeD)
        LmCoordinateTransformationFactory::ComputePlane7Parameter3D(source, target, 4, 3, kGeographic.data(),
                                                                    moved.data(), p.data());
    else
        LmCoordinateTransformationFactory::ComputePlane7Parameter(source, target, 4, 3, kGeographic.data(),
                                                                  moved.data(), p.data());
    return p;
}

std::vector<double> CubeEstimate() {
    LmCube4Parameter model;
    model.Create(kAxisLatitude, kAxisLongitude, kCube);
    const Points target = Moved(model, kGeocentric);
    std::vector<double> p(4);
    LmCoordinateTransformationFactory::ComputeCube4Parameter(nullptr, nullptr, kAxisLatitude, kAxisLongitude, 4, 3,
                                                             kGeocentric.data(), target.data(), p.data());
    return p;
}

std::vector<double> MolodenskyEstimate() {
    LmMolodensky7Parameter model;
    model.Create(kSeven, kCentre);
    const Points target = Moved(model, kGeocentric);
    std::vector<double> p(7);
    LmCoordinateTransformationFactory::ComputeMolodenskyParameter(nullptr, nullptr, 4, 3, kGeocentric.data(),
                                                                  target.data(), p.data(), kCentre);
    return p;
}

void PrintTo(const Pin& pin, std::ostream* out) { *out << pin.model; }

class PublishedParameters : public testing::TestWithParam<Pin> {};

TEST_P(PublishedParameters, EstimatesComeBackToThePublishedSetBitForBit) {
    const Pin& pin = GetParam();
    const std::vector<double> estimate = pin.estimate();
    ASSERT_EQ(estimate.size(), pin.pinned.size());
    for (std::size_t k = 0; k < estimate.size(); ++k) {
        // Four points determine the plane seven-parameter rotations least well:
        // to 1e-4 seconds of arc.
        EXPECT_NEAR(estimate[k], pin.published[k], 1e-4) << k;
        EXPECT_EQ(estimate[k], pin.pinned[k]) << k << ": " << std::hexfloat << estimate[k];
    }
}

// The pinned values are those the estimators gave when the two values of pi
// and the conversions were first named.
INSTANTIATE_TEST_SUITE_P(
    Models, PublishedParameters,
    testing::Values(
        Pin{"Plane4", {kPlane4, kPlane4 + 4}, Plane4Estimate,
            {-0x1.b01999994p+8, 0x1.b3333332cp+7, 0x1.0ccccccd7c32bp+2, -0x1.5333332d1aeb8p+2}},
        Pin{"Bursa7", {kSeven, kSeven + 7}, BursaEstimate,
            {-0x1.ecccccc33p+3, 0x1.e33333328cp+6, 0x1.05333335b4p+6, 0x1.333333387e6e7p+0,
             -0x1.9999999635b5p-1, 0x1.33333331cca0bp+1, 0x1.133333315604ep+2}},
        Pin{"Plane7", {kSeven, kSeven + 7}, Plane7Estimate<LmPlane7PatameterCoordinateTransformation, false>,
            {-0x1.ecccccccf1de1p+3, 0x1.e333333341b98p+6, 0x1.0533333323236p+6, 0x1.333287674857fp+0,
             -0x1.999a2c0bff0f1p-1, 0x1.33332dacb647fp+1, 0x1.1333337dfabfap+2}},
        Pin{"Plane7In3D", {kSeven, kSeven + 7}, Plane7Estimate<LmPlane7PatameterCoordinateTransformation3D, true>,
            {-0x1.ecccccc96bf47p+3, 0x1.e333333309a49p+6, 0x1.05333333b9c2dp+6, 0x1.333665f0f9fb9p+0,
             -0x1.99943bbe48b5cp-1, 0x1.333254918fb51p+1, 0x1.13333332d01e7p+2}},
        Pin{"Cube4", {kCube, kCube + 4}, CubeEstimate,
            {0x1.900000002d1e5p+3, -0x1.07ffffffe9e1ep+3, 0x1.e000000029342p+1, 0x1.9999999946c09p+0}},
        Pin{"Molodensky", {kSeven, kSeven + 7}, MolodenskyEstimate,
            {-0x1.ecccccccb9bf9p+3, 0x1.e3333333365e8p+6, 0x1.0533333331d75p+6, 0x1.3333332ec998dp+0,
             -0x1.99999999a5935p-1, 0x1.33333333227d8p+1, 0x1.13333334771bp+2}}),
    [](const auto& info) { return std::string(info.param.model); });

}  // namespace
