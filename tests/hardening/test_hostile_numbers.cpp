// Hostile numbers: every transformation meets NaN, infinities, huge values,
// the poles, the antimeridian and the Earth's centre, with counts of 0, 1 and
// negative and steps 1 to 4. Each call must come back quickly, write nothing
// to stderr, and leave alone what a count below one excludes.
#include <lmspatialreference/lmspatialreference.h>

#include <gtest/gtest.h>

#include <chrono>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <future>
#include <limits>
#include <thread>
#include <vector>

namespace {

using namespace Lumora::Kernel;
using Transformations = std::vector<std::pair<const char*, std::function<LmCoordinateTransformation*()>>>;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();

// (x, y, z) triples; geographic ones in degrees, the rest read as metres by
// transformations that take projected or geocentric input.
const double kHostilePoints[][3] = {
    {kNaN, 30.0, 0.0},   {116.0, kNaN, 0.0},  {116.0, 30.0, kNaN}, {kInf, 30.0, 0.0},
    {116.0, -kInf, 0.0}, {1e300, 1e300, 1e300}, {-1e300, 1e-300, 0.0}, {0.0, 90.0, 0.0},
    {0.0, -90.0, 0.0},   {180.0, 0.0, 0.0},   {-180.0, 45.0, 0.0}, {180.0000001, 89.9999999, 0.0},
    {0.0, 0.0, 0.0},     {0.0, 0.0, -6378137.0}, {116.0, 39.9, 50.0}, {1e12, -1e12, 1e12},
};
constexpr int kPointCount = sizeof(kHostilePoints) / sizeof(kHostilePoints[0]);

// A wedged iteration cannot be interrupted from outside, so a call that
// overruns its limit ends the test program instead of hanging CI.
template <class Call>
void WithinTimeLimit(const char* what, Call call) {
    std::packaged_task<void()> task(call);
    auto done = task.get_future();
    std::thread worker(std::move(task));
    if (done.wait_for(std::chrono::seconds(10)) != std::future_status::ready) {
        ADD_FAILURE() << what << " did not return within 10 s";
        std::fflush(stdout);
        std::_Exit(1);
    }
    worker.join();
}

LmSmarterPtr<LmSpatialReference> BuiltIn(LmWellKnownSpatialReference which) {
    return LmSmarterPtr<LmSpatialReference>(new LmSpatialReference(which));
}

// Answers the caller's tolerance everywhere, as the simplest precision object.
class FixedPrecision : public LmCoordinatePrecision {
public:
    double PointPrecision(double, double, double tolerance) override { return tolerance; }
};

Transformations AllTransformations() {
    static const double kShift[7] = {-15.415, 157.025, 94.741, 1.465, -0.301, 0.004, 0.5};
    static const double kAffine[6] = {2.0, 0.1, 100.0, -0.1, 2.0, -50.0};
    return {
        {"projection", [] { return new LmProjectCoordinateTransformation(BuiltIn(eWGS84), BuiltIn(eWebMercator)); }},
        {"inverse projection",
         [] { return new LmProjectCoordinateTransformation(BuiltIn(eWebMercator), BuiltIn(eWGS84)); }},
        {"datum shift",
         [] {
             return new LmParameterProjectCoordinateTransformation(BuiltIn(eCGCS2000), BuiltIn(eWGS84),
                                                                    ePositionVector7Parameter, kShift);
         }},
        {"WGS84 to GCJ-02", [] { return new LmWGS84ToGCJ02CoordinateTransformation(); }},
        {"WGS84 to BD-09", [] { return new LmWGS84ToBD09CoordinateTransformation(); }},
        {"GCJ-02 to WGS84", [] { return new LmGCJ02ToWGS84CoordinateTransformation(1e-9); }},
        {"BD-09 to WGS84", [] { return new LmBD09ToWGS84CoordinateTransformation(1e-9); }},
        {"affine", [] { return new LmAffineCoordinateTransformation(kAffine); }},
        {"converse of a projection",
         [] {
             return new LmConverseCoordinateTransformation(
                 new LmProjectCoordinateTransformation(BuiltIn(eWGS84), BuiltIn(eWebMercator)),
                 new FixedPrecision(), 1e-9);
         }},
        {"chain",
         [] {
             auto* chain = new LmCoordinateTransformationCombination();
             chain->Add(new LmWGS84ToGCJ02CoordinateTransformation());
             chain->Add(new LmProjectCoordinateTransformation(BuiltIn(eWGS84), BuiltIn(eWebMercator)));
             return chain;
         }},
        // Estimated-parameter transformations.
        {"to geocentric", [] { return new LmGeodeticToGeocentricCoordinateTransformation(BuiltIn(eCGCS2000)); }},
        {"to geodetic", [] { return new LmGeocentricToGeodeticCoordinateTransformation(BuiltIn(eCGCS2000)); }},
        {"plane 4", [] { return new LmPlane4PatameterCoordinateTransformation(kShift); }},
        {"Bursa", [] { return new LmBursa7ParameterGeocentricCoordinateTransformation(kShift); }},
        {"plane 7",
         [] { return new LmPlane7PatameterCoordinateTransformation(kShift, BuiltIn(eWGS84), BuiltIn(eCGCS2000)); }},
        {"plane 7 3D",
         [] { return new LmPlane7PatameterCoordinateTransformation3D(kShift, BuiltIn(eWGS84), BuiltIn(eCGCS2000)); }},
        {"graph interpolation",
         [] {
             const double corners[8] = {0, 0, 10, 0, 0, 10, 10, 10};
             const double offsets[8] = {1, 2, 3, 4, 5, 6, 7, 8};
             return new LmGraphsInterpolationCoordinateTransformation(corners, offsets);
         }},
        {"cube 4",
         [] {
             auto* cube = new TransImp<LmCube4Parameter>();
             cube->Create(0.6, 2.0, kShift);
             return cube;
         }},
        {"Molodensky",
         [] {
             auto* molodensky = new TransImp<LmMolodensky7Parameter>();
             molodensky->Create(kShift, nullptr);
             return molodensky;
         }},
        {"square fitting",
         [] {
             const double src[8] = {0, 0, 10, 0, 0, 10, 10, 10};
             const double dst[8] = {1, 0, 11, 0, 1, 10, 11, 10.5};
             auto* fit = new TransImp<LmSquareFittingTransformation>();
             fit->Create(4, 2, src, dst);
             return fit;
         }},
    };
}

// Interleaves the hostile points with the given step (1 = separate arrays).
struct Batch {
    explicit Batch(int step) : step(step), values(3 * kPointCount * (step < 3 ? 3 : step) + 3, -7.0) {
        for (int i = 0; i < kPointCount; ++i)
            for (int axis = 0; axis < 3; ++axis) *Coordinate(axis, i) = kHostilePoints[i][axis];
    }
    // step 1: three packed arrays; steps 2 to 4: one array, x, y and z at offsets 0, 1, 2.
    double* Coordinate(int axis, int i) {
        if (step == 1) return &values[axis * kPointCount + i];
        return &values[i * step + axis];
    }
    int step;
    std::vector<double> values;
};

TEST(HostileNumbers, EveryTransformationReturnsQuietlyAndInTime) {
    for (const auto& [name, make] : AllTransformations()) {
        for (int step = 1; step <= 4; ++step) {
            for (int count : {kPointCount, 1, 0, -1, -1000}) {
                for (bool withZ : {true, false}) {
                    // With step 2 a height would share its slot with the next point's x.
                    if (step == 2 && withZ) continue;
                    SCOPED_TRACE(testing::Message() << name << ", step " << step << ", count " << count
                                                    << (withZ ? ", z" : ", no z"));
                    LmSmarterPtr<LmCoordinateTransformation> transformation(make());
                    Batch batch(step);
                    const std::vector<double> before = batch.values;
                    testing::internal::CaptureStderr();
                    WithinTimeLimit(name, [&] {
                        transformation->Transformation(batch.Coordinate(0, 0), batch.Coordinate(1, 0),
                                                       withZ ? batch.Coordinate(2, 0) : nullptr, count, step);
                        transformation->ReverseTransformation(batch.Coordinate(0, 0), batch.Coordinate(1, 0),
                                                              withZ ? batch.Coordinate(2, 0) : nullptr, count, step);
                    });
                    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
                    if (count < 1) {
                        EXPECT_EQ(0, std::memcmp(before.data(), batch.values.data(), before.size() * sizeof(double)));
                    }
                }
            }
        }
    }
}

TEST(HostileNumbers, ProjectionRefusesPointsBeyondAnyEarthlyCoordinate) {
    LmProjectCoordinateTransformation inverse(BuiltIn(eWebMercator), BuiltIn(eWGS84));
    double x[] = {1e300, 1e13, 1000.0}, y[] = {0.0, -5.0, 1000.0};
    EXPECT_FALSE(inverse.Transformation(x, y, nullptr, 3, 1));
    EXPECT_EQ(x[0], 1e300);
    EXPECT_EQ(x[1], 1e13);
    EXPECT_EQ(y[1], -5.0);
    EXPECT_NEAR(x[2], 1000.0 / 6378137.0 * 180.0 / 3.141592653589793, 1e-12);
}

TEST(HostileNumbers, GeodesicsReturnQuietlyAndInTime) {
    LmGeodesic geodesic(6378137.0, 1 / 298.257223563);
    std::vector<double> coords;
    for (const auto& point : kHostilePoints) coords.insert(coords.end(), {point[0], point[1]});
    testing::internal::CaptureStderr();
    WithinTimeLimit("geodesics", [&] {
        for (int i = 0; i + 1 < kPointCount; ++i) {
            double azi1, azi2, x, y;
            geodesic.Inverse(coords[2 * i], coords[2 * i + 1], coords[2 * i + 2], coords[2 * i + 3], &azi1, &azi2);
            geodesic.Direct(coords[2 * i], coords[2 * i + 1], coords[2 * i + 2], coords[2 * i + 3], &x, &y, &azi2);
        }
        for (int count : {kPointCount, 1, 0, -1}) geodesic.ComputeGeodesic(coords.data(), count, 2);
    });
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

}  // namespace
